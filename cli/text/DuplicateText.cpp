#include "cli/text/DuplicateText.h"

#include "cli/frame/FileArguments.h"
#include "cli/frame/Session.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/tasks/DuplicatesTask.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane::cli {
namespace {

std::string counted(std::int64_t count, std::string_view one, std::string_view several) {
  return fmt::format("{} {}", formatCount(count), count == 1 ? one : several);
}

void printItems(Session& session, const DuplicateGroup& group, bool isSelected, std::string_view what) {
  for (const auto& item : group.items) {
    if (item.isSelected() != isSelected) continue;
    fmt::format_to(std::back_inserter(session.out().buffer()), "  {}  {}\n", what, shownPath(item.url()));
    session.out().settle();
  }
}

// Calls `visit(group)` for each as it is proposed, in order.
template <typename Visit>
void forEachGroup(const Proposal& proposal, Visit visit) {
  const auto selection = proposal.selection();
  for (const auto row : firstRowsOfGroups(proposal)) visit(duplicateGroupAt(proposal, row, selection));
}

std::string leftText(std::string_view what, const DuplicateProgress& progress) {
  return fmt::format("{}: {} ({}) left", what, counted(progress.filesLeft, "file", "files"),
                     formatByteCount(std::max<std::int64_t>(0, progress.bytesLeft)));
}

}  // namespace

void printDuplicateGroups(Session& session, const Proposal& proposal) {
  std::int64_t groups = 0;
  forEachGroup(proposal, [&](const DuplicateGroup& group) {
    ++groups;
    session.out().line(fmt::format("{} of {} each; {} can be freed",
                                   counted(static_cast<std::int64_t>(group.items.size()), "copy", "copies"),
                                   formatByteCount(group.fileSize), formatByteCount(group.selectedWastedBytes())));
    printItems(session, group, false, "keep  ");
    printItems(session, group, true, "remove");
    session.out().line("");
  });
  if (groups == 0) {
    session.out().line("No duplicates were found.");
    return;
  }
  const auto total = proposal.approve().toTrash();
  session.out().line(fmt::format("{} of identical files; {} ({}) can go to the Trash.",
                                 counted(groups, "group", "groups"), counted(total.count, "copy", "copies"),
                                 formatByteCount(total.bytes)));
}

void writeDuplicateGroups(Session& session, const Proposal& proposal) {
  std::string_view separator = "[";
  forEachGroup(proposal, [&](const DuplicateGroup& group) {
    session.out().write(std::exchange(separator, ","));
    session.out().write(jsonText(group.toJson()));
  });
  session.out().line(proposal.empty() ? "[]" : "]");
}

std::string duplicateProgressText(const DuplicateProgress& progress) {
  switch (progress.stage) {
    case DuplicateProgress::Stage::listing:
      return fmt::format("Looking for files of one size: {} found", counted(progress.filesFound, "file", "files"));
    case DuplicateProgress::Stage::comparingBeginnings:
      return leftText("Comparing beginnings", progress);
    case DuplicateProgress::Stage::comparingContents:
      return leftText("Comparing contents", progress);
  }
  return {};
}

}  // namespace orvane::cli
