#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace orvane {

// Tasks that make more tasks, carried out by several threads. What was added last is taken first, so that together the
// threads go through a tree nearly depth first and little waits at any time.
class WorkStack {
 public:
  class Task {
   public:
    virtual ~Task() = default;
    // May push further tasks. Must not throw.
    virtual void run(WorkStack& stack) = 0;
  };
  using Tasks = std::vector<std::unique_ptr<Task>>;

  WorkStack() = default;
  // Drops what has not begun and waits for the threads.
  ~WorkStack();
  WorkStack(const WorkStack&) = delete;
  WorkStack& operator=(const WorkStack&) = delete;

  // What the task that pushes does next: an idle thread less is woken for one that ends.
  enum class Pusher : std::uint8_t { ends, goesOn };
  // The first of them is taken first. `tasks` is left empty.
  void push(Tasks& tasks, Pusher pusher = Pusher::ends);
  // Starts threads that work until nothing is left, and returns how many the system granted.
  unsigned start(unsigned threads);
  // Works on the calling thread until nothing is left to do, or until `limit` tasks have been carried out.
  void work(std::size_t limit = static_cast<std::size_t>(-1));
  // Waits for the threads, which end when nothing is left.
  void join() { m_threads.clear(); }
  [[nodiscard]] bool isEmpty() const;
  // Drops what has not begun. Callable from any thread.
  void stop() noexcept;

  // As many threads as can run at the same time.
  [[nodiscard]] static unsigned processorCount() noexcept;

 private:
  mutable std::mutex m_mutex;
  std::condition_variable m_changed;
  Tasks m_tasks;
  std::size_t m_running = 0;
  std::size_t m_idle = 0;
  bool m_isStopped = false;
  std::vector<std::jthread> m_threads;
};

}  // namespace orvane
