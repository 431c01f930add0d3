#include "core/rules/records/RuleCheck.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace orvane {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t quotedBytes = 100;

std::string faultOfPath(const std::string& path, std::string_view key) {
  const bool isPath = path.starts_with('/') || path == "~" || path.starts_with("~/");
  if (!isPath) return fmt::format("\"{}\" must begin with / or ~/", key);
  if (path.find('\0') != std::string::npos) return fmt::format("\"{}\" holds a NUL", key);
  return {};
}

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
  if (trigger.folderPath && !trigger.folderPath->empty()) {
    note(RulePart::folder, faultOfPath(*trigger.folderPath, "folderPath"), "rules.folder_missing");
  }
  if (trigger.minimumAgeDays.value_or(0) < 0) {
    note(RulePart::minimumAge, "\"minimumAgeDays\" must not be negative", "rules.number_negative");
  }
  if (trigger.minimumSizeBytes.value_or(0) < 0) {
    note(RulePart::minimumSize, "\"minimumSizeBytes\" must not be negative", "rules.number_negative");
  }
  for (const auto& extension : trigger.fileExtensions.value_or(std::vector<std::string>())) {
    if (!extension.empty() && extension.find_first_of("./*?\0"sv) == std::string::npos) continue;
    note(RulePart::extensions,
         fmt::format("\"fileExtensions\" holds \"{}\": write endings without a dot, as in \"pdf\"",
                     shortenedToBytes(extension, quotedBytes)),
         "rules.extension_wrong");
    break;
  }
  if (rule.action.type() == RuleAction::Type::moveToFolder) {
    const auto& path = rule.action.path();
    note(RulePart::destination, faultOfPath(path, "path"),
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
