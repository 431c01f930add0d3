#include "core/tasks/DuplicatesTask.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/duplicates/DuplicateFinderEngine.h"
#include "core/duplicates/DuplicateWalk.h"
#include "core/safety/rules/ProtectedLocations.h"
#include "core/tasks/Folders.h"
#include "core/tasks/KeptRows.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace orvane {
namespace {

FolderLeftOut notSearched(const FileUrl& folder) {
  return {
      folder, FolderLeftOut::Why::refused,
      fmt::format("'{}' is not searched for duplicates: caches are full of copies that belong there.", folder.path())};
}

bool staysAnyway(Lock lock) {
  return lock == Lock::kept || lock == Lock::reference;
}

RowMark markOf(const FileItem& copy, std::uint32_t group) {
  if (!isSelectable(copy.riskLabel())) return {Choice::locked, Lock::manualLabel, group};
  return {copy.isSelected() ? Choice::selected : Choice::unselected, Lock::none, group};
}

Json subjectOf(const DuplicatesOptions& options) {
  Json subject = Json::object();
  subject["folders"] = jsonFromUrls(options.folders);
  subject["keep"] = rawValue(options.keep);
  if (!options.references.empty()) subject["references"] = jsonFromUrls(options.references);
  return subject;
}

// How the copies of one group stand. Empty where none of them can be chosen beside those that stay anyway.
std::vector<RowMark> marksOf(const std::vector<FileItem>& copies, std::uint32_t group, const Boundary& references,
                             KeptRows& kept) {
  std::vector<RowMark> marks;
  bool oneStays = false;
  for (const auto& copy : copies) {
    auto mark = markOf(copy, group);
    if (!references.folders().empty() && references.contains(canonicalPath(copy.url().path()))) {
      mark = {Choice::locked, Lock::reference, group};
    } else if (kept.hold(copy)) {
      mark = {Choice::locked, Lock::kept, group};
    }
    oneStays |= staysAnyway(mark.lock);
    marks.push_back(mark);
  }
  if (!oneStays) return marks;
  bool oneCanGo = false;
  for (auto& mark : marks) {
    if (mark.lock == Lock::none) mark.choice = Choice::selected;
    oneCanGo |= mark.lock == Lock::none;
  }
  return oneCanGo ? marks : std::vector<RowMark>();
}

std::vector<FileUrl> searchedFolders(const DuplicatesOptions& options) {
  // A file that has several names is listed by the one that is found first.
  auto folders = options.references;
  folders.insert(folders.end(), options.folders.begin(), options.folders.end());
  return folders;
}

std::optional<Proposal> propose(const TaskServices& services, const DuplicatesOptions& options,
                                const Boundary& boundary, Notices notices, const TaskMonitor& monitor) {
  ProposalBuilder builder(TaskKind::duplicates, boundary, options.now);
  builder.setSubject(subjectOf(options));
  for (auto& notice : notices) builder.note(std::move(notice));
  for (const auto& folder : options.folders) {
    if (!isSearchable(folder)) builder.note(notSearched(folder));
  }
  for (const auto& folder : options.references) {
    auto problem = problemWith(services, folder);
    if (problem && problem->why == FolderLeftOut::Why::missing) builder.note(*std::move(problem));
  }
  auto groups = services.finder.findDuplicates(searchedFolders(options), options.keep, monitor.stop, monitor.comparing);
  if (monitor.stop.stop_requested()) return std::nullopt;
  const Boundary references(options.references);
  KeptRows kept(services);
  std::uint32_t next = 0;
  for (auto& found : groups) {
    auto copies = std::exchange(found.items, {});
    const auto marks = marksOf(copies, next, references, kept);
    if (marks.empty()) continue;
    next = builder.addGroup({.id = found.id, .checksum = std::move(found.hash), .keepsOne = true}) + 1;
    for (std::size_t at = 0; at < copies.size(); ++at) builder.add(std::move(copies[at]), marks[at]);
  }
  kept.noteIn(builder);
  return builder.take();
}

// Calls `visit(row index, copy)` for each copy of the group that begins with a row and is not gone.
template <typename Visit>
void forEachCopy(const Proposal& proposal, std::uint32_t firstRow, const Selection& selection, Visit visit) {
  const auto* const group = proposal.row(firstRow).group;
  for (auto at = firstRow; at < proposal.size(); ++at) {
    const auto row = proposal.row(at);
    if (row.group != group) return;
    if (selection.isThere(at)) visit(at, row.item);
  }
}

bool hasCopyThatStays(const Proposal& proposal, std::uint32_t firstRow, const Selection& selection) {
  bool result = false;
  forEachCopy(proposal, firstRow, selection,
              [&](std::uint32_t at, const FileItem& /*copy*/) { result |= staysAnyway(proposal.row(at).lock); });
  return result;
}

// Chooses as the group, which was made of the selection, has it by now.
void take(const DuplicateGroup& group, const Proposal& proposal, std::uint32_t firstRow, Selection& selection) {
  auto copy = group.items.begin();
  forEachCopy(proposal, firstRow, selection, [&](std::uint32_t at, const FileItem& /*item*/) {
    selection.set(at, copy->isSelected() ? Selection::Whether::selected : Selection::Whether::unselected);
    ++copy;
  });
}

std::size_t newest(const std::vector<FileItem>& copies) {
  const auto isOlder = [](const FileItem& left, const FileItem& right) {
    return left.createdDate() < right.createdDate();
  };
  return static_cast<std::size_t>(std::max_element(copies.begin(), copies.end(), isOlder) - copies.begin());
}

// Absent where no copy lies in the folder.
std::optional<std::size_t> oldestInside(const std::vector<FileItem>& copies, const FileUrl& folder) {
  std::optional<std::size_t> kept;
  for (std::size_t at = 0; at < copies.size(); ++at) {
    if (!isBelow(copies[at].url().path(), folder.path())) continue;
    if (!kept || copies[at].createdDate() < copies[*kept].createdDate()) kept = at;
  }
  return kept;
}

void keepOnly(std::vector<FileItem>& copies, std::size_t kept) {
  for (std::size_t at = 0; at < copies.size(); ++at) copies[at].setSelected(at != kept);
}

void apply(const KeepRule& rule, DuplicateGroup& group) {
  if (group.items.size() < 2) return;
  switch (rule.by) {
    case KeepRule::By::oldest:
      return group.applyKeepStrategy(DuplicateKeepStrategy::keepOldest);
    case KeepRule::By::shortestPath:
      return group.applyKeepStrategy(DuplicateKeepStrategy::keepShortestPath);
    case KeepRule::By::newest:
      return keepOnly(group.items, newest(group.items));
    case KeepRule::By::folder:
      break;
  }
  if (const auto kept = oldestInside(group.items, rule.folder)) return keepOnly(group.items, *kept);
  group.applyKeepStrategy(DuplicateKeepStrategy::keepOldest);
}

}  // namespace

