#include "core/rules/records/RuleCheck.h"

#include "core/base/text/UnicodeText.h"
#include "core/rules/records/RuleFields.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace orvane {

std::vector<RuleProblem> problemsWith(const CleanupRule& rule) {
  std::vector<RuleProblem> problems;
  const auto note = [&](std::string_view part, std::string text, std::string_view key) {
    if (!text.empty()) problems.push_back({part, std::move(text), key});
  };
  const auto& trigger = rule.trigger;
  if (trimmed(rule.name).empty()) {
    note(ruleNamePart, fmt::format("\"{}\" must not be empty", ruleNamePart), "rules.name_missing");
  }
  for (const auto& field : ruleFields()) note(field.key, field.problem(trigger), field.problemKey);
  if (rule.action.type() == RuleAction::Type::moveToFolder) {
    const auto& path = rule.action.path();
    note(ruleDestinationPart, rulePathProblem(path, ruleDestinationPart),
         path.empty() ? "rules.destination_missing" : "rules.destination_refused");
  }
  const bool narrows = std::ranges::any_of(ruleFields(), [&](const auto& field) { return field.narrows(trigger); });
  if (!narrows) {
    note(ruleConditionsPart, fmt::format("\"{}\" narrows nothing: the rule would take every file", ruleConditionsPart),
         "rules.no_condition");
  }
  return problems;
}

std::optional<RuleProblem> refusalOf(const CleanupRule& rule) {
  for (auto& problem : problemsWith(rule)) {
    if (problem.part != ruleNamePart) return std::move(problem);
  }
  return std::nullopt;
}

}  // namespace orvane
