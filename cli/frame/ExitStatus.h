#pragma once

#include <cstdint>

namespace orvane::cli {

// The exit status of the program.
enum class ExitStatus : std::uint8_t {
  done = 0,
  failed = 1,         // it ran, and something failed
  usage = 2,          // wrong usage; nothing was done
  interrupted = 130,  // stopped by a signal; what was done before is journalled
};

}  // namespace orvane::cli
