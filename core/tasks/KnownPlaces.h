#pragma once

#include "core/base/files/FileUrl.h"
#include "core/localization/records/AppLanguage.h"
#include "core/safety/records/Boundary.h"
#include "core/scanning/records/DeveloperCaches.h"
#include "core/scanning/records/FileItem.h"
#include "core/tasks/ItemList.h"

#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

struct TaskServices;

// Whether a scan looks into the caches and logs of programs too, which lie outside the granted folders.
enum class KnownPlaces : std::uint8_t { leaveOut, include };
// Of the subjects of proposals that take them.
inline constexpr std::string_view knownPlacesKey = "includesKnownPlaces";

// As the user has it.
[[nodiscard]] KnownPlaces grantedKnownPlaces(const TaskServices& services);
void grantKnownPlaces(const TaskServices& services, KnownPlaces places);

// The known places that exist, an item each; see KnownPlaceSearch. Those of developers' tools only on demand. Empty
// once a stop is requested.
[[nodiscard]] std::vector<FileItem> knownPlaceItems(const TaskServices& services, DeveloperCaches developerCaches,
                                                    const std::stop_token& stop);
// The boundary with known places added, each as a folder of its own.
[[nodiscard]] Boundary withKnownPlaces(const Boundary& boundary, std::span<const FileItem> places);
// Those of found items that are known places; a scan finds them first.
[[nodiscard]] std::vector<FileItem> knownPlacesAmong(const TaskServices& services, const ItemList& items);

// Whether the program of a known place runs, so that only the user's own choice moves it. Of a safe place that a scan
// found the selection tells; for others it looks at the disk.
[[nodiscard]] bool isPlaceInUse(const TaskServices& services, const FileItem& place);

// Of a folder that a tool made from a project: when somebody last worked on that. Absent for everything else.
[[nodiscard]] std::optional<Date> projectDate(const TaskServices& services, const FileItem& item);

// Why a known place can go, for people. Empty where the place is none.
[[nodiscard]] std::string knownPlaceReason(const TaskServices& services, const FileUrl& place, AppLanguage language);
// The same for what a scan found, or that the program uses it now.
[[nodiscard]] std::string knownPlaceReason(const TaskServices& services, const FileItem& item, AppLanguage language);

}  // namespace orvane
