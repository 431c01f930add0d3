#include "core/map/MapGrowth.h"

#include "core/base/files/PathText.h"

#include <algorithm>
#include <array>
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

// A folder that the snapshot left out was at most as large as what it kept least of: so much less it grew, for certain.
std::optional<std::int64_t> grownSince(const MapSnapshot& then, const std::string& path, std::int64_t now) {
  const auto row = then.folders.find(path);
  if (row != then.folders.end()) return now - row->second;
  if (then.left == 0 || now > then.left) return now - then.left;
  return std::nullopt;
}

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
  std::array<std::int64_t, allMapKinds.size()> now{};
  for (std::size_t index = 0; index < map.folderCount(); ++index) {
    for (const auto& slice : map.folder(static_cast<Index>(index)).slices) {
      now[static_cast<std::size_t>(slice.traits.kind)] += slice.sum.diskBytes;
    }
  }
  for (const auto kind : allMapKinds) {
    const auto row = then.kinds.find(std::string(mapKinds[kind].rawValue));
    const auto bytes = now[static_cast<std::size_t>(kind)] - (row == then.kinds.end() ? 0 : row->second);
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
  // Parents come first, so each path is one step from a known one.
  std::vector<std::string> paths(map.folderCount());
  for (std::size_t index = 0; index < paths.size(); ++index) {
    const auto& folder = map.folder(static_cast<Index>(index));
    const bool isKnown = index == 0 || folder.total.diskBytes > then.left || then.left == 0 ||
                         then.folders.contains(paths[folder.parent]);
    if (!isKnown) continue;
    paths[index] = index == 0 ? map.rootPath() : joinPath(paths[folder.parent], folder.name);
    growth.byFolder[index] = grownSince(then, paths[index], folder.total.diskBytes);
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
