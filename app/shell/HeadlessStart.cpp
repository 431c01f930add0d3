#include "app/shell/HeadlessStart.h"

#include "core/rules/schedule/HeadlessCoordinator.h"

#include <algorithm>
#include <thread>

namespace orvane {

bool asksForScheduledRun(std::span<const char* const> arguments) {
  return std::any_of(arguments.begin(), arguments.end(),
                     [](std::string_view argument) { return argument == scheduledRunArgument; });
}

void runScheduledWork() {
  std::thread([] { HeadlessCoordinator::shared().carryOut(); }).join();
}

}  // namespace orvane
