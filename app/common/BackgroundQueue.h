#pragma once

#include <QMetaObject>
#include <QObject>
#include <QThreadPool>

#include <functional>
#include <stop_token>
#include <utility>

namespace orvane {

// Carries out tasks one after the other in the background, so that the main thread never waits. Destroying it asks the
// running task to stop, drops those that have not begun, and waits. Queues never wait for each other: each that has
// tasks has a thread, which ends soon after its last one.
class BackgroundQueue {
 public:
  // A std::runtime_error that leaves a task is printed on the console; any other exception ends the program.
  using Task = std::function<void(const std::stop_token& stop)>;

  BackgroundQueue();
  ~BackgroundQueue();

  void post(Task task);

 private:
  std::stop_source m_stop;
  QThreadPool m_pool;  // of one thread, which takes its tasks in the order in which they came
};

// Has `function` called on the thread that `receiver` belongs to; never, once that is destroyed. From any thread.
template <typename Function>
void callOn(QObject* receiver, Function&& function) {
  QMetaObject::invokeMethod(receiver, std::forward<Function>(function), Qt::QueuedConnection);
}

}  // namespace orvane
