#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>
#include <utility>

namespace orvane {

// The place where a worker waits for as long as somebody wants it to. From any thread.
class PausePoint {
 public:
  void want(bool isWanted) {
    {
      const std::lock_guard lock(m_mutex);
      m_isWanted = isWanted;
    }
    m_changed.notify_all();
  }
  [[nodiscard]] bool isWanted() const {
    const std::lock_guard lock(m_mutex);
    return m_isWanted;
  }
  [[nodiscard]] bool isWaiting() const {
    const std::lock_guard lock(m_mutex);
    return m_isWaiting;
  }

  // Returns once nobody wants a pause or the work is to stop. `told` is called, without the lock, where there is one,
  // at its beginning.
  void wait(const std::stop_token& stop, const std::function<void()>& told) {
    std::unique_lock lock(m_mutex);
    if (!m_isWanted || stop.stop_requested()) return;
    m_isWaiting = true;
    lock.unlock();
    told();
    lock.lock();
    m_changed.wait(lock, stop, [this] { return !m_isWanted; });
    m_isWaiting = false;
  }

 private:
  mutable std::mutex m_mutex;
  std::condition_variable_any m_changed;
  bool m_isWanted = false;
  bool m_isWaiting = false;
};

}  // namespace orvane
