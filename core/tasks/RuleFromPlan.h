#pragma once

#include "core/plans/records/CleaningPlan.h"
#include "core/rules/records/CleanupRule.h"
#include "core/rules/records/RuleCheck.h"

#include <string>
#include <variant>

namespace orvane {

// The plan as a rule of the user's own, with the same folder, filter and action, or why it can be none. The rule is
// checked as an editor or a file would have it checked, but for an empty name, which the user may still give.
[[nodiscard]] std::variant<CleanupRule, RuleProblem> ruleFromPlan(const CleaningPlan& plan, std::string name);

}  // namespace orvane
