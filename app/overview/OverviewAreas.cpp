#include "app/overview/OverviewAreas.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

namespace orvane {
namespace {

constexpr std::size_t mostFolders = 8;

void sortLargestFirst(std::vector<OverviewArea>& areas) {
  std::stable_sort(areas.begin(), areas.end(),
                   [](const auto& left, const auto& right) { return left.bytes > right.bytes; });
}

void add(OverviewArea& area, const FileItem& item) {
  area.bytes += item.fileSize();
  ++area.count;
}

}  // namespace

std::vector<OverviewArea> overviewAreas(const ScannedItems::Snapshot& scanned, const std::stop_token& stop) {
  struct Sums {
    OverviewArea whole;
    std::unordered_map<std::string_view, OverviewArea> folders;
  };
  std::array<Sums, allScanCategories.size()> sums;
  scanned.items.forEach([&](std::size_t index, const FileItem& item) {
    if (stop.stop_requested()) return false;
    if (scanned.gone[index] != 0) return true;
    auto& sum = sums[static_cast<std::size_t>(item.category())];
    add(sum.whole, item);
    add(sum.folders[shownFolder(scanned.items, index, scanned.folders)], item);
    return true;
  });
  std::vector<OverviewArea> result;
  for (const auto category : allScanCategories) {
    auto& sum = sums[static_cast<std::size_t>(category)];
    if (sum.whole.count == 0) continue;
    sum.whole.category = category;
    for (auto& [folder, area] : sum.folders) {
      area.category = category;
      area.folder = folder;
      sum.whole.folders.push_back(std::move(area));
    }
    // First by name, so that equal ones always come in the same order.
    std::sort(sum.whole.folders.begin(), sum.whole.folders.end(),
              [](const auto& left, const auto& right) { return left.folder < right.folder; });
    sortLargestFirst(sum.whole.folders);
    if (sum.whole.folders.size() > mostFolders) sum.whole.folders.resize(mostFolders);
    result.push_back(std::move(sum.whole));
  }
  sortLargestFirst(result);
  return result;
}

}  // namespace orvane
