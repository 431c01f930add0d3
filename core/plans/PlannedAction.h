#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// What a plan does with the files that a step selects.
enum class PlannedAction : std::uint8_t {
  trash,   // move them to the Trash
  review,  // only list them
  move,    // move them into the step's destination folder
};

inline constexpr std::array allPlannedActions{PlannedAction::trash, PlannedAction::review, PlannedAction::move};

// The case name; also the JSON form.
[[nodiscard]] std::string_view rawValue(PlannedAction action) noexcept;
[[nodiscard]] std::optional<PlannedAction> plannedActionFromRawValue(std::string_view text) noexcept;

}  // namespace orvane
