#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace orvane::fuzz {

// The work of a target on one input; each defines it once.
void run(std::string_view input);

// Reports a broken promise to the fuzzer.
inline void check(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", promise);
  std::abort();
}

}  // namespace orvane::fuzz
