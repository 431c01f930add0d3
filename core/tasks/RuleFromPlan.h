#pragma once

#include "core/plans/records/CleaningPlan.h"
#include "core/rules/records/CleanupRule.h"
#include "core/rules/records/RuleCheck.h"
#include "core/tasks/AskTask.h"

#include <string>
#include <variant>

namespace orvane {

// The plan as a rule of the user's own, with the same folder, filter and action, or why it can be none. The rule is
// checked as an editor or a file would have it checked, but for an empty name, which the user may still give.
[[nodiscard]] std::variant<CleanupRule, RuleProblem> ruleFromPlan(const CleaningPlan& plan, std::string name);

// The same of an answer's plan: none where the request may mean something else, unless the user takes the plan as it
// is, and none that takes known places whole.
[[nodiscard]] std::variant<CleanupRule, RuleProblem> ruleFromAnswer(const PlannedAnswer& answer, std::string name,
                                                                    WhenUnsure whenUnsure = WhenUnsure::unselected);

}  // namespace orvane
