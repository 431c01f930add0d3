#pragma once

#include "core/base/values/Date.h"
#include "core/plans/records/PlanExecutionSummary.h"
#include "core/rules/records/ScheduleSettings.h"
#include "core/tasks/CarryOut.h"
#include "core/tasks/TaskServices.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string_view>

namespace orvane {

class Preferences;
class UserNotificationService;

// Keeps the settings of unattended cleanups and carries one out. Each operation reads the stored settings again, so
// that a run of another process counts. Callable from any thread; one run of this process at a time.
class ScheduleCoordinator {
 public:
  static constexpr std::string_view storageKey = "OrvaneScheduleSettings";
  using Clock = std::function<Date()>;

  struct Collaborators {
    Preferences& preferences;
    TaskServices tasks;
    const UserNotificationService& notificationService;
    Clock now = ReferenceClock::now;
  };
  explicit ScheduleCoordinator(Collaborators collaborators);
  static ScheduleCoordinator& shared();

  // The stored settings; the defaults where nothing that decodes is stored.
  [[nodiscard]] ScheduleSettings getSettings() const;
  // Stores at once. Throws std::system_error.
  void updateSettings(const ScheduleSettings& settings);
  // The same for a change of what is stored now.
  ScheduleSettings changeSettings(const std::function<void(ScheduleSettings&)>& change);

  // Whether a run is due; the free bytes of the start-up volume are absent where they are not known.
  [[nodiscard]] bool isRunDue(std::optional<std::int64_t> currentFreeBytes) const;
  // Whether one is due for the start that a timer makes, or will be `ahead` of now.
  [[nodiscard]] bool isTimerStartDue(std::optional<std::int64_t> currentFreeBytes, std::chrono::seconds ahead) const;

  struct RunRequest {
    // Asked once, before anything is touched, with what is going to move; a no, or a stop, leaves everything as it is.
    // Without it the rules alone approve.
    std::function<bool(const Approval& approval)> approve = {};
    RunProgress progress = {};
    std::stop_token stop = {};
  };
  // Offers every file of the granted folders to the enabled rules, notes the time and announces what was done. Without
  // an enabled rule nothing happens and the time of the last run stays.
  RunReport carryOutScheduledRun(const RunRequest& request);
  // The same for callers that only want the sum.
  PlanExecutionSummary executeScheduledRun();

 private:
  Collaborators m_collaborators;
  std::mutex m_runMutex;  // held by a run from its first look to its last move
};

}  // namespace orvane
