#include "core/scanning/walk/WorkStack.h"

#include <algorithm>
#include <iterator>
#include <system_error>

namespace orvane {

WorkStack::~WorkStack() {
  stop();
}

void WorkStack::push(Tasks& tasks) {
  add(tasks, m_tasks.end(), 0);
}

void WorkStack::push(Tasks& tasks, const Task& maker, Maker next) {
  add(tasks, maker.m_place, next == Maker::ends ? 1 : 0);
}

void WorkStack::add(Tasks& tasks, Tasks::const_iterator place, std::size_t takenByMaker) {
  if (tasks.empty()) return;
  std::size_t wanted = tasks.size() - takenByMaker;
  {
    const std::lock_guard lock(m_mutex);
    wanted = std::min(wanted, m_idle);
    if (!m_isStopped) {
      m_waiting += tasks.size();
      m_tasks.splice(place, tasks);
    }
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
    m_changed.wait(lock, [&] { return m_waiting > 0 || m_tasks.empty() || m_isStopped; });
    --m_idle;
    if (m_waiting == 0) return;
    const auto place = std::find_if(m_tasks.begin(), m_tasks.end(), [](const auto& task) { return task != nullptr; });
    auto task = std::move(*place);
    task->m_place = place;
    --m_waiting;
    lock.unlock();
    task->run(*this);
    task.reset();
    lock.lock();
    m_tasks.erase(place);
    --limit;
    if (m_tasks.empty()) m_changed.notify_all();
  }
}

bool WorkStack::isEmpty() const {
  const std::lock_guard lock(m_mutex);
  return m_waiting == 0;
}

void WorkStack::stop() noexcept {
  Tasks dropped;
  {
    const std::lock_guard lock(m_mutex);
    m_isStopped = true;
    m_waiting = 0;
    for (auto task = m_tasks.begin(); task != m_tasks.end();) {
      const auto next = std::next(task);
      if (*task) dropped.splice(dropped.end(), m_tasks, task);
      task = next;
    }
  }
  m_changed.notify_all();
}

unsigned WorkStack::processorCount() noexcept {
  return std::max(1U, std::thread::hardware_concurrency());
}

}  // namespace orvane
