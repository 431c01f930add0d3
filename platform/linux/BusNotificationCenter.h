#pragma once

#include "core/platform/NotificationCenter.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace orvane {

// The desktop's notification service on the session bus (Desktop Notifications 1.2). An answer that takes
// longer than a second counts as none.
class BusNotificationCenter : public NotificationCenter {
 public:
  // `whenClicked` is called from a thread of its own when the user clicks on a notification; `clickLabel` tells, for
  // desktops that show a button for it, the button's text at the time of posting.
  BusNotificationCenter(std::function<void()> whenClicked, std::function<std::string()> clickLabel);
  ~BusNotificationCenter() override;
  BusNotificationCenter(const BusNotificationCenter&) = delete;
  BusNotificationCenter& operator=(const BusNotificationCenter&) = delete;

  // The service has no permissions: whether it is there.
  bool requestAuthorization() override;
  void post(const Notification& notification) override;
  void awaitAnswers(std::chrono::milliseconds limit) noexcept override;

 private:
  class Conversation;
  // Begun at the first use, and again when it failed.
  std::shared_ptr<Conversation> conversation();

  std::function<void()> m_whenClicked;
  std::function<std::string()> m_clickLabel;
  std::mutex m_mutex;
  std::shared_ptr<Conversation> m_conversation;
};

}  // namespace orvane
