#include "core/rules/schedule/ScheduleCoordinator.h"

#include "core/platform/StoredValue.h"
#include "core/rules/services/UserNotificationService.h"
#include "core/tasks/Folders.h"
#include "core/tasks/RulesTask.h"
#include "core/tasks/StoredRules.h"

#include <utility>
#include <vector>

namespace orvane {

ScheduleCoordinator::ScheduleCoordinator(Collaborators collaborators) : m_collaborators(std::move(collaborators)) {}

ScheduleSettings ScheduleCoordinator::getSettings() const {
  return storedValue<ScheduleSettings>(m_collaborators.preferences, storageKey);
}

void ScheduleCoordinator::updateSettings(const ScheduleSettings& settings) {
  m_collaborators.preferences.setValue(storageKey, settings.toJson());
}

ScheduleSettings ScheduleCoordinator::changeSettings(const std::function<void(ScheduleSettings&)>& change) {
  return changeStoredValue<ScheduleSettings>(m_collaborators.preferences, storageKey, change);
}

bool ScheduleCoordinator::isRunDue(std::optional<std::int64_t> currentFreeBytes) const {
  return getSettings().isRunDue(currentFreeBytes, m_collaborators.now());
}

bool ScheduleCoordinator::isTimerStartDue(std::optional<std::int64_t> currentFreeBytes,
                                          std::chrono::seconds ahead) const {
  return getSettings().isTimerStartDue(currentFreeBytes, m_collaborators.now() + ahead);
}

RunReport ScheduleCoordinator::carryOutScheduledRun(const RunRequest& request) {
  const std::lock_guard lock(m_runMutex);
  const auto& tasks = m_collaborators.tasks;
  RunReport nothing;
  nothing.finished = m_collaborators.now();

  RulesOptions options{.rules = cleanupRules(tasks),
                       .boundary = Boundary(listedGrants(tasks)),
                       .now = m_collaborators.now(),
                       .files = RuleFiles::scheduled};
  std::erase_if(options.rules, [](const CleanupRule& rule) { return !rule.isEnabled; });
  if (options.rules.empty()) return nothing;
  const auto proposal = proposeRules(tasks, options, {.stop = request.stop});
  if (!proposal) return nothing;
  const auto approval = proposal->approve();
  if (request.approve && !request.approve(approval)) return nothing;
  if (request.stop.stop_requested()) return nothing;
  auto report = carryOut(tasks, approval, request.progress, request.stop, RunOrigin::Start::scheduled);
  changeSettings([&](ScheduleSettings& settings) { settings.lastRunDate = m_collaborators.now(); });
  m_collaborators.notificationService.postCleanupSummary(report.moved(), report.toTrash.bytes);
  return report;
}

PlanExecutionSummary ScheduleCoordinator::executeScheduledRun() {
  return carryOutScheduledRun({}).summary();
}

}  // namespace orvane
