#include "core/tasks/MapTask.h"

#include "core/map/MapGrowth.h"
#include "core/map/MapWalk.h"
#include "core/map/NcduFile.h"
#include "core/map/SnapshotForm.h"
#include "core/map/services/SnapshotStore.h"
#include "core/platform/Volume.h"
#include "core/tasks/TaskServices.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace orvane {
namespace {

// A daily start comes a little earlier or later each day.
constexpr std::chrono::hours daily{20};
// The daily map tells the growth of a week.
constexpr std::chrono::days sinceDaily{7};

std::optional<MapGrowth> growthOf(const MapServices& services, const FolderMap& map, Date since) {
  const auto* moment = momentBefore(map.earlier, map.map.rootPath(), since);
  if (moment == nullptr) return std::nullopt;
  const auto snapshot = services.snapshots.read(moment->id);
  return snapshot ? growthSince(map.map, *snapshot) : std::nullopt;
}

}  // namespace

std::optional<FolderMap> mapFolder(const MapServices& services, const FileUrl& folder, MapDetail detail,
                                   std::optional<Date> since, const TaskMonitor& monitor) {
  const auto now = ReferenceClock::now();
  MapWalk::Options options;
  options.filesKept = detail == MapDetail::everyFile ? MapWalk::everyFile : MapWalk::someFiles;
  options.stop = monitor.stop;
  options.progress = [&](const MapSum& sum, const std::string& path) {
    if (monitor.looked != nullptr) {
      monitor.looked->store(static_cast<std::size_t>(sum.files), std::memory_order_relaxed);
    }
    if (monitor.scanning) monitor.scanning({sum.files, sum.diskBytes, path});
  };
  auto map = MapWalk(services.tasks.validator, services.tasks.profile, now).map(folder.path(), options);
  if (!map) return std::nullopt;
  FolderMap result{.map = *std::move(map), .taken = now};
  result.earlier = services.snapshots.moments(now);
  if (since) result.growth = growthOf(services, result, *since);
  const auto capacity = services.volume.capacity(FileUrl(result.map.rootPath()));
  if (capacity) result.freeBytes = capacity->availableBytes;
  if (services.snapshots.isOn()) {
    auto snapshot = snapshotOf(result.map, now);
    snapshot.freeBytes = result.freeBytes;
    snapshot.volumeBytes = capacity ? capacity->totalBytes : -1;
    services.snapshots.add(snapshot);
  }
  return result;
}

std::optional<double> daysUntilFull(const FolderMap& map) {
  if (map.freeBytes < 0) return std::nullopt;
  return daysUntilFull(map.earlier, map.map.rootPath(), map.freeBytes, map.taken);
}

void exportMap(const StorageMap& map, const std::function<void(std::string_view)>& write) {
  writeNcdu(map, ReferenceClock::now(), write);
}

StorageMap importMap(const MapServices& services, const std::function<std::size_t(std::span<char>)>& source) {
  return readNcdu(source, services.tasks.profile, ReferenceClock::now());
}

std::optional<FolderMap> mapDaily(const MapServices& services, const TaskMonitor& monitor) {
  if (!services.snapshots.isOn()) return std::nullopt;
  const auto now = ReferenceClock::now();
  const auto& home = services.tasks.home;
  for (const auto& moment : services.snapshots.moments(now)) {
    if (FileUrl(moment.root) == home && now - moment.taken < daily) return std::nullopt;
  }
  return mapFolder(services, home, MapDetail::someFiles, now - sinceDaily, monitor);
}

}  // namespace orvane
