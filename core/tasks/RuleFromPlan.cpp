#include "core/tasks/RuleFromPlan.h"

#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"
#include "core/plans/CleaningPlanSchema.h"
#include "core/plans/records/PlanFolder.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

// Folders that rules name as people do, wherever the user keeps them.
constexpr std::array<std::string_view, 6> usualFolders{"~/Downloads", "~/Desktop",        "~/Documents",
                                                       "~/Pictures",  "~/Library/Caches", "~/Library/Logs"};

std::string ruleFolder(std::string_view folder) {
  const auto url = planFolder(folder);
  const auto path = url ? url->path() : std::string();
  const auto* const usual = std::ranges::find_if(
      usualFolders, [&](std::string_view name) { return standardizedPath(expandedHome(name)) == path; });
  if (usual != usualFolders.end()) return std::string(*usual);
  const auto home = homeFolder();
  return isSameOrInside(path, home) && path != home ? "~" + path.substr(home.size()) : path;
}

std::optional<RuleAction> ruleAction(const CleaningPlanStep& step) {
  switch (step.action) {
    case PlannedAction::trash:
      return RuleAction::moveToTrash();
    case PlannedAction::review:
      return RuleAction::reviewOnly();
    case PlannedAction::move:
      break;
  }
  const auto destination = step.destinationFolder.value_or("");
  // Each file goes to the folder of its kind then, and a rule knows one.
  if (planFolder(destination) == planFolder(step.targetFolder)) return std::nullopt;
  return RuleAction::moveToFolder(ruleFolder(destination));
}

}  // namespace

std::variant<CleanupRule, RuleProblem> ruleFromPlan(const CleaningPlan& plan, std::string name) {
  if (const auto fault = CleaningPlanSchema::firstFault(plan)) {
    return RuleProblem{ruleConditionsPart, fault->what(), "rules.no_condition"};
  }
  if (plan.steps.size() != 1) {
    return RuleProblem{ruleConditionsPart, "the plan has several steps, and a rule is one", "agent.rule_several"};
  }
  const auto& step = plan.steps.front();
  auto action = ruleAction(step);
  if (!action) {
    return RuleProblem{ruleDestinationPart, "the plan sorts into a folder for each kind, and a rule moves to one",
                       "agent.rule_sorts"};
  }
  CleanupRule rule;
  rule.name = std::move(name);
  rule.description = step.explanation;
  // A folder condition is the beginning of a path: the slash keeps neighbours of a longer name out.
  rule.trigger = {.folderPath = ruleFolder(step.targetFolder) + "/",
                  .fileExtensions = step.filter.extensions,
                  .categories = step.filter.categories,
                  .minimumAgeDays = step.filter.minimumAgeDays,
                  .minimumSizeBytes = step.filter.minimumSizeBytes,
                  .namePattern = step.filter.nameContains};
  rule.action = *std::move(action);
  if (auto problem = refusalOf(rule)) return *std::move(problem);
  return rule;
}

std::variant<CleanupRule, RuleProblem> ruleFromAnswer(const PlannedAnswer& answer, std::string name,
                                                      WhenUnsure whenUnsure) {
  if (!answer.understanding.isSure() && whenUnsure == WhenUnsure::unselected) {
    return RuleProblem{ruleConditionsPart, "the request was not understood", "agent.rule_unsure"};
  }
  if (answer.placesFrom != PlannedAnswer::noStep) {
    return RuleProblem{ruleConditionsPart, "the plan takes known places of programs, which a rule cannot name",
                       "agent.rule_places"};
  }
  return ruleFromPlan(answer.plan, std::move(name));
}

}  // namespace orvane
