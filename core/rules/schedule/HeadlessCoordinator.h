#pragma once

#include "core/base/files/FileUrl.h"

#include <chrono>
#include <functional>
#include <string_view>

namespace orvane {

class AutoOrganizer;
class AutoOrganizeSettingsStore;
class NotificationCenter;
class ScheduleCoordinator;
class Volume;

// The work of a start without a window: a cleanup when one is due, then the watched folders where they are kept tidy,
// then the day's map where maps are remembered.
// Needs no thread but the caller's.
class HeadlessCoordinator {
 public:
  // A run ends a little later than it was started, so the start one interval later comes that much too early. It waits
  // for the run to become due for so long at most.
  static constexpr std::chrono::minutes patience{15};
  // How long a click on the notification is waited for.
  static constexpr std::chrono::seconds answerTime{30};

  struct Collaborators {
    ScheduleCoordinator& schedule;
    AutoOrganizeSettingsStore& tidySettings;
    AutoOrganizer& autoOrganizer;
    NotificationCenter& notificationCenter;
    const Volume& volume;
    FileUrl home;                                        // the free space of its volume counts
    std::function<void(std::string_view line)> console;  // told of what went wrong
    std::function<void(std::chrono::seconds)> wait;
    std::function<void()> mapIfDue = [] {};
  };
  explicit HeadlessCoordinator(Collaborators collaborators);
  static HeadlessCoordinator& shared();

  // Never throws: reports each failure on the console and goes on. False when something failed.
  bool carryOut() noexcept;

 private:
  void cleanIfDue();
  void tidyIfEnabled();
  [[nodiscard]] bool isDue(std::chrono::seconds ahead) const;

  Collaborators m_collaborators;
};

}  // namespace orvane
