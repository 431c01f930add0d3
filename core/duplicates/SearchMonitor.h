#pragma once

#include "core/duplicates/records/DuplicateProgress.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <stop_token>

namespace orvane {

// The state that the threads of one search share: whether to stop, and how far they are.
class SearchMonitor {
 public:
  using Report = std::function<void(const DuplicateProgress&)>;

  SearchMonitor(std::stop_token stop, const Report& report) : m_stop(std::move(stop)), m_report(report) {}

  [[nodiscard]] bool isStopped() const noexcept { return m_stop.stop_requested(); }

  [[nodiscard]] const std::stop_token& stopToken() const noexcept { return m_stop; }

  void beginStage(DuplicateProgress::Stage stage, std::int64_t files, std::int64_t bytes) noexcept;
  void addFound(std::int64_t files) noexcept { m_found.fetch_add(files, std::memory_order_relaxed); }
  void settle(std::int64_t files, std::int64_t bytes) noexcept;

  // Runs `work` on as many threads as there are processors and returns when all of them are through. The calling thread
  // reports meanwhile, and works itself only where the system grants no thread. Throws what `work` throws.
  void onAllProcessors(const std::function<void()>& work);

  // The same for the numbers from 0 to `count`, which the threads take in runs of `perTurn` until the monitor is
  // stopped; `work` is given a run's first number and the one behind its last.
  void forRanges(std::size_t count, std::size_t perTurn,
                 const std::function<void(std::size_t first, std::size_t end)>& work);

 private:
  void report() const;

  std::stop_token m_stop;
  const Report& m_report;
  DuplicateProgress::Stage m_stage = DuplicateProgress::Stage::listing;
  std::atomic<std::int64_t> m_found = 0;
  std::atomic<std::int64_t> m_filesLeft = 0;
  std::atomic<std::int64_t> m_bytesLeft = 0;
};

}  // namespace orvane
