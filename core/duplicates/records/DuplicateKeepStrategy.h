#pragma once

#include "core/base/values/EnumTable.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// Which of several identical files stays.
enum class DuplicateKeepStrategy : std::uint8_t {
  keepOldest,        // the one created first
  keepShortestPath,  // the one whose path has the fewest characters
};

// The title shown to the user is also the identity and the JSON form.
inline constexpr EnumTable duplicateKeepStrategies({
    RawValueRow{DuplicateKeepStrategy::keepOldest, "Keep Oldest File"},
    RawValueRow{DuplicateKeepStrategy::keepShortestPath, "Keep Shortest Path"},
});
inline constexpr auto allDuplicateKeepStrategies = duplicateKeepStrategies.values();

constexpr std::string_view rawValue(DuplicateKeepStrategy strategy) noexcept {
  return duplicateKeepStrategies[strategy].rawValue;
}
constexpr std::optional<DuplicateKeepStrategy> duplicateKeepStrategyFromRawValue(std::string_view text) noexcept {
  return duplicateKeepStrategies.find(text);
}

}  // namespace orvane
