#pragma once

#include "core/base/values/Date.h"
#include "core/map/JsonPieces.h"
#include "core/map/records/StorageMap.h"
#include "core/platform/SystemProfile.h"

#include <functional>
#include <string_view>

namespace orvane {

// A map in the JSON form of ncdu (its "JSON File Format", major version 1), to be looked at elsewhere.

// Hands the text over in pieces. Every file that the map keeps by name is in it; the others of a folder are one entry.
// Of a map that keeps every file, a file with several names has them all, as ncdu tells it.
void writeNcdu(const StorageMap& map, Date now, const std::function<void(std::string_view)>& write);

// The file may come from anybody: time and memory stay in proportion to its length, sizes are held within their range.
// Of an entry with several names only the first that comes counts. Throws JsonError.
[[nodiscard]] StorageMap readNcdu(const JsonPieces::Source& source, const SystemProfile& profile, Date now);

}  // namespace orvane
