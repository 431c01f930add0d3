#pragma once

#include "core/base/files/FileUrl.h"
#include "core/scanning/records/DeveloperCaches.h"
#include "core/scanning/records/ScanEvent.h"
#include "core/tasks/KnownPlaces.h"
#include "core/tasks/TaskMonitor.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace orvane {

class ScanTotals;
struct TaskServices;

enum class ScanEnd : std::uint8_t { completed, cancelled };

// Scans the folders on the calling thread and hands over the events in batches, the last one included. Leaves out
// items of the keep list, and tells `monitor.keptBack` how many.
ScanEnd scanFolders(const TaskServices& services, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                    const TaskMonitor& monitor, const std::function<void(std::vector<ScanEvent>&)>& take,
                    KnownPlaces knownPlaces = KnownPlaces::leaveOut);
// The same for those who want the sums alone: adds the items up on the threads that find them.
ScanEnd addUpFolders(const TaskServices& services, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                     const TaskMonitor& monitor, ScanTotals& totals, KnownPlaces knownPlaces = KnownPlaces::leaveOut);
// The same for those who want the items alone. One that lies in several of the folders comes once.
ScanEnd scanItems(const TaskServices& services, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                  const TaskMonitor& monitor, const std::function<void(FileItem)>& take);

}  // namespace orvane
