#pragma once

#include <span>
#include <string>

namespace orvane::cli {

// Runs orvanectl with the words after its own name, and returns its exit status.
[[nodiscard]] int runProgram(std::span<const std::string> words);

}  // namespace orvane::cli
