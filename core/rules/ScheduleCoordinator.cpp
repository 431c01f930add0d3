#include "core/rules/ScheduleCoordinator.h"

#include "core/platform/StoredValue.h"
#include "core/rules/RuleEngine.h"
#include "core/rules/ScheduleCandidates.h"
#include "core/rules/UserNotificationService.h"
#include "core/safety/FileAccessService.h"

#include <utility>
#include <vector>

namespace orvane {

ScheduleCoordinator::ScheduleCoordinator(Collaborators collaborators) : m_with(std::move(collaborators)) {}

ScheduleSettings ScheduleCoordinator::getSettings() const {
  return storedValue<ScheduleSettings>(m_with.preferences, storageKey);
}

void ScheduleCoordinator::updateSettings(const ScheduleSettings& settings) {
  m_with.preferences.setValue(storageKey, settings.toJson());
}

ScheduleSettings ScheduleCoordinator::changeSettings(const std::function<void(ScheduleSettings&)>& change) {
  return changeStoredValue<ScheduleSettings>(m_with.preferences, storageKey, change);
}

bool ScheduleCoordinator::isRunDue(std::optional<std::int64_t> currentFreeBytes, std::chrono::seconds ahead) const {
  return getSettings().isRunDue(currentFreeBytes, m_with.now() + ahead);
}

PlanExecution ScheduleCoordinator::carryOutScheduledRun(const RunRequest& request) {
  const std::lock_guard lock(m_runMutex);
  PlanExecution nothing;
  nothing.summary.batchId = Uuid::random();
  nothing.summary.timestamp = m_with.now();

  auto rules = m_with.ruleEngine.getRules();
  std::erase_if(rules, [](const CleanupRule& rule) { return !rule.isEnabled; });
  if (rules.empty()) return nothing;
  const auto folders = m_with.fileAccessService.getManagedFolderURLs();
  const auto candidates = scheduleCandidates(folders, request.stop);
  // No file may grow old enough for a rule while the question stands.
  const auto now = m_with.now();
  if (request.approve && !request.approve(rules, candidates, now)) return nothing;
  if (request.stop.stop_requested()) return nothing;
  auto execution =
      m_with.ruleEngine.carryOut(rules, candidates, Boundary(folders), request.progress, request.stop, now);
  changeSettings([&](ScheduleSettings& settings) { settings.lastRunDate = m_with.now(); });
  m_with.notificationService.postCleanupSummary(execution.summary.itemsProcessed, execution.summary.bytesReclaimed);
  return execution;
}

PlanExecutionSummary ScheduleCoordinator::executeScheduledRun() {
  return carryOutScheduledRun({}).summary;
}

}  // namespace orvane
