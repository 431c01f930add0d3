#pragma once

#include "cli/frame/ExitStatus.h"
#include "core/base/text/JsonFwd.h"
#include "core/rules/records/CleanupRule.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/RunReport.h"

#include <string>

namespace orvane::cli {

class Session;

// How rules, and what they propose, are shown.

[[nodiscard]] std::string conditionsText(const RuleTrigger& trigger);
[[nodiscard]] std::string actionText(const RuleAction& action);

// Below the name of each rule the files that it moves; nothing with --json.
void printMoves(Session& session, const Proposal& proposal);
// The files that one rule takes, whatever it does with them, and why it does not take the rest. The proposal is of this
// rule alone.
void printPreview(Session& session, const CleanupRule& rule, const Proposal& proposal);
// {"ruleId", "name", "matches", "inPlace", "keptByLabel", "notTaken"}, and "refused" with the reason of a rule that is
// not carried out.
[[nodiscard]] Json previewJson(const CleanupRule& rule, const Proposal& proposal);

// printReport() with the summary in its given JSON form.
[[nodiscard]] ExitStatus printRulesReport(Session& session, const Proposal& proposal, const RunReport& report);

}  // namespace orvane::cli
