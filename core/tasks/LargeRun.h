#pragma once

#include "core/tasks/Notice.h"

#include <cstdint>

namespace orvane {

// Whether a run takes so much that the user is asked once more, with its sums.
[[nodiscard]] constexpr bool isLargeRun(const RowSum& sum) noexcept {
  constexpr std::int64_t maxItems = 1000;
  constexpr std::int64_t maxBytes = 10'000'000'000;
  return sum.count > maxItems || sum.bytes > maxBytes;
}

}  // namespace orvane
