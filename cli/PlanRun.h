#pragma once

#include "cli/ExitStatus.h"
#include "core/plans/PlanExecutionSummary.h"
#include "core/plans/PlanMatchResult.h"

#include <optional>
#include <vector>

namespace orvane::cli {

class Arguments;
class Session;

struct PlanRun {
  std::optional<PlanExecutionSummary> summary;  // absent when nothing was selected, or the answer was no
  ExitStatus status = ExitStatus::done;
};

// Asks, and carries out what is selected of the matches as one run, inside the folders in which plans may act. What
// failed is named on standard error, and with text output the run is summed up. A file that is not any more what it was
// when the question was asked is left alone.
PlanRun runPlan(Session& session, const Arguments& arguments, std::vector<PlanMatchResult>& matches);

}  // namespace orvane::cli
