#pragma once

#include <cstddef>
#include <cstdint>

namespace orvane {

// Why a rule does not act on a file, in the order in which the conditions are tested.
enum class RuleMismatch : std::uint8_t { manualLabel, folder, category, extension, age, size, name };

inline constexpr std::size_t ruleMismatchCount = 7;

}  // namespace orvane
