#pragma once

#include "core/map/records/MapSnapshot.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane {

// At most so many folders are remembered, the largest, their parents always among them.
inline constexpr std::size_t foldersRemembered = 3000;

[[nodiscard]] MapSnapshot snapshotOf(const StorageMap& map, Date taken);

// The folders in pre-order, a row for each: depth, length of the name, name, bytes, numbers in seven bits a byte.
[[nodiscard]] std::string packedFolders(const MapSnapshot& snapshot);
// False, with nothing added, where the text is none of packedFolders().
[[nodiscard]] bool unpackFolders(std::string_view packed, MapSnapshot& snapshot);

}  // namespace orvane
