#pragma once

#include "core/scanning/walk/HeldFolders.h"
#include "core/scanning/walk/WorkStack.h"

#include <atomic>
#include <cstddef>
#include <deque>
#include <mutex>
#include <stop_token>

namespace orvane {

// Folders at longer paths, in bytes, are not walked: deciding from a path what is in each of them would take the square
// of the depth. Eight times the longest path that programs can name to Linux.
inline constexpr std::size_t maxWalkedPathBytes = 32 * 1024;

// The state that the visits of one walk share.
struct TreeWalk {
  // Carries out the tasks, and those that they make, on all processors; the calling thread alone reads the first
  // `foldersAlone` folders, which threads are not worth. Returns when nothing is left or `token` asks to stop.
  void run(WorkStack::Tasks tasks, std::size_t foldersAlone, const std::stop_token& token = {});
  // Callable from any thread.
  void stop() noexcept;
  [[nodiscard]] bool isStopped() const noexcept { return m_isStopped.load(std::memory_order_relaxed); }

  HeldFolders held;

 private:
  std::atomic<bool> m_isStopped = false;

 public:
  WorkStack work;  // the last to be made: its threads use the others
};

// Where many threads add what never moves.
template <typename Element>
class SteadyList {
 public:
  Element& add() {
    const std::lock_guard lock(m_mutex);
    return m_elements.emplace_back();
  }

 private:
  std::mutex m_mutex;
  std::deque<Element> m_elements;
};

}  // namespace orvane
