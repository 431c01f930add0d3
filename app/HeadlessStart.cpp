#include "app/HeadlessStart.h"

#include "core/rules/HeadlessCoordinator.h"

#include <algorithm>
#include <semaphore>
#include <thread>

namespace orvane {
bool asksForScheduledRun(std::span<const char* const> arguments) {
  return std::any_of(arguments.begin(), arguments.end(),
                     [](std::string_view argument) { return argument == scheduledRunArgument; });
}

void runScheduledWork() {
  std::counting_semaphore<1> finished(0);
  std::thread([&finished] {
    HeadlessCoordinator::shared().carryOut();
    finished.release();
  }).detach();
  finished.acquire();
}

}  // namespace orvane
