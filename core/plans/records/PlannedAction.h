#pragma once

#include "core/base/values/EnumTable.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// The action that a plan takes on the files that a step selects.
enum class PlannedAction : std::uint8_t {
  trash,   // move them to the Trash
  review,  // only list them
  move,    // move them into the step's destination folder
};

// The case name is also the JSON form.
inline constexpr EnumTable plannedActions({
    RawValueRow{PlannedAction::trash, "trash"},
    RawValueRow{PlannedAction::review, "review"},
    RawValueRow{PlannedAction::move, "move"},
});
inline constexpr auto allPlannedActions = plannedActions.values();

constexpr std::string_view rawValue(PlannedAction action) noexcept {
  return plannedActions[action].rawValue;
}
constexpr std::optional<PlannedAction> plannedActionFromRawValue(std::string_view text) noexcept {
  return plannedActions.find(text);
}

}  // namespace orvane
