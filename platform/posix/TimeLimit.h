#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace orvane {

// The work's result, or nothing when it takes too long: its thread is then left to itself with everything that `work`
// holds. Destroys everything that `work` holds before it returns a result. Throws what the work throws, and
// std::system_error when no thread can be started.
template <typename Result>
std::optional<Result> finishedWithin(std::chrono::milliseconds timeout, std::function<Result()> work) {
  // Result and exception are handed over whole: the thread keeps no reference that it would drop while the caller uses
  // them.
  struct Handover {
    std::mutex mutex;
    std::condition_variable changed;
    bool isDone = false;
    std::optional<Result> result;
    std::exception_ptr problem;
  };
  const auto handover = std::make_shared<Handover>();
  std::thread([handover, work = std::move(work)]() mutable {
    std::optional<Result> result;
    std::exception_ptr problem;
    try {
      result = work();
    } catch (...) {
      problem = std::current_exception();
    }
    work = nullptr;
    const std::lock_guard lock(handover->mutex);
    handover->result = std::move(result);
    handover->problem = std::exchange(problem, nullptr);
    handover->isDone = true;
    handover->changed.notify_all();
  }).detach();
  std::unique_lock lock(handover->mutex);
  if (!handover->changed.wait_for(lock, timeout, [&] { return handover->isDone; })) return std::nullopt;
  if (handover->problem) std::rethrow_exception(std::exchange(handover->problem, nullptr));
  return std::exchange(handover->result, std::nullopt);
}

}  // namespace orvane
