#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace orvane {

// Tasks that make more tasks, carried out by several threads in the order of one walk: the tasks that a task makes come
// before those that followed it. So the threads stay close together in a tree, little waits at any time, and who reads
// the findings in that order seldom waits for a task that has not begun.
class WorkStack {
 public:
  class Task;
  using Tasks = std::list<std::unique_ptr<Task>>;
  class Task {
   public:
    virtual ~Task() = default;
    // May push further tasks. Must not throw.
    virtual void run(WorkStack& stack) = 0;

   private:
    friend class WorkStack;
    Tasks::const_iterator m_place;  // while it runs
  };

  WorkStack() = default;
  // Drops what has not begun and waits for the threads.
  ~WorkStack();
  WorkStack(const WorkStack&) = delete;
  WorkStack& operator=(const WorkStack&) = delete;

  // Adds tasks behind all others. `tasks` is left empty.
  void push(Tasks& tasks);
  // Adds tasks that the running task `maker` made, behind those that it made before. An idle thread less is woken for a
  // maker that ends.
  enum class Maker : std::uint8_t { ends, goesOn };
  void push(Tasks& tasks, const Task& maker, Maker next);
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
  void add(Tasks& tasks, Tasks::const_iterator place, std::size_t takenByMaker);

  mutable std::mutex m_mutex;
  std::condition_variable m_changed;
  Tasks m_tasks;  // an empty pointer in the place of each that runs
  std::size_t m_waiting = 0;
  std::size_t m_idle = 0;
  bool m_isStopped = false;
  std::vector<std::jthread> m_threads;
};

}  // namespace orvane
