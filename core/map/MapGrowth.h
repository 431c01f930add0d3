#pragma once

#include "core/map/records/MapGrowth.h"
#include "core/map/records/MapSnapshot.h"

#include <optional>
#include <span>

namespace orvane {

// The changes since an earlier snapshot whose root is the map's or holds it; absent where the snapshot does not know
// the map's top.
[[nodiscard]] std::optional<MapGrowth> growthSince(const StorageMap& map, const MapSnapshot& then);

// Of moments, oldest first, the one to compare with for "since": the last before it, else the first after it. Only
// those count whose root is `root` or holds it.
[[nodiscard]] const MapMoment* momentBefore(std::span<const MapMoment> moments, const std::string& root, Date since);

// In how many days the disk is full at the rate of the last two weeks; absent where it does not fill within two, and
// as long as less than a day is remembered.
[[nodiscard]] std::optional<double> daysUntilFull(std::span<const MapMoment> moments, const std::string& root,
                                                  std::int64_t freeBytes, Date now);

}  // namespace orvane
