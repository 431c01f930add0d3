#include "cli/frame/ScanRun.h"

#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "core/tasks/TaskServices.h"

#include <utility>

namespace orvane::cli {

ScanEnd runScan(Session& session, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                const std::function<void(std::vector<ScanEvent>&)>& take, KnownPlaces knownPlaces) {
  ProgressLine line(session);
  auto monitor = scanMonitor(session, line);
  monitor.keptBack = [&](const RowSum& kept) {
    line.clear();
    if (kept.count > 0) Session::report(keptText(kept));
  };
  return scanFolders(
      TaskServices::shared(), std::move(folders), developerCaches, monitor,
      [&](std::vector<ScanEvent>& batch) {
        if (std::holds_alternative<ScanCompleted>(batch.back())) line.clear();
        take(batch);
      },
      knownPlaces);
}

}  // namespace orvane::cli
