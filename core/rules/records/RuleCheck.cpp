#include "core/rules/records/RuleCheck.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace orvane {
namespace {

// How the problem of a field is told apart and worded.
struct FieldPart {
  std::string_view field;
  RulePart part;
  std::string_view key;
};
constexpr std::array fieldParts{
    FieldPart{"folderPath", RulePart::folder, "rules.folder_missing"},
    FieldPart{"minimumAgeDays", RulePart::minimumAge, "rules.number_negative"},
    FieldPart{"minimumSizeBytes", RulePart::minimumSize, "rules.number_negative"},
    FieldPart{"fileExtensions", RulePart::extensions, "rules.extension_wrong"},
};

// A folder condition is the plain beginning of a path: one that the home folder begins with lets everything in it pass.
bool narrows(const std::string& folder) {
  if (folder.empty()) return false;
  const auto beginning = standardizedPath(expandedHome(folder));
  const auto home = homeFolder();
  return !home.starts_with(beginning) && !canonicalPath(home).starts_with(beginning);
}

// Items labelled manual match no rule, so that their category may be missing.
bool narrows(const std::vector<ScanCategory>& categories) {
  if (categories.empty()) return false;
  return std::ranges::any_of(allScanCategories, [&](ScanCategory category) {
    return defaultRisk(category) != RiskLabel::manual && std::ranges::find(categories, category) == categories.end();
  });
}

bool narrows(const RuleTrigger& trigger) {
  if (trigger.folderPath && narrows(*trigger.folderPath)) return true;
  if (trigger.categories && narrows(*trigger.categories)) return true;
  if (trigger.fileExtensions && !trigger.fileExtensions->empty()) return true;
  if (trigger.namePattern && !trigger.namePattern->empty()) return true;
  return trigger.minimumAgeDays.value_or(0) > 0 || trigger.minimumSizeBytes.value_or(0) > 0;
}

}  // namespace

std::vector<RuleProblem> problemsWith(const CleanupRule& rule) {
  std::vector<RuleProblem> problems;
  const auto note = [&](RulePart part, std::string text, std::string_view key) {
    if (!text.empty()) problems.push_back({part, std::move(text), key});
  };
  const auto& trigger = rule.trigger;
  if (trimmed(rule.name).empty()) note(RulePart::name, "\"name\" must not be empty", "rules.name_missing");
  auto fieldProblems = trigger.problems();
  for (const auto& [field, part, key] : fieldParts) {
    const auto found = std::ranges::find(fieldProblems, field, &RuleTrigger::Problem::key);
    if (found != fieldProblems.end()) note(part, std::move(found->text), key);
  }
  if (rule.action.type() == RuleAction::Type::moveToFolder) {
    const auto& path = rule.action.path();
    note(RulePart::destination, rulePathProblem(path, "path"),
         path.empty() ? "rules.destination_missing" : "rules.destination_refused");
  }
  if (!narrows(trigger)) {
    note(RulePart::whole, "\"trigger\" narrows nothing: the rule would take every file", "rules.no_condition");
  }
  return problems;
}

std::optional<RuleProblem> refusalOf(const CleanupRule& rule) {
  for (auto& problem : problemsWith(rule)) {
    if (problem.part != RulePart::name) return std::move(problem);
  }
  return std::nullopt;
}

}  // namespace orvane
