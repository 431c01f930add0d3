#include "core/scanning/walk/WorkStack.h"

#include <algorithm>
#include <iterator>
#include <system_error>

namespace orvane {

WorkStack::~WorkStack() {
  stop();
}

void WorkStack::push(Tasks& tasks, Pusher pusher) {
  if (tasks.empty()) return;
  std::size_t wanted = tasks.size();
  {
    const std::lock_guard lock(m_mutex);
    if (!m_isStopped) {
      m_tasks.insert(m_tasks.end(), std::make_move_iterator(tasks.rbegin()), std::make_move_iterator(tasks.rend()));
    }
    const bool takesOneItself = m_running > 0 && pusher == Pusher::ends;
    wanted = std::min(wanted - (takesOneItself ? 1 : 0), m_idle);
  }
  tasks.clear();
  for (; wanted > 0; --wanted) m_changed.notify_one();
}

unsigned WorkStack::start(unsigned threads) {
  for (unsigned i = 0; i < threads; ++i) {
    try {
      m_threads.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
      return i;
    }
  }
  return threads;
}

void WorkStack::work(std::size_t limit) {
  std::unique_lock lock(m_mutex);
  while (limit > 0) {
    ++m_idle;
    m_changed.wait(lock, [&] { return !m_tasks.empty() || m_running == 0 || m_isStopped; });
    --m_idle;
    if (m_tasks.empty()) return;
    auto task = std::move(m_tasks.back());
    m_tasks.pop_back();
    ++m_running;
    lock.unlock();
    task->run(*this);
    task.reset();
    lock.lock();
    --m_running;
    --limit;
    if (m_running == 0 && m_tasks.empty()) m_changed.notify_all();
  }
}

bool WorkStack::isEmpty() const {
  const std::lock_guard lock(m_mutex);
  return m_tasks.empty();
}

void WorkStack::stop() noexcept {
  Tasks dropped;
  {
    const std::lock_guard lock(m_mutex);
    m_isStopped = true;
    dropped.swap(m_tasks);
  }
  m_changed.notify_all();
}

unsigned WorkStack::processorCount() noexcept {
  return std::max(1U, std::thread::hardware_concurrency());
}

}  // namespace orvane
