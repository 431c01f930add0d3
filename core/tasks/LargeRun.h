#pragma once

#include "core/tasks/Notice.h"

#include <cstdint>

namespace orvane {

// Whether a run takes so much that the user is asked once more, with its sums.
[[nodiscard]] constexpr bool isLargeRun(const RowSum& sum) noexcept {
  constexpr std::int64_t mostItems = 1000;
  constexpr std::int64_t mostBytes = 10'000'000'000;
  return sum.count > mostItems || sum.bytes > mostBytes;
}

}  // namespace orvane
