#include "core/tasks/RunReport.h"

#include "core/base/CheckedArithmetic.h"

#include <utility>

namespace orvane {

std::int64_t RunReport::movedBytes() const {
  return checkedAdd(toTrash.bytes, toFolders.bytes);
}

PlanExecutionSummary RunReport::summary() const {
  PlanExecutionSummary summary{.batchId = runId.value_or(Uuid::random())};
  summary.itemsProcessed = moved();
  summary.bytesReclaimed = toTrash.bytes;
  summary.timestamp = finished;
  return summary;
}

void RunReport::note(MoveOutcome outcome, std::uint32_t row, bool isToTrash) {
  switch (outcome.result) {
    case MoveResult::moved:
      (isToTrash ? toTrash : toFolders).add(outcome.fileSize);
      break;
    case MoveResult::cancelled:
      ++left;
      break;
    case MoveResult::refused:
    case MoveResult::missing:
    case MoveResult::changed:
    case MoveResult::failed:
      ++failed;
      break;
  }
  outcomes.push_back(std::move(outcome));
  rows.push_back(row);
}

}  // namespace orvane
