#pragma once

#include <string>

namespace orvane::cli {

// Completion scripts made from the definitions of the commands.
[[nodiscard]] std::string bashCompletion();
[[nodiscard]] std::string zshCompletion();
[[nodiscard]] std::string fishCompletion();

}  // namespace orvane::cli
