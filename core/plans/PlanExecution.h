#pragma once

#include "core/plans/records/PlanExecutionSummary.h"
#include "core/safety/run/CleanupRun.h"

#include <vector>

namespace orvane {

// The result of carrying out a plan, with the outcome for each file.
struct PlanExecution {
  PlanExecutionSummary summary;
  // Of every result that was to be carried out, in order; those that were not moved say why.
  std::vector<MoveOutcome> outcomes;
};

}  // namespace orvane
