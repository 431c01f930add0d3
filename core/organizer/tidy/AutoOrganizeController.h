#pragma once

#include "core/organizer/records/AutoOrganizeSettings.h"
#include "core/organizer/tidy/AutoOrganizer.h"

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>

namespace orvane {

class AutoOrganizeSettingsStore;
class LoginItems;
class RepeatingTimer;

// Runs the automatic organizer by the settings, on a timer or at once, and says in one line what it did. Needs no
// window. Callable from any thread; listeners are called without a lock held.
class AutoOrganizeController {
 public:
  static constexpr std::chrono::seconds interval{120};

  struct Collaborators {  // all must outlive the controller
    AutoOrganizer& organizer;
    AutoOrganizeSettingsStore& store;
    TopicCategorizerFactory& factory;
    RepeatingTimer& timer;
    LoginItems& loginItems;
    std::function<Date()> now = ReferenceClock::now;
    std::function<void()> whenChanged = {};  // anything that the operations below return may be new
    const SystemProfile& profile = SystemProfile::none();
  };
  // Asks once whether topics can be had.
  explicit AutoOrganizeController(Collaborators collaborators);
  ~AutoOrganizeController();
  AutoOrganizeController(const AutoOrganizeController&) = delete;
  AutoOrganizeController& operator=(const AutoOrganizeController&) = delete;

  [[nodiscard]] AutoOrganizeSettings settings() const;
  [[nodiscard]] bool isRunning() const;
  [[nodiscard]] std::optional<std::string> statusMessage() const;
  // The result of the last completed run; absent before.
  [[nodiscard]] std::optional<AutoOrganizeResult> lastResult() const;
  [[nodiscard]] bool launchAtLoginEnabled() const;
  [[nodiscard]] bool isAIAvailable() const noexcept { return m_unavailableReason.empty(); }
  // Why topics cannot be had; empty where they can.
  [[nodiscard]] const std::string& unavailableReason() const noexcept { return m_unavailableReason; }

  // Starts the timer where the settings ask for it.
  void start();
  void rescheduleTimer();
  // Tidies now, on the calling thread; does nothing while a run is under way. `approve` is as in AutoOrganizeRequest.
  // Throws std::system_error when the settings or the lock cannot be written.
  AutoOrganizeReport runNow(std::function<bool(std::span<const TidyProposal>)> approve = {},
                            const std::stop_token& stop = {}, const RunProgress& progress = {},
                            ReturnedUse returned = ReturnedUse::leave);
  // The proposal that a run would make now; changes nothing.
  [[nodiscard]] TidyLook look(const std::stop_token& stop = {}, ReturnedUse returned = ReturnedUse::leave);
  // Carries out what was shown, and nothing else. Throws as runNow does.
  AutoOrganizeReport runShown(TidyLook shown, const std::stop_token& stop = {}, const RunProgress& progress = {});
  // Brings back what runs of it moved.
  Restored undo(std::span<const Uuid> runs);
  // Changes the settings, stores them and reschedules. Throws std::system_error.
  void update(const std::function<void(AutoOrganizeSettings&)>& change);
  // A failure shows in the status message.
  void setLaunchAtLogin(bool isEnabled);

  // The message of a run that moved so much.
  [[nodiscard]] static std::string statusText(const AutoOrganizeResult& result);

 private:
  // As the settings ask for now.
  [[nodiscard]] AutoOrganizeRequest request() const;
  AutoOrganizeReport run(const AutoOrganizeRequest& request, const std::stop_token& stop);
  void changed() const;
  void setRunning(bool isRunning);

  Collaborators m_collaborators;
  const std::string m_unavailableReason;
  mutable std::mutex m_mutex;
  AutoOrganizeSettings m_settings;
  bool m_isRunning = false;
  std::optional<std::string> m_statusMessage;
  std::optional<AutoOrganizeResult> m_lastResult;
  bool m_launchAtLoginEnabled = false;
};

}  // namespace orvane
