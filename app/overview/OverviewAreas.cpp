#include "app/overview/OverviewAreas.h"

#include <algorithm>
#include <utility>

namespace orvane {
namespace {

constexpr std::size_t maxFolders = 8;

void countIn(OverviewArea& area, const FileItem& item) {
  area.bytes += item.fileSize();
  ++area.count;
}

// Equal ones in the order of their names, so that they always come in the same one.
bool isLarger(const OverviewArea& one, const OverviewArea& other) {
  return one.bytes != other.bytes ? one.bytes > other.bytes : one.folder < other.folder;
}

bool isSame(const OverviewArea& one, const OverviewArea& other) {
  return one.kind == other.kind && one.category == other.category && one.folder == other.folder;
}

// So that the parts add up to the whole.
void addRest(OverviewArea& whole) {
  OverviewArea rest{
      .kind = OverviewArea::Kind::rest, .category = whole.category, .bytes = whole.bytes, .count = whole.count};
  for (const auto& part : whole.parts) {
    rest.bytes -= part.bytes;
    rest.count -= part.count;
  }
  if (rest.count > 0) whole.parts.push_back(std::move(rest));
}

}  // namespace

void OverviewSums::add(const ScannedItems::Snapshot& scanned, const std::stop_token& stop) {
  scanned.items.forEachFrom(m_counted, [&](std::size_t index, const FileItem& item) {
    if (stop.stop_requested()) return false;
    m_counted = index + 1;
    if (scanned.gone[index] != 0) return true;
    auto& sum = m_sums[static_cast<std::size_t>(item.category())];
    countIn(sum.whole, item);
    const auto folder = shownFolder(scanned.items, index, scanned.folders);
    auto found = sum.folders.find(folder);
    if (found == sum.folders.end())
      found = sum.folders.emplace(folder, OverviewArea{.kind = OverviewArea::Kind::folder}).first;
    countIn(found->second, item);
    return true;
  });
}

std::vector<OverviewArea> OverviewSums::areas() const {
  std::vector<OverviewArea> result;
  for (const auto category : allScanCategories) {
    const auto& sum = m_sums[static_cast<std::size_t>(category)];
    if (sum.whole.count == 0) continue;
    auto whole = sum.whole;
    whole.category = category;
    for (const auto& [folder, area] : sum.folders) {
      whole.parts.push_back(area);
      whole.parts.back().category = category;
      whole.parts.back().folder = folder;
    }
    std::ranges::sort(whole.parts, isLarger);
    if (whole.parts.size() > maxFolders) whole.parts.resize(maxFolders);
    addRest(whole);
    result.push_back(std::move(whole));
  }
  std::ranges::stable_sort(result, isLarger);
  return result;
}

std::vector<OverviewArea> inShownOrder(std::vector<OverviewArea> areas, const std::vector<OverviewArea>& shown) {
  const auto placeOf = [&shown](const OverviewArea& area) {
    // The rest of a category stays the last, whatever is new.
    if (area.kind == OverviewArea::Kind::rest) return shown.size() + 1;
    const auto same = [&area](const OverviewArea& other) { return isSame(area, other); };
    return static_cast<std::size_t>(std::ranges::find_if(shown, same) - shown.begin());
  };
  std::ranges::stable_sort(areas, {}, placeOf);
  for (auto& area : areas) {
    const auto place = placeOf(area);
    if (place < shown.size()) area.parts = inShownOrder(std::move(area.parts), shown[place].parts);
  }
  return areas;
}

}  // namespace orvane
