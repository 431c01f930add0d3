#pragma once

#include "core/base/files/FileUrl.h"
#include "core/tasks/ScanTask.h"

#include <functional>
#include <vector>

namespace orvane::cli {

class Session;

// Scans the folders and hands over the events in batches, the last one included. Shows progress; an interruption
// cancels the scan.
ScanEnd runScan(Session& session, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                const std::function<void(std::vector<ScanEvent>&)>& take,
                KnownPlaces knownPlaces = KnownPlaces::leaveOut);
// The same for the sums of the items.
ScanEnd runScan(Session& session, std::vector<FileUrl> folders, DeveloperCaches developerCaches, ScanTotals& totals,
                KnownPlaces knownPlaces = KnownPlaces::leaveOut);

}  // namespace orvane::cli
