#pragma once

#include "core/base/values/FatalError.h"

#include <concepts>

namespace orvane {

// Sum of two integers of one type; an overflow ends the process.
template <std::integral T>
[[nodiscard]] T checkedAdd(T left, T right) {
  T result{};
  if (__builtin_add_overflow(left, right, &result)) fatalError("integer overflow in an addition");
  return result;
}

// Product of two integers of one type; an overflow ends the process.
template <std::integral T>
[[nodiscard]] T checkedMultiply(T left, T right) {
  T result{};
  if (__builtin_mul_overflow(left, right, &result)) fatalError("integer overflow in a multiplication");
  return result;
}

}  // namespace orvane
