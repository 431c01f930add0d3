#pragma once

#include <cstdio>
#include <cstdlib>

namespace orvane::fuzz {

// Reports a broken promise to the fuzzer.
inline void check(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", promise);
  std::abort();
}

}  // namespace orvane::fuzz
