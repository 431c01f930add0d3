#include "core/tasks/StoredRules.h"

#include "core/rules/RuleEngine.h"
#include "core/tasks/TaskServices.h"

#include <utility>

namespace orvane {

std::vector<CleanupRule> cleanupRules(const TaskServices& services) {
  return services.rules.getRules();
}

LastingRules lastingRules(const TaskServices& services) {
  auto key = services.rules.keepIdentities();
  return {services.rules.getRules(), std::move(key)};
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
