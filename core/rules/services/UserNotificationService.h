#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace orvane {

class NotificationCenter;

// Tells the user of unattended runs. Callable from any thread.
class UserNotificationService {
 public:
  // `console` gets a line when a notification cannot be delivered.
  UserNotificationService(NotificationCenter& center, std::function<void(std::string_view line)> console);
  static UserNotificationService& shared();

  // False also when the system cannot be asked.
  [[nodiscard]] bool requestAuthorization() const;
  // Announces nothing where no file was processed. Never fails.
  void postCleanupSummary(std::int64_t filesCleaned, std::int64_t bytesReclaimed) const;

 private:
  NotificationCenter& m_center;
  std::function<void(std::string_view)> m_console;
};

}  // namespace orvane
