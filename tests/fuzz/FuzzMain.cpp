#include "tests/fuzz/FuzzCheck.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
  return ::setenv("HOME", "/home/fuzz", 1);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orvane::fuzz::run({reinterpret_cast<const char*>(data), size});
  return 0;
}
