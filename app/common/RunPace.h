#pragma once

#include "core/tasks/Proposal.h"

#include <QString>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace orvane {

// How far a run has come, as of one moment.
struct RunPace {
  std::int64_t doneBytes = 0;
  std::int64_t totalBytes = 0;
  double fraction = 0;                       // of the bytes, or of the items where they have none
  std::string next;                          // name of the item whose turn is next
  std::chrono::duration<double> elapsed{0};  // pauses left out

  // "report.pdf · 1.2 GB of 4 GB · 300 MB/s · 12 seconds left"; empty before a run.
  [[nodiscard]] QString text() const;
};

// Adds up the items of an approval while they move, in order.
class PaceCounter {
 public:
  using Clock = std::chrono::steady_clock;

  explicit PaceCounter(const Approval& approval);

  // After so many items.
  [[nodiscard]] RunPace at(std::size_t done);
  void leaveOut(Clock::duration pause) { m_begun += pause; }

 private:
  Approval m_approval;
  std::size_t m_counted = 0;
  std::int64_t m_bytes = 0;
  Clock::time_point m_begun = Clock::now();
};

}  // namespace orvane
