#pragma once

#include "core/map/records/MapGrowth.h"
#include "core/map/records/StorageMap.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

enum class MapMeasure : std::uint8_t { disk, length };

// One part of the map's picture: it stands for a folder, a file, or the rest of the folder around it.
struct MapArea {
  enum class Kind : std::uint8_t { folder, file, rest };
  Kind kind = Kind::rest;
  StorageMap::Index folder = StorageMap::noFolder;  // of a file, the folder that holds it
  std::string name = {};                            // empty for a rest
  std::int64_t bytes = 0;
  std::int64_t files = 0;
  MapState state = MapState::yours;
  std::optional<std::int64_t> grownBytes = {};
  std::vector<MapArea> parts = {};  // of a folder
};

// The picture of one folder: what is in it, largest first, and within each folder of it the next level. What is left
// is one area, the last, so that the areas add up to the folder. `totals` are those of the map by a filter.
[[nodiscard]] std::vector<MapArea> mapAreas(const StorageMap& map, const std::optional<MapGrowth>& growth,
                                            StorageMap::Index folder, const std::vector<MapSum>& totals,
                                            const MapFilter& filter, MapMeasure measure);

}  // namespace orvane
