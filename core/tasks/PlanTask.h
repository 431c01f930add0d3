#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/plans/records/CleaningPlan.h"
#include "core/tasks/PlaceSteps.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/TaskMonitor.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

namespace orvane {

struct TaskServices;

// Which of a plan's target folders are looked at.
enum class PlanReach : std::uint8_t {
  everyFolder,  // all that can be listed; where nothing may be changed, every row is locked
  boundary,     // those in which something may be changed
};

// Where plans may change files: the granted folders, and the logs folder where the caches folder beside it is granted.
[[nodiscard]] Boundary planBoundary(const TaskServices& services);

// A document that may come from anywhere, as a plan that validation accepts or as the reason why it is none.
[[nodiscard]] std::variant<CleaningPlan, PlanRefused> planFromDocument(std::string_view document);

// Scans the plan's target folders and proposes what its steps would do with what they accept: a group for each step and
// destination. A move's destination is the one that the file would really go to. Developer caches are looked at where
// the plan names them. `said` goes before the plan's own notices; a plan that validation refuses has a notice and no
// row. Absent when it was stopped.
[[nodiscard]] std::optional<Proposal> proposePlan(const TaskServices& services, const CleaningPlan& plan,
                                                  PlanReach reach, Date now, const TaskMonitor& monitor = {},
                                                  Notices said = {}, const PlanScope& scope = {});
// The same from a saved subject, inside the boundary given. Throws JsonError for a subject that holds no plan.
[[nodiscard]] std::optional<Proposal> reproposePlan(const TaskServices& services, const Json& subject,
                                                    const Boundary& boundary, Date countedTo,
                                                    const TaskMonitor& monitor = {});

// The rows as an array of matches in their given form, each as it was proposed. The plan is the one of the proposal.
[[nodiscard]] Json planMatchesJson(const CleaningPlan& plan, const Proposal& proposal);
// The verdict of the plan's step on a row.
[[nodiscard]] const CleaningPlanStep& stepOf(const CleaningPlan& plan, const ProposedRow& row);

}  // namespace orvane
