#include "cli/frame/ScanRun.h"

#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "core/tasks/TaskServices.h"

#include <utility>

namespace orvane::cli {
namespace {

TaskMonitor monitorOn(ProgressLine& line, Session& session) {
  auto monitor = scanMonitor(session, line);
  monitor.keptBack = [&](const RowSum& kept) {
    line.clear();
    if (kept.count > 0) Session::report(keptText(kept));
  };
  return monitor;
}

}  // namespace

ScanEnd runScan(Session& session, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                const std::function<void(std::vector<ScanEvent>&)>& take, KnownPlaces knownPlaces) {
  ProgressLine line(session);
  return scanFolders(
      TaskServices::shared(), std::move(folders), developerCaches, monitorOn(line, session),
      [&](std::vector<ScanEvent>& batch) {
        if (std::holds_alternative<ScanCompleted>(batch.back())) line.clear();
        take(batch);
      },
      knownPlaces);
}

ScanEnd runScan(Session& session, std::vector<FileUrl> folders, DeveloperCaches developerCaches, ScanTotals& totals,
                KnownPlaces knownPlaces) {
  ProgressLine line(session);
  return addUpFolders(TaskServices::shared(), std::move(folders), developerCaches, monitorOn(line, session), totals,
                      knownPlaces);
}

}  // namespace orvane::cli
