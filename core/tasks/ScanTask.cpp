#include "core/tasks/ScanTask.h"

#include "core/base/files/PathText.h"
#include "core/safety/records/Boundary.h"
#include "core/scanning/scan/StorageScanner.h"
#include "core/tasks/TaskServices.h"

#include <string>
#include <unordered_set>
#include <utility>
#include <variant>

namespace orvane {
namespace {

bool overlap(const std::vector<FileUrl>& folders) {
  const auto paths = Boundary(folders).canonicalPaths();
  for (std::size_t one = 0; one < paths.size(); ++one) {
    for (std::size_t other = 0; other < paths.size(); ++other) {
      if (one != other && isSameOrInside(paths[one], paths[other])) return true;
    }
  }
  return false;
}

}  // namespace

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
  const bool mayComeTwice = overlap(folders);
  std::unordered_set<std::string> seen;
  return scanFolders(services, std::move(folders), developerCaches, monitor, [&](std::vector<ScanEvent>& batch) {
    for (auto& event : batch) {
      auto* item = std::get_if<FileItem>(&event);
      if (item == nullptr || (mayComeTwice && !seen.insert(item->url().path()).second)) continue;
      take(std::move(*item));
    }
  });
}

}  // namespace orvane
