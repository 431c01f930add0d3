#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/map/records/MapGrowth.h"
#include "core/map/records/MapSnapshot.h"
#include "core/map/records/StorageMap.h"
#include "core/tasks/TaskMonitor.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace orvane {

struct TaskServices;
class SnapshotStore;
class Volume;

// The collaborators of the map. Everything must outlive its users.
struct MapServices {
  const TaskServices& tasks;
  SnapshotStore& snapshots;
  const Volume& volume;

  // The program's own.
  static const MapServices& shared();
};

enum class MapDetail : std::uint8_t { someFiles, everyFile };

// A map, and what was remembered when it was made.
struct FolderMap {
  StorageMap map;
  Date taken{};
  std::vector<MapMoment> earlier = {};  // oldest first, of every root
  std::int64_t freeBytes = -1;          // of the map's volume; negative where the system does not tell
  // The changes since the date that was asked for, by the last snapshot before it or else the first.
  std::optional<MapGrowth> growth = {};
};

// Maps a folder, compares it with what is remembered where `since` is given, and remembers it where the user wants
// that; everything is only read. Absent where the monitor stopped it. Throws std::system_error where there is no such
// folder.
[[nodiscard]] std::optional<FolderMap> mapFolder(const MapServices& services, const FileUrl& folder, MapDetail detail,
                                                 std::optional<Date> since, const TaskMonitor& monitor);

// In how many days the disk is full, where it is so within two weeks at the rate of the last two.
[[nodiscard]] std::optional<double> daysUntilFull(const FolderMap& map);

// The map in ncdu's form, handed over in pieces.
void exportMap(const StorageMap& map, const std::function<void(std::string_view)>& write);
// From such a file, which anybody may have made; `source` fills a place and returns how much. It holds nothing that can
// be touched here. Throws JsonError.
[[nodiscard]] StorageMap importMap(const MapServices& services,
                                   const std::function<std::size_t(std::span<char>)>& source);

// For the daily start without a window: maps the home folder where snapshots are on and none is of today.
// Absent where nothing was due.
[[nodiscard]] std::optional<FolderMap> mapDaily(const MapServices& services, const TaskMonitor& monitor);

}  // namespace orvane
