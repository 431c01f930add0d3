#pragma once

#include "core/base/values/Date.h"
#include "core/map/records/StorageMap.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

// The changes between an earlier snapshot and a map, in bytes on the disk.
struct MapGrowth {
  struct Folder {
    StorageMap::Index folder = 0;
    std::int64_t bytes = 0;
  };
  struct Kind {
    MapKind kind = MapKind::other;
    std::int64_t bytes = 0;
  };

  Date since{};
  std::int64_t bytes = 0;
  // Of each folder of the map; absent where the snapshot left it out as too small to tell.
  std::vector<std::optional<std::int64_t>> byFolder;
  std::vector<Folder> folders;  // that explain it, the one that grew most first; none holds another
  std::vector<Kind> kinds;      // that grew or shrank, the one that grew most first
};

}  // namespace orvane
