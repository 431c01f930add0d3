#pragma once

#include <chrono>
#include <functional>

namespace orvane {

// Calls back again and again, on whatever thread its maker chooses.
class RepeatingTimer {
 public:
  virtual ~RepeatingTimer() = default;
  // Replaces what was started before. The first call comes after one interval.
  virtual void start(std::chrono::seconds interval, std::function<void()> tick) = 0;
  // Once it returns no call is under way, unless it was called from within one.
  virtual void stop() = 0;
};

}  // namespace orvane
