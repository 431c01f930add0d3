#pragma once

#include "core/base/files/FileUrl.h"

#include <span>
#include <string>
#include <vector>

namespace orvane {

struct TaskServices;

// The patterns of what the user never wants to be offered, in the order in which they were added. These throw
// std::runtime_error where the list cannot be read or stored.

[[nodiscard]] std::vector<std::string> keptPatterns(const TaskServices& services);
// Throws std::invalid_argument, with nothing added, for a text that is no pattern.
void keepPatterns(const TaskServices& services, std::span<const std::string> patterns);
// Keeps exactly this place, whatever its name.
void keepPlace(const TaskServices& services, const FileUrl& place);
// Returns those that are not on the list; nothing changes where there is one.
[[nodiscard]] std::vector<std::string> dropPatterns(const TaskServices& services,
                                                    std::span<const std::string> patterns);
// The pattern that means one place.
[[nodiscard]] std::string keepPatternFor(const TaskServices& services, const FileUrl& place);

}  // namespace orvane
