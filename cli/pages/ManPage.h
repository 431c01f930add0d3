#pragma once

#include <string>

namespace orvane::cli {

// The page orvanectl(1) in the man macros, made from the definitions of the commands.
[[nodiscard]] std::string manPage();

}  // namespace orvane::cli
