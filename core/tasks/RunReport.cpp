#include "core/tasks/RunReport.h"

#include "core/base/values/CheckedArithmetic.h"

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

void RunReport::forgetMoved() {
  std::erase_if(outcomes, [](const MoveOutcome& outcome) { return outcome.result == MoveResult::moved; });
  outcomes.shrink_to_fit();
  rows = {};
}

std::vector<std::uint32_t> movedRows(const RunReport& report) {
  std::vector<std::uint32_t> result;
  result.reserve(static_cast<std::size_t>(report.moved()));
  for (std::size_t at = 0; at < report.rows.size(); ++at) {
    if (report.outcomes[at].result == MoveResult::moved) result.push_back(report.rows[at]);
  }
  return result;
}

}  // namespace orvane
