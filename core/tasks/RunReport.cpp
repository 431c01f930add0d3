#include "core/tasks/RunReport.h"

#include "core/base/values/CheckedArithmetic.h"

#include <utility>

namespace orvane {
namespace {

std::vector<std::uint32_t> rowsWith(const RunReport& report, MoveResult result) {
  std::vector<std::uint32_t> rows;
  for (std::size_t at = 0; at < report.rows.size(); ++at) {
    if (report.outcomes[at].result == result) rows.push_back(report.rows[at]);
  }
  return rows;
}

}  // namespace

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
  areToTrash.push_back(isToTrash);
}

void RunReport::forgetMoved() {
  std::vector<MoveOutcome> kept;
  std::vector<bool> keptAreToTrash;
  for (std::size_t at = 0; at < outcomes.size(); ++at) {
    if (outcomes[at].result == MoveResult::moved) continue;
    kept.push_back(std::move(outcomes[at]));
    keptAreToTrash.push_back(areToTrash[at]);
  }
  outcomes = std::move(kept);
  areToTrash = std::move(keptAreToTrash);
  rows = {};
}

std::vector<std::uint32_t> movedRows(const RunReport& report) {
  return rowsWith(report, MoveResult::moved);
}

std::vector<std::uint32_t> missingRows(const RunReport& report) {
  return rowsWith(report, MoveResult::missing);
}

}  // namespace orvane
