#pragma once

#include <chrono>
#include <cstddef>

namespace orvane {

// Decides which of very many reports of progress reach the main thread: one now and then, and the last.
class ProgressPace {
 public:
  [[nodiscard]] bool isDue(std::size_t done, std::size_t total) {
    const auto now = std::chrono::steady_clock::now();
    if (now - m_last < interval && done != total) return false;
    m_last = now;
    return true;
  }

 private:
  static constexpr std::chrono::milliseconds interval{50};
  std::chrono::steady_clock::time_point m_last;
};

}  // namespace orvane
