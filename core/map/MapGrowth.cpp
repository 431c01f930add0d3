#include "core/map/MapGrowth.h"

#include "core/base/files/PathText.h"

#include <algorithm>
#include <cstdlib>

namespace orvane {
namespace {

using Index = StorageMap::Index;

constexpr double rateDays = 14;
constexpr double fullSoonDays = 14;
// Less of the whole change is not worth a row.
constexpr std::int64_t worthShare = 20;
// So much of a folder's growth inside one of its folders is that folder's.
constexpr double mostly = 0.6;

void explain(const StorageMap& map, MapGrowth& growth, Index index, std::int64_t worth) {
  const auto own = growth.byFolder[index].value_or(0);
  std::int64_t below = 0;
  std::vector<Index> worthLooking;
  for (const auto child : map.children(index)) {
    const auto bytes = growth.byFolder[child].value_or(0);
    if (bytes < worth) continue;
    below += bytes;
    worthLooking.push_back(child);
  }
  if (static_cast<double>(below) < mostly * static_cast<double>(own)) {
    growth.folders.push_back({index, own});
    return;
  }
  for (const auto child : worthLooking) explain(map, growth, child, worth);
}

void addKinds(const StorageMap& map, const MapSnapshot& then, MapGrowth& growth) {
  // Only a snapshot of the same folder says what kinds were in it.
  if (then.root != map.rootPath()) return;
  for (const auto kind : allMapKinds) {
    const auto row = then.kinds.find(std::string(mapKinds[kind].rawValue));
    const auto bytes = map.diskBytesOf(kind) - (row == then.kinds.end() ? 0 : row->second);
    if (bytes != 0) growth.kinds.push_back({kind, bytes});
  }
}

}  // namespace

std::optional<MapGrowth> growthSince(const StorageMap& map, const MapSnapshot& then) {
  const auto top = then.folders.find(map.rootPath());
  if (top == then.folders.end()) return std::nullopt;
  MapGrowth growth;
  growth.since = then.taken;
  growth.bytes = map.folder(StorageMap::top).total.diskBytes - top->second;
  growth.byFolder.resize(map.folderCount());
  // A snapshot knows the parent of each folder that it knows, and parents come first: paths are made only right inside
  // of known folders.
  std::vector<const std::string*> known(map.folderCount());
  for (std::size_t index = 0; index < known.size(); ++index) {
    const auto& folder = map.folder(static_cast<Index>(index));
    const auto now = folder.total.diskBytes;
    auto row = index == 0 ? top : then.folders.end();
    if (index > 0 && known[folder.parent] != nullptr) {
      row = then.folders.find(joinPath(*known[folder.parent], folder.name));
    }
    if (row != then.folders.end()) {
      known[index] = &row->first;
      growth.byFolder[index] = now - row->second;
    } else if (then.left == 0 || now > then.left) {
      // It was at most as large as what the snapshot kept least of: so much it grew, for certain.
      growth.byFolder[index] = now - then.left;
    }
  }
  if (growth.bytes > 0) explain(map, growth, StorageMap::top, std::max<std::int64_t>(growth.bytes / worthShare, 1));
  const auto isMore = [](const auto& one, const auto& other) { return one.bytes > other.bytes; };
  std::stable_sort(growth.folders.begin(), growth.folders.end(), isMore);
  addKinds(map, then, growth);
  std::stable_sort(growth.kinds.begin(), growth.kinds.end(), isMore);
  return growth;
}

const MapMoment* momentBefore(std::span<const MapMoment> moments, const std::string& root, Date since) {
  const MapMoment* found = nullptr;
  for (const auto& moment : moments) {
    if (!isSameOrInside(root, moment.root)) continue;
    if (moment.taken > since && found != nullptr) break;
    found = &moment;
    if (moment.taken > since) break;
  }
  return found;
}

std::optional<double> daysUntilFull(std::span<const MapMoment> moments, const std::string& root, std::int64_t freeBytes,
                                    Date now) {
  for (const auto& moment : moments) {
    const double days = (now - moment.taken).count() / secondsOfADay;
    if (moment.root != root || moment.freeBytes < 0 || days > rateDays) continue;
    if (days < 1) return std::nullopt;
    const auto lost = static_cast<double>(moment.freeBytes - freeBytes) / days;
    if (lost <= 0) return std::nullopt;
    const auto left = static_cast<double>(freeBytes) / lost;
    return left <= fullSoonDays ? std::optional(left) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace orvane
