#pragma once

#include <QMetaObject>
#include <QObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>
#include <utility>

namespace orvane {

// Carries out tasks one after the other on a thread of its own, so that the main thread never waits. Destroying it asks
// the running task to stop, drops those that have not begun, and waits.
class BackgroundQueue {
 public:
  // What the task throws is a bug.
  using Task = std::function<void(const std::stop_token& stop)>;

  BackgroundQueue();

  void post(Task task);

 private:
  void work(const std::stop_token& stop);

  std::mutex m_mutex;
  std::condition_variable_any m_wakeUp;
  std::deque<Task> m_tasks;
  std::jthread m_thread;  // last: it uses everything above
};

// Has `function` called on the thread that `receiver` belongs to; never, once that is destroyed. From any thread.
template <typename Function>
void callOn(QObject* receiver, Function&& function) {
  QMetaObject::invokeMethod(receiver, std::forward<Function>(function), Qt::QueuedConnection);
}

}  // namespace orvane
