#include "core/tasks/CleanTask.h"

#include "core/tasks/ScanTask.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <utility>

namespace orvane {
namespace {

bool takes(const CleanWish& wish, const FileItem& item) {
  const bool isNamed =
      std::find(wish.categories.begin(), wish.categories.end(), item.category()) != wish.categories.end();
  if (!wish.categories.empty() && !isNamed) return false;
  const auto mark = scannedMark(item);
  if (mark.choice == Choice::selected) return true;
  return mark.choice == Choice::unselected && isNamed && wish.reviewItems == ReviewItems::include;
}

}  // namespace

std::optional<Proposal> proposeClean(const TaskServices& services, const CleanWish& wish, const TaskMonitor& monitor) {
  ProposalBuilder builder(TaskKind::clean, Boundary(wish.folders), ReferenceClock::now());
  RowsInTrash inTrash;
  // Folders that overlap meet an item twice.
  std::unordered_set<std::string> seen;
  const auto end = scanItems(services, wish.folders, wish.developerCaches, monitor, [&](FileItem item) {
    if (item.category() == ScanCategory::trash) inTrash.rows.add(item.fileSize());
    if (!takes(wish, item) || !seen.insert(item.url().path()).second) return;
    item.setSelected(true);
    builder.add(std::move(item), {Choice::selected});
  });
  if (end == ScanEnd::cancelled) return std::nullopt;
  if (inTrash.rows.count > 0) builder.note(inTrash);
  return builder.take();
}

Proposal proposeScanned(ItemList items, std::vector<FileUrl> folders, Date scanned) {
  ProposalBuilder builder(TaskKind::clean, Boundary(std::move(folders)), scanned);
  builder.setItems(std::move(items));
  return builder.take();
}

}  // namespace orvane
