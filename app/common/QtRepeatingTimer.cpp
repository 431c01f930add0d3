#include "app/common/QtRepeatingTimer.h"

#include "app/common/BackgroundQueue.h"

#include <utility>

namespace orvane {

QtRepeatingTimer::QtRepeatingTimer(std::function<void(std::function<void()>)> execute) : m_execute(std::move(execute)) {
  connect(&m_timer, &QTimer::timeout, this, [this] {
    const std::lock_guard lock(m_mutex);
    if (m_tick) m_execute([this, started = m_started] { call(started); });
  });
}

void QtRepeatingTimer::start(std::chrono::seconds interval, std::function<void()> tick) {
  {
    const std::lock_guard lock(m_mutex);
    m_tick = std::move(tick);
    ++m_started;
  }
  callOn(this, [this, interval] { m_timer.start(interval); });
}

void QtRepeatingTimer::stop() {
  callOn(this, [this] { m_timer.stop(); });
  std::unique_lock lock(m_mutex);
  ++m_started;
  m_tick = nullptr;
  m_ended.wait(lock, [this] { return m_caller == std::thread::id() || m_caller == std::this_thread::get_id(); });
}

void QtRepeatingTimer::call(std::int64_t started) {
  std::function<void()> tick;
  {
    const std::lock_guard lock(m_mutex);
    if (started != m_started || !m_tick) return;
    tick = m_tick;
    m_caller = std::this_thread::get_id();
  }
  tick();
  const std::lock_guard lock(m_mutex);
  m_caller = {};
  m_ended.notify_all();
}

}  // namespace orvane
