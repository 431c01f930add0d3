#include "cli/OrganizeText.h"

#include "cli/FileArguments.h"
#include "cli/RunReport.h"
#include "cli/Session.h"
#include "core/base/ByteCount.h"
#include "core/base/CheckedArithmetic.h"
#include "core/base/UnicodeText.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

namespace orvane::cli {
namespace {

// Of each group: nobody reads thousands of lines, and whatever reads them takes the JSON.
constexpr std::size_t movesShown = 20;

std::string moveLine(const ProposedMove& move) {
  auto line = escapedForDisplay(move.sourceRelativePath);
  if (move.isDirectory) line += "/";
  if (move.targetURL.lastPathComponent() != move.originalURL.lastPathComponent()) {
    line += fmt::format(" -> {}", escapedForDisplay(move.targetURL.lastPathComponent()));
  }
  return line;
}

void printGroup(Session& session, const OrganizationCategoryGroup& group) {
  session.out().line(fmt::format("{} ({}, {})  ->  {}", escapedForDisplay(group.name),
                                 itemCount(static_cast<std::int64_t>(group.moves.size())), group.formattedTotalSize(),
                                 shownPath(group.destinationFolder)));
  const auto shown = std::min(movesShown, group.moves.size());
  std::vector<std::string> sizes;
  int width = 0;
  for (std::size_t i = 0; i < shown; ++i) {
    sizes.push_back(formatByteCount(group.moves[i].fileSize));
    width = std::max(width, displayWidth(sizes.back()));
  }
  for (std::size_t i = 0; i < shown; ++i) {
    const auto padding = static_cast<std::size_t>(width - displayWidth(sizes[i]));
    session.out().line(fmt::format("{} {}{}  {}", i + 1 == group.moves.size() ? "└─" : "├─", std::string(padding, ' '),
                                   sizes[i], moveLine(group.moves[i])));
  }
  if (shown < group.moves.size()) {
    session.out().line(
        fmt::format("└─ and {} more", formatCount(static_cast<std::int64_t>(group.moves.size() - shown))));
  }
}

}  // namespace

void printGroups(Session& session, std::span<const OrganizationCategoryGroup> groups) {
  std::int64_t bytes = 0;
  for (const auto& group : groups) {
    printGroup(session, group);
    bytes = checkedAdd(bytes, group.totalSize());
  }
  session.out().line(fmt::format("{} ({}) into {} {}.", itemCount(selectedCount(groups)), formatByteCount(bytes),
                                 formatCount(static_cast<std::int64_t>(groups.size())),
                                 groups.size() == 1 ? "folder" : "folders"));
}

std::int64_t selectedCount(std::span<const OrganizationCategoryGroup> groups) {
  std::int64_t count = 0;
  for (const auto& group : groups) {
    count += std::count_if(group.moves.begin(), group.moves.end(), [](const auto& move) { return move.isSelected; });
  }
  return count;
}

}  // namespace orvane::cli
