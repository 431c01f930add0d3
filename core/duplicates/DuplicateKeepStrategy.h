#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// Which of several identical files stays.
enum class DuplicateKeepStrategy : std::uint8_t {
  keepOldest,        // the one created first
  keepShortestPath,  // the one whose path has the fewest characters
};

constexpr std::array<DuplicateKeepStrategy, 2> allDuplicateKeepStrategies{DuplicateKeepStrategy::keepOldest,
                                                                          DuplicateKeepStrategy::keepShortestPath};

// The title shown to the user; also the identity and the JSON form.
[[nodiscard]] std::string_view rawValue(DuplicateKeepStrategy strategy) noexcept;
[[nodiscard]] std::optional<DuplicateKeepStrategy> duplicateKeepStrategyFromRawValue(std::string_view text) noexcept;

}  // namespace orvane
