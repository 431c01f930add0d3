#include "cli/commands/SaveAsRule.h"

#include "cli/frame/Folders.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/text/RuleText.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/RuleFromPlan.h"
#include "core/tasks/RulesTask.h"
#include "core/tasks/StoredRules.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <optional>
#include <utility>
#include <variant>

namespace orvane::cli {
namespace {

// Absent where it can be none, which is then said.
std::optional<CleanupRule> usableRule(const PlannedAnswer& answer, const std::string& name) {
  auto made = ruleFromAnswer(answer, name, WhenUnsure::asPlanned);
  if (const auto* problem = std::get_if<RuleProblem>(&made)) {
    Session::report(fmt::format("no rule was made: {}", escapedForDisplay(problem->text)));
    return std::nullopt;
  }
  auto rule = std::get<CleanupRule>(std::move(made));
  const auto problems = problemsWith(rule);
  if (problems.empty()) return rule;
  Session::report(fmt::format("no rule was made: {}", escapedForDisplay(problems.front().text)));
  return std::nullopt;
}

}  // namespace

ExitStatus saveAsRule(Session& session, const PlannedAnswer& answer, const std::string& name) {
  const auto rule = usableRule(answer, name);
  if (!rule) return ExitStatus::failed;
  const auto& services = TaskServices::shared();
  const RulesOptions options{.rules = {*rule}, .boundary = grantedBoundary("one with 'orvanectl folders add'")};
  std::optional<Proposal> proposal;
  {
    ProgressLine line(session);
    proposal = proposeRules(services, options, scanMonitor(session, line));
  }
  if (!proposal) return interruptedBeforeChange();
  storeRule(services, *rule);
  if (session.isJson()) {
    Json json = Json::object();
    json["rule"] = rule->toJson();
    json["preview"] = previewJson(*rule, *proposal);
    session.out().line(jsonText(json));
    return ExitStatus::done;
  }
  printPreview(session, *rule, *proposal);
  session.out().line(fmt::format(
      "Saved as the rule '{}', which is on: scheduled cleanups carry it out ('orvanectl schedule show'), and "
      "'orvanectl rules run' does so now.",
      escapedForDisplay(rule->name)));
  return ExitStatus::done;
}

}  // namespace orvane::cli
