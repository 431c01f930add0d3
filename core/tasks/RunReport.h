#pragma once

#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"
#include "core/plans/records/PlanExecutionSummary.h"
#include "core/safety/records/MoveOutcome.h"
#include "core/tasks/Notice.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

// The result of carrying out an approval.
struct RunReport {
  std::optional<Uuid> runId;  // absent when nothing was moved: there is nothing to restore then
  Date started = ReferenceClock::now();
  Date finished = ReferenceClock::now();
  // Of each approved row in order, and which row of the proposal it is.
  std::vector<MoveOutcome> outcomes;
  std::vector<std::uint32_t> rows;
  std::vector<bool> areToTrash;  // of each outcome: whether its item was bound for the Trash
  RowSum toTrash;                // moved; free once the Trash is emptied
  RowSum toFolders;              // moved
  std::int64_t left = 0;         // not tried, as the run was stopped
  std::int64_t failed = 0;

  [[nodiscard]] std::int64_t moved() const noexcept { return toTrash.count + toFolders.count; }
  [[nodiscard]] std::int64_t movedBytes() const;
  // The given form of it, with a new identifier when nothing was moved.
  [[nodiscard]] PlanExecutionSummary summary() const;
  // Drops the outcomes of what moved, which may be a million.
  void forgetMoved();
  // Adds one outcome up. `isToTrash` tells where its item was bound for.
  void note(MoveOutcome outcome, std::uint32_t row, bool isToTrash);
};

// Indexes of the rows that moved.
[[nodiscard]] std::vector<std::uint32_t> movedRows(const RunReport& report);
// Indexes of the rows whose items had gone before their turn came.
[[nodiscard]] std::vector<std::uint32_t> missingRows(const RunReport& report);

}  // namespace orvane
