#include "app/common/BackgroundQueue.h"

#include "tests/app/WindowFixture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <future>
#include <iterator>
#include <latch>
#include <memory>
#include <numeric>
#include <thread>
#include <vector>

namespace orvane::test {
namespace {

std::ptrdiff_t threadsOfThisProcess() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

TEST(BackgroundQueue, carriesItsTasksOutInTheirOrder) {
  BackgroundQueue queue;
  std::vector<int> expected(1000);
  std::iota(expected.begin(), expected.end(), 0);
  std::vector<int> done;
  std::promise<void> end;
  for (const int number : expected) {
    queue.post([&, number](const std::stop_token&) { done.push_back(number); });
  }
  queue.post([&](const std::stop_token&) { end.set_value(); });
  end.get_future().wait();
  EXPECT_EQ(done, expected);
}

TEST(BackgroundQueue, asksTheRunningTaskToStopAndDropsThoseThatWait) {
  auto held = std::make_shared<int>(1);
  bool hasEnded = false;
  int dropped = 0;
  {
    std::latch isRunning(1);
    BackgroundQueue queue;
    queue.post([&](const std::stop_token& stop) {
      isRunning.count_down();
      while (!stop.stop_requested()) std::this_thread::yield();
      queue.post([&](const std::stop_token&) { ++dropped; });
      hasEnded = true;
    });
    for (int i = 0; i < 3; ++i) queue.post([&, held](const std::stop_token&) { ++dropped; });
    isRunning.wait();
  }
  EXPECT_TRUE(hasEnded);
  EXPECT_EQ(dropped, 0);
  EXPECT_EQ(held.use_count(), 1);  // the tasks are gone, with everything that they held
}

TEST(BackgroundQueue, neverWaitsForAnother) {
  constexpr int count = 40;  // more than a machine's processors
  std::latch allRun(count);
  std::vector<BackgroundQueue> queues(count);
  for (auto& queue : queues) {
    queue.post([&](const std::stop_token&) { allRun.arrive_and_wait(); });
  }
  allRun.wait();
}

TEST(BackgroundQueue, keepsNoThreadWhenIdleAndTakesAnotherForTheNextTask) {
  std::vector<BackgroundQueue> queues(10);
  const auto before = threadsOfThisProcess();
  for (int round = 0; round < 2; ++round) {
    std::latch allRun(10);
    for (auto& queue : queues) {
      queue.post([&](const std::stop_token&) { allRun.arrive_and_wait(); });
    }
    allRun.wait();
    // Fewer where threads of other tests were still on their way out.
    EXPECT_TRUE(becomesTrue([&] { return threadsOfThisProcess() <= before; }));
  }
}

}  // namespace
}  // namespace orvane::test
