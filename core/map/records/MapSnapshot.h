#pragma once

#include "core/base/values/Date.h"
#include "core/map/records/StorageMap.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

// A completed map in little: totals, by kind and by category, and the folders that matter.
struct MapSnapshot {
  Date taken{};
  std::string root = {};
  MapSum total = {};
  std::int64_t volumeBytes = 0;
  std::int64_t freeBytes = 0;                      // of the volume, to this user; negative where it was not told
  std::map<std::string, std::int64_t> kinds = {};  // bytes on the disk by the case's name
  std::map<std::string, std::int64_t> categories = {};
  std::map<std::string, std::int64_t> folders = {};  // by path, the root included
  std::int64_t left = 0;                             // no folder that is not among them was larger
};

// The same without what it says of folders, for a line over time.
struct MapMoment {
  std::int64_t id = 0;
  Date taken{};
  std::string root = {};
  std::int64_t diskBytes = 0;
  std::int64_t volumeBytes = 0;
  std::int64_t freeBytes = 0;
};

}  // namespace orvane
