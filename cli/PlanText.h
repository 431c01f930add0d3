#pragma once

#include "core/plans/CleaningPlan.h"
#include "core/plans/PlanMatchResult.h"

#include <span>

namespace orvane::cli {

class Session;

// A plan as a person would read it: the goal, the summary, and what each step does to which files.
void printPlan(Session& session, const CleaningPlan& plan);
// Each match with its size, age and label and why it is selected or not, and a line that sums them up.
void printMatches(Session& session, std::span<const PlanMatchResult> matches);

}  // namespace orvane::cli
