#include "core/base/values/FatalError.h"

#include <cstdio>
#include <cstdlib>

namespace orvane {

void fatalError(std::string_view message) {
  std::fprintf(stderr, "orvane: fatal: %.*s\n", static_cast<int>(message.size()), message.data());
  std::fflush(stderr);
  std::abort();
}

}  // namespace orvane
