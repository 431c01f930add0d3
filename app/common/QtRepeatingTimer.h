#pragma once

#include "core/platform/RepeatingTimer.h"

#include <QObject>
#include <QTimer>

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>

namespace orvane {

// A timer of the event loop. It must be made, and destroyed, on the thread that runs the loop; it may be started and
// stopped from any other. As a call may take long, it is made elsewhere.
class QtRepeatingTimer : public QObject, public RepeatingTimer {
 public:
  // `execute` has a task carried out on a thread that may wait. The task must not outlive the timer.
  explicit QtRepeatingTimer(std::function<void(std::function<void()> task)> execute);

  void start(std::chrono::seconds interval, std::function<void()> tick) override;
  void stop() override;

 private:
  void call(std::int64_t started);

  std::function<void(std::function<void()>)> m_execute;
  QTimer m_timer;
  std::mutex m_mutex;
  std::condition_variable m_ended;
  std::function<void()> m_tick;
  std::int64_t m_started = 0;  // goes up with each start and stop: calls of an earlier one are not made
  std::thread::id m_caller;    // of the call that is under way
};

}  // namespace orvane
