#include "core/rules/ScheduleCoordinator.h"

#include "core/base/Json.h"
#include "core/platform/Preferences.h"
#include "core/rules/RuleEngine.h"
#include "core/rules/ScheduleCandidates.h"
#include "core/rules/UserNotificationService.h"
#include "core/safety/FileAccessService.h"

#include <utility>
#include <vector>

namespace orvane {
namespace {

ScheduleSettings settingsFrom(const Json* stored) {
  if (stored == nullptr) return {};
  try {
    return ScheduleSettings::fromJson(*stored);
  } catch (const JsonError&) {
    return {};
  }
}

}  // namespace

ScheduleCoordinator::ScheduleCoordinator(Collaborators collaborators) : m_with(std::move(collaborators)) {}

ScheduleSettings ScheduleCoordinator::getSettings() const {
  const auto stored = m_with.preferences.value(storageKey);
  return settingsFrom(stored ? &*stored : nullptr);
}

void ScheduleCoordinator::updateSettings(const ScheduleSettings& settings) {
  m_with.preferences.setValue(storageKey, settings.toJson());
}

ScheduleSettings ScheduleCoordinator::changeSettings(const std::function<void(ScheduleSettings&)>& change) {
  ScheduleSettings settings;
  m_with.preferences.update(storageKey, [&](const Json* stored) {
    settings = settingsFrom(stored);
    change(settings);
    return settings.toJson();
  });
  return settings;
}

bool ScheduleCoordinator::isRunDue(std::optional<std::int64_t> currentFreeBytes) const {
  return getSettings().isRunDue(currentFreeBytes, m_with.now());
}

PlanExecution ScheduleCoordinator::carryOutScheduledRun(const CleanupRun::Progress& progress,
                                                        const std::stop_token& stop) {
  const std::lock_guard lock(m_runMutex);
  PlanExecution nothing;
  nothing.summary.batchId = Uuid::random();
  nothing.summary.timestamp = m_with.now();

  auto rules = m_with.ruleEngine.getRules();
  std::erase_if(rules, [](const CleanupRule& rule) { return !rule.isEnabled; });
  if (rules.empty()) return nothing;
  const auto folders = m_with.fileAccessService.getManagedFolderURLs();
  // Without a folder there would be no boundary either.
  if (folders.empty()) return nothing;
  const auto candidates = scheduleCandidates(folders, stop);
  if (stop.stop_requested()) return nothing;
  auto execution = m_with.ruleEngine.carryOut(rules, candidates, AllowedRoots(folders), progress, stop);
  changeSettings([&](ScheduleSettings& settings) { settings.lastRunDate = m_with.now(); });
  m_with.notificationService.postCleanupSummary(execution.summary.itemsProcessed, execution.summary.bytesReclaimed);
  return execution;
}

PlanExecutionSummary ScheduleCoordinator::executeScheduledRun() {
  return carryOutScheduledRun().summary;
}

}  // namespace orvane
