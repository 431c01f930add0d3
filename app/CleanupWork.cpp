#include "app/CleanupWork.h"

#include "core/base/FileStatus.h"
#include "core/safety/Boundary.h"

#include <fcntl.h>

#include <cmath>

namespace orvane {
namespace {

// A date in a double keeps less than a microsecond of a file's time.
constexpr double sameTimeSeconds = 1e-3;

struct Choice {
  MoveRequest request;
  std::optional<CleanupFailure::Reason> refusal;
};

Choice choiceOf(const FileItem& item, bool isFolder) {
  Choice choice;
  choice.request.source = item.url();
  choice.request.fileSize = item.fileSize();
  const auto status = readFileStatus(AT_FDCWD, item.url().path().c_str());
  if (!status) {
    choice.refusal = CleanupFailure::Reason::gone;
    return choice;
  }
  const bool isFolderNow = status->type == FileType::directory;
  if (isFolderNow != isFolder) choice.refusal = CleanupFailure::Reason::changed;
  // What is inside a folder may change at any time; it is told by its name.
  if (isFolder || choice.refusal) return choice;
  const double seconds = (status->modified.date() - item.lastModifiedDate()).count();
  if (status->size != item.fileSize() || std::abs(seconds) > sameTimeSeconds) {
    choice.refusal = CleanupFailure::Reason::changed;
  }
  choice.request.expectedIdentity = ItemIdentity::of(*status);
  return choice;
}

std::string nameOf(const FileUrl& url) {
  return std::string(url.lastPathComponent());
}

}  // namespace

CleanupReport cleanItems(TrashMover& mover, UndoJournal& journal, const ScannedItems::Snapshot& scanned,
                         const std::vector<std::uint32_t>& chosen, const CleanupRun::Progress& progress,
                         const std::stop_token& stop) {
  CleanupReport report;
  // Without a folder there would be no boundary either.
  if (scanned.folders.empty()) return report;
  std::vector<MoveRequest> requests;
  std::vector<std::uint32_t> indexes;
  requests.reserve(chosen.size());
  indexes.reserve(chosen.size());
  for (const auto index : chosen) {
    if (stop.stop_requested()) break;
    auto choice = choiceOf(scanned.items.item(index), scanned.items.isFolder(index));
    if (choice.refusal) {
      report.failures.push_back({nameOf(choice.request.source), *choice.refusal, {}});
      continue;
    }
    requests.push_back(std::move(choice.request));
    indexes.push_back(index);
  }
  report.left = static_cast<std::int64_t>(chosen.size() - requests.size() - report.failures.size());

  CleanupRun run(mover, journal, Boundary(scanned.folders));
  const auto outcomes = run.carryOut(requests, progress, stop);
  for (std::size_t at = 0; at < outcomes.size(); ++at) {
    const auto& outcome = outcomes[at];
    switch (outcome.result) {
      case MoveResult::moved:
        report.runId = run.id();
        report.moved.push_back(indexes[at]);
        report.movedBytes += outcome.fileSize;
        break;
      case MoveResult::cancelled:
        ++report.left;
        break;
      case MoveResult::refused:
      case MoveResult::missing:
      case MoveResult::changed:
      case MoveResult::failed:
        report.failures.push_back({nameOf(outcome.source), CleanupFailure::Reason::refused, outcome.error});
        break;
    }
  }
  return report;
}

}  // namespace orvane
