#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/scanning/records/DeveloperCaches.h"
#include "core/scanning/records/ScanCategory.h"
#include "core/tasks/KnownPlaces.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/TaskMonitor.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace orvane {

struct TaskServices;

enum class ReviewItems : std::uint8_t { leaveOut, include };

// The folders that a cleanup looks at, and the filter for what it takes.
struct CleanOptions {
  std::vector<FileUrl> folders = {};          // also the boundary
  std::vector<ScanCategory> categories = {};  // all where empty
  ReviewItems reviewItems = ReviewItems::leaveOut;
  DeveloperCaches developerCaches = DeveloperCaches::leaveOut;
  KnownPlaces knownPlaces = KnownPlaces::leaveOut;  // besides the folders
  std::optional<std::int64_t> minimumAgeDays = {};
  std::optional<std::int64_t> minimumSizeBytes = {};
};

// Scans, and proposes what is selected from the start, and on demand the review items of the categories named: rows
// that are all selected. A notice counts the items in a Trash. Absent when it was stopped.
[[nodiscard]] std::optional<Proposal> proposeClean(const TaskServices& services, const CleanOptions& options,
                                                   const TaskMonitor& monitor = {});
// Proposes again what the subject of an earlier proposal asks for, as far as it lies inside the boundary. Throws
// JsonError for a subject that is none. Known places count as inside where the boundary is that of the grants.
[[nodiscard]] std::optional<Proposal> reproposeClean(const TaskServices& services, const Json& subject,
                                                     const Boundary& boundary, Date countedTo,
                                                     const TaskMonitor& monitor = {});
// The whole result of a scan of the folders: scannedMark() decides the state of each row.
[[nodiscard]] Proposal proposeScanned(const TaskServices& services, ItemList items, std::vector<FileUrl> folders,
                                      Date scanned);

}  // namespace orvane
