#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

namespace orvane {

// The work's result, or nothing when it takes too long: its thread is then left to itself with everything that `work`
// holds. What `work` holds is gone before this returns a result. Throws what the work throws, and std::system_error
// when no thread can be started.
template <typename Result>
std::optional<Result> finishedWithin(std::chrono::milliseconds timeout, std::function<Result()> work) {
  auto promise = std::make_shared<std::promise<Result>>();
  auto future = promise->get_future();
  std::thread([promise, work = std::move(work)]() mutable {
    try {
      auto result = work();
      work = nullptr;
      promise->set_value(std::move(result));
    } catch (...) {
      work = nullptr;
      promise->set_exception(std::current_exception());
    }
  }).detach();
  if (future.wait_for(timeout) != std::future_status::ready) return std::nullopt;
  return future.get();
}

}  // namespace orvane
