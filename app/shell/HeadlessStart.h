#pragma once

#include <span>
#include <string_view>

namespace orvane {

// Whether the program was started by the background agent: by this argument, whole.
inline constexpr std::string_view scheduledRunArgument = "--scheduled-run";
[[nodiscard]] bool asksForScheduledRun(std::span<const char* const> arguments);

// Carries out the scheduled work and waits for its end. Needs no display and makes nothing of Qt's. Returns the status
// to exit with: not 0 when something failed.
[[nodiscard]] int runScheduledWork();

}  // namespace orvane
