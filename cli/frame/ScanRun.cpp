#include "cli/frame/ScanRun.h"

#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "core/tasks/TaskServices.h"

#include <utility>

namespace orvane::cli {

ScanEnd runScan(Session& session, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                const std::function<void(std::vector<ScanEvent>&)>& take, KnownPlaces knownPlaces) {
  ProgressLine line(session);
  return scanFolders(
      TaskServices::shared(), std::move(folders), developerCaches, scanMonitor(session, line),
      [&](std::vector<ScanEvent>& batch) {
        if (std::holds_alternative<ScanCompleted>(batch.back())) line.clear();
        take(batch);
      },
      knownPlaces);
}

}  // namespace orvane::cli
