#include "cli/DuplicateText.h"

#include "cli/FileArguments.h"
#include "cli/Session.h"
#include "core/base/ByteCount.h"
#include "core/base/CheckedArithmetic.h"
#include "core/base/Json.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace orvane::cli {
namespace {

std::int64_t selectedCount(const DuplicateGroup& group) {
  return std::count_if(group.items.begin(), group.items.end(), [](const FileItem& item) { return item.isSelected(); });
}

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

std::string leftText(std::string_view what, const DuplicateProgress& progress) {
  return fmt::format("{}: {} ({}) left", what, counted(progress.filesLeft, "file", "files"),
                     formatByteCount(std::max<std::int64_t>(0, progress.bytesLeft)));
}

}  // namespace

void printDuplicateGroups(Session& session, std::span<const DuplicateGroup> groups) {
  for (const auto& group : groups) {
    session.out().line(fmt::format("{} of {} each; {} can be freed",
                                   counted(static_cast<std::int64_t>(group.items.size()), "copy", "copies"),
                                   formatByteCount(group.fileSize), formatByteCount(group.selectedWastedBytes())));
    printItems(session, group, false, "keep  ");
    printItems(session, group, true, "remove");
    session.out().line("");
  }
  const auto totals = totalsOf(groups);
  if (totals.groups == 0) {
    session.out().line("No duplicates were found.");
    return;
  }
  session.out().line(fmt::format("{} of identical files; {} ({}) can go to the Trash.",
                                 counted(totals.groups, "group", "groups"), counted(totals.selected, "copy", "copies"),
                                 formatByteCount(totals.selectedBytes)));
}

void writeDuplicateGroups(Session& session, std::span<const DuplicateGroup> groups) {
  std::string_view separator = "[";
  for (const auto& group : groups) {
    session.out().write(separator);
    session.out().write(jsonText(group.toJson()));
    separator = ",";
  }
  session.out().line(groups.empty() ? "[]" : "]");
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

DuplicateTotals totalsOf(std::span<const DuplicateGroup> groups) {
  DuplicateTotals totals;
  for (const auto& group : groups) {
    ++totals.groups;
    totals.selected += selectedCount(group);
    totals.selectedBytes = checkedAdd(totals.selectedBytes, group.selectedWastedBytes());
  }
  return totals;
}

}  // namespace orvane::cli