std::vector<FileUrl> searchableFolders(const TaskServices& services) {
  auto folders = grantedFolders(services);
  std::erase_if(folders, [](const FileUrl& folder) { return !isSearchable(folder); });
  return folders;
}

std::optional<Proposal> proposeDuplicates(const TaskServices& services, const DuplicatesOptions& options,
                                          const TaskMonitor& monitor) {
  return propose(services, options, Boundary(options.folders), {}, monitor);
}

std::optional<Proposal> reproposeDuplicates(const TaskServices& services, const Json& subject, const Boundary& boundary,
                                            Date countedTo, const TaskMonitor& monitor) {
  auto inside = foldersInside(boundary, urlsAt(subject, "folders"));
  const auto keep = duplicateKeepStrategyFromRawValue(stringAt(subject, "keep"));
  if (!keep) throw JsonError("\"keep\" must be a way to choose the copy that stays");
  DuplicatesOptions options{std::move(inside.folders), *keep, countedTo};
  if (optionalKey(subject, "references") != nullptr) {
    auto references = foldersInside(boundary, urlsAt(subject, "references"));
    options.references = std::move(references.folders);
    inside.leftOut.insert(inside.leftOut.end(), references.leftOut.begin(), references.leftOut.end());
  }
  return propose(services, options, boundary, Notices(inside.leftOut.begin(), inside.leftOut.end()), monitor);
}

std::vector<std::uint32_t> firstRowsOfGroups(const Proposal& proposal) {
  std::vector<std::uint32_t> result;
  const RowGroup* last = nullptr;
  proposal.forEach([&](std::size_t index, const ProposedRow& row) {
    if (row.group != last) result.push_back(static_cast<std::uint32_t>(index));
    last = row.group;
  });
  return result;
}

DuplicateGroup duplicateGroupAt(const Proposal& proposal, std::uint32_t firstRow, const Selection& selection) {
  const auto row = proposal.row(firstRow);
  DuplicateGroup group;
  group.id = row.group->id;
  group.fileSize = row.item.fileSize();
  group.hash = row.group->checksum;
  forEachCopy(proposal, firstRow, selection, [&](std::uint32_t at, const FileItem& copy) {
    group.items.push_back(copy);
    group.items.back().setSelected(selection.isSelected(at));
  });
  return group;
}

void applyKeepStrategy(const Proposal& proposal, DuplicateKeepStrategy strategy, Selection& selection) {
  const bool isByAge = strategy == DuplicateKeepStrategy::keepOldest;
  applyKeepRule(proposal, {isByAge ? KeepRule::By::oldest : KeepRule::By::shortestPath}, selection);
}

void applyKeepRule(const Proposal& proposal, const KeepRule& rule, Selection& selection) {
  for (const auto firstRow : firstRowsOfGroups(proposal)) {
    auto group = duplicateGroupAt(proposal, firstRow, selection);
    if (hasCopyThatStays(proposal, firstRow, selection)) {
      for (auto& copy : group.items) copy.setSelected(true);
    } else {
      apply(rule, group);
    }
    take(group, proposal, firstRow, selection);
  }
}

bool setCopySelected(const Proposal& proposal, std::uint32_t row, bool isSelected, Selection& selection) {
  auto firstRow = row;
  while (firstRow > 0 && proposal.row(firstRow - 1).group == proposal.row(row).group) --firstRow;
  auto group = duplicateGroupAt(proposal, firstRow, selection);
  group.setSelection(proposal.row(row).item.id(), isSelected);
  take(group, proposal, firstRow, selection);
  return selection.isSelected(row) == isSelected;
}

std::string duplicateCleanupText(const RunReport& report) {
  return fmt::format("Cleaned {} duplicate files, freeing {}.", report.moved(), formatByteCount(report.movedBytes()));
}

std::string duplicateFailureLine(const FileUrl& copy, std::string_view error) {
  return fmt::format("Failed to trash duplicate {}: {}", copy.path(), error);
}

}  // namespace orvane
