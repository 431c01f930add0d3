#include "app/BackgroundQueue.h"

namespace orvane {

BackgroundQueue::BackgroundQueue() : m_thread([this](const std::stop_token& stop) { work(stop); }) {}

void BackgroundQueue::post(Task task) {
  {
    const std::lock_guard lock(m_mutex);
    m_tasks.push_back(std::move(task));
  }
  m_wakeUp.notify_one();
}

void BackgroundQueue::work(const std::stop_token& stop) {
  for (;;) {
    Task task;
    {
      std::unique_lock lock(m_mutex);
      m_wakeUp.wait(lock, stop, [this] { return !m_tasks.empty(); });
      if (stop.stop_requested()) return;
      task = std::move(m_tasks.front());
      m_tasks.pop_front();
    }
    task(stop);
  }
}

}  // namespace orvane
