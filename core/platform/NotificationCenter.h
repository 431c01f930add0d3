#pragma once

#include <chrono>
#include <string>

namespace orvane {

struct Notification {
  std::string identifier;  // a new one each
  std::string title;
  std::string body;
};

// Shows notifications to the user with the system's default sound.
class NotificationCenter {
 public:
  virtual ~NotificationCenter() = default;
  // Whether the user lets the program show them. Throws std::runtime_error.
  virtual bool requestAuthorization() = 0;
  // Throws std::runtime_error when it cannot be handed over.
  virtual void post(const Notification& notification) = 0;
  // Gives the user that long to click on what was posted; returns earlier once all of it is gone. A click can only be
  // answered while the program runs.
  virtual void awaitAnswers(std::chrono::milliseconds limit) noexcept = 0;
};

}  // namespace orvane
