#include "core/tasks/StoredRules.h"

#include "core/base/text/Json.h"
#include "core/localization/LocalizationManager.h"
#include "core/rules/RuleEngine.h"
#include "core/tasks/TaskServices.h"

#include <algorithm>
#include <utility>

namespace orvane {

std::vector<CleanupRule> cleanupRules(const TaskServices& services) {
  return services.rules.getRules();
}

LastingRules lastingRules(const TaskServices& services) {
  auto key = services.rules.keepIdentities();
  return {services.rules.getRules(), std::move(key)};
}

std::vector<SuggestedRule> suggestedRules(const TaskServices& services, std::span<const CleanupRule> rules) {
  std::vector<SuggestedRule> result;
  for (const auto& row : services.profile.suggestedRules()) {
    CleanupRule rule;
    rule.name = localized(row.textKey);
    rule.description = localized(std::string(row.textKey) + ".note");
    rule.trigger = RuleTrigger::fromJson(parseJson(row.trigger));
    rule.action = RuleAction::fromJson(parseJson(row.action));
    const bool isAdded = std::ranges::any_of(
        rules, [&](const CleanupRule& known) { return known.trigger == rule.trigger && known.action == rule.action; });
    result.push_back({row.name, std::move(rule), isAdded});
  }
  return result;
}

void storeRule(const TaskServices& services, const CleanupRule& rule) {
  services.rules.keepIdentities();
  services.rules.addOrUpdateRule(rule);
}

void switchRule(const TaskServices& services, const Uuid& id, bool isEnabled) {
  services.rules.keepIdentities();
  services.rules.toggleRule(id, isEnabled);
}

void deleteRule(const TaskServices& services, const Uuid& id) {
  services.rules.deleteRule(id);
}

void resetRules(const TaskServices& services) {
  services.rules.resetToDefaults();
}

}  // namespace orvane
