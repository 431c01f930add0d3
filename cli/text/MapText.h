#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/map/records/MapSnapshot.h"

#include <span>

namespace orvane {
struct FolderMap;
}  // namespace orvane

namespace orvane::cli {

class Session;

// Folders by size down to `depth` levels below the top, the largest files, and what grew.
void printMap(Session& session, const FolderMap& map, int depth);
// {"path", "diskBytes", "logicalBytes", "files", "state", "children", "grownBytes"}
[[nodiscard]] Json mapJson(const FolderMap& map, int depth);

void printMomentsTable(Session& session, std::span<const MapMoment> moments);
// {"taken", "path", "diskBytes", "freeBytes"}
[[nodiscard]] Json momentJson(const MapMoment& moment);

}  // namespace orvane::cli
