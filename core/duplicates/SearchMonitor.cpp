#include "core/duplicates/SearchMonitor.h"

#include "core/scanning/walk/WorkStack.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace orvane {
namespace {

constexpr auto reportInterval = std::chrono::milliseconds(100);

}  // namespace

void SearchMonitor::beginStage(DuplicateProgress::Stage stage, std::int64_t files, std::int64_t bytes) noexcept {
  m_stage = stage;
  m_filesLeft = files;
  m_bytesLeft = bytes;
}

void SearchMonitor::settle(std::int64_t files, std::int64_t bytes) noexcept {
  if (files != 0) m_filesLeft.fetch_sub(files, std::memory_order_relaxed);
  m_bytesLeft.fetch_sub(bytes, std::memory_order_relaxed);
}

void SearchMonitor::report() const {
  if (m_report) m_report({m_stage, m_found, m_filesLeft, m_bytesLeft});
}

void SearchMonitor::onAllProcessors(const std::function<void()>& work) {
  std::mutex mutex;
  std::condition_variable changed;
  std::size_t running = 0;
  std::exception_ptr failure;
  const auto guarded = [&] {
    std::exception_ptr thrown;
    try {
      work();
    } catch (...) {
      thrown = std::current_exception();
    }
    const std::lock_guard lock(mutex);
    if (thrown && !failure) failure = thrown;
    --running;
    changed.notify_all();
  };

  std::vector<std::jthread> threads;
  std::unique_lock lock(mutex);
  for (unsigned i = 0; i < WorkStack::processorCount(); ++i) {
    try {
      threads.emplace_back(guarded);
      ++running;
    } catch (const std::system_error&) {
      break;
    }
  }
  if (threads.empty()) {
    lock.unlock();
    return work();
  }
  while (!changed.wait_for(lock, reportInterval, [&] { return running == 0; })) {
    lock.unlock();
    report();
    lock.lock();
  }
  lock.unlock();
  threads.clear();
  if (failure) std::rethrow_exception(failure);
}

void SearchMonitor::forRanges(std::size_t count, std::size_t perTurn,
                              const std::function<void(std::size_t first, std::size_t end)>& work) {
  if (count == 0) return;
  std::atomic<std::size_t> next = 0;
  onAllProcessors([&] {
    while (!isStopped()) {
      const auto first = next.fetch_add(perTurn);
      if (first >= count) return;
      work(first, std::min(first + perTurn, count));
    }
  });
}

}  // namespace orvane
