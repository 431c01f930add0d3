#include "cli/text/OrganizeText.h"

#include "cli/frame/FileArguments.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/CategoryGroups.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

namespace orvane::cli {
namespace {

// Of each group: nobody reads thousands of lines, and whatever reads them takes the JSON.
constexpr std::size_t movesShown = 20;

std::string lineOf(const ProposedRow& row) {
  auto line = escapedForDisplay(row.item.relativePath());
  if (row.item.isFolder()) line += "/";
  if (!row.newName.empty()) line += fmt::format(" -> {}", escapedForDisplay(row.newName));
  if (row.lock == Lock::inPlace) line += " (stays: it is there already)";
  if (row.lock == Lock::refused) line += " (stays: refused)";
  return line;
}

void printGroup(Session& session, const Proposal& proposal, const RowGroup& group, const GroupRows& rows) {
  RowSum sum;
  for (std::size_t at = rows.first; at < rows.first + rows.count; ++at) sum.add(proposal.row(at).item.fileSize());
  session.out().line(fmt::format("{} ({}, {})  ->  {}", escapedForDisplay(group.name), itemCount(sum.count),
                                 formatByteCount(sum.bytes), shownPath(*group.destinationFolder)));
  const auto shown = std::min(movesShown, rows.count);
  std::vector<std::string> sizes;
  int width = 0;
  for (std::size_t i = 0; i < shown; ++i) {
    sizes.push_back(formatByteCount(proposal.row(rows.first + i).item.fileSize()));
    width = std::max(width, displayWidth(sizes.back()));
  }
  for (std::size_t i = 0; i < shown; ++i) {
    const auto padding = static_cast<std::size_t>(width - displayWidth(sizes[i]));
    session.out().line(fmt::format("{} {}{}  {}", i + 1 == rows.count ? "└─" : "├─", std::string(padding, ' '),
                                   sizes[i], lineOf(proposal.row(rows.first + i))));
  }
  if (shown < rows.count) {
    session.out().line(fmt::format("└─ and {} more", formatCount(static_cast<std::int64_t>(rows.count - shown))));
  }
}

}  // namespace

void printGroups(Session& session, const Proposal& proposal) {
  const auto rows = rowsByGroup(proposal);
  for (std::size_t at = 0; at < rows.size(); ++at) printGroup(session, proposal, proposal.groups()[at], rows[at]);
  const auto sum = proposal.approve().toFolders();
  session.out().line(fmt::format("{} into {} {}.", itemsText(sum), formatCount(static_cast<std::int64_t>(rows.size())),
                                 rows.size() == 1 ? "folder" : "folders"));
}

}  // namespace orvane::cli
