#pragma once

#include <string_view>

namespace orvane {

// Ends the process with `message` on standard error. For broken invariants that must not be carried on with.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace orvane
