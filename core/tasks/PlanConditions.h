#pragma once

#include "core/assistant/PlannedAnswer.h"
#include "core/rules/records/RuleTrigger.h"
#include "core/tasks/Proposal.h"

#include <optional>
#include <string>

namespace orvane {

// The conditions of a plan, to be changed one by one: a trigger, so that the fields of rules say how people write each
// and which values can never work.

// Absent for a plan whose steps differ in more than their folders, and for one that takes known places whole. Of
// several steps the folder is absent.
[[nodiscard]] std::optional<RuleTrigger> conditionsOf(const PlannedAnswer& answer);

// The answer with other conditions, under the goal given, as it is no longer what the request says. A plan whose
// conditions select nothing by is refused where it is proposed, like any.
[[nodiscard]] PlannedAnswer withConditions(PlannedAnswer answer, const RuleTrigger& conditions, std::string goal);

// Whether every file that meets the later conditions meets the earlier ones too.
[[nodiscard]] bool onlyNarrows(const RuleTrigger& earlier, const RuleTrigger& later);

// Selects in a later proposal the items that were chosen of an earlier one and are still the same, and nothing else.
[[nodiscard]] Selection keptSelection(const Proposal& earlier, const Selection& chosen, const Proposal& later);

}  // namespace orvane
