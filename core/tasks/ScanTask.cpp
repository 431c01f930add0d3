#include "core/tasks/ScanTask.h"

#include "core/scanning/StorageScanner.h"
#include "core/tasks/TaskServices.h"

#include <utility>
#include <variant>

namespace orvane {

ScanEnd scanFolders(const TaskServices& services, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                    const TaskMonitor& monitor, const std::function<void(std::vector<ScanEvent>&)>& take) {
  auto stream = services.scanner.scan(std::move(folders), developerCaches);
  const std::stop_callback whenStopped(monitor.stop, [&stream] { stream.cancel(); });
  auto end = ScanEnd::cancelled;
  for (auto batch = stream.nextBatch(); !batch.empty(); batch = stream.nextBatch()) {
    if (monitor.looked != nullptr) monitor.looked->fetch_add(batch.size(), std::memory_order_relaxed);
    if (monitor.scanning) {
      for (const auto& event : batch) {
        if (const auto* progress = std::get_if<ScanProgress>(&event)) monitor.scanning(*progress);
      }
    }
    if (std::holds_alternative<ScanCompleted>(batch.back())) end = ScanEnd::completed;
    take(batch);
  }
  return end;
}

ScanEnd scanItems(const TaskServices& services, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                  const TaskMonitor& monitor, const std::function<void(FileItem)>& take) {
  return scanFolders(services, std::move(folders), developerCaches, monitor, [&](std::vector<ScanEvent>& batch) {
    for (auto& event : batch) {
      if (auto* item = std::get_if<FileItem>(&event)) take(std::move(*item));
    }
  });
}

}  // namespace orvane
