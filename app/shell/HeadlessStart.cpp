#include "app/shell/HeadlessStart.h"

#include "core/rules/schedule/HeadlessCoordinator.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <thread>

namespace orvane {

bool asksForScheduledRun(std::span<const char* const> arguments) {
  return std::any_of(arguments.begin(), arguments.end(),
                     [](std::string_view argument) { return argument == scheduledRunArgument; });
}

int runScheduledWork() {
  int status = 1;
  std::thread([&] {
    try {
      status = HeadlessCoordinator::shared().carryOut() ? 0 : 1;
    } catch (const std::exception& error) {
      // Its pieces read the preferences as they are made.
      std::fprintf(stderr, "orvane: %s\n", error.what());
    }
  }).join();
  return status;
}

}  // namespace orvane
