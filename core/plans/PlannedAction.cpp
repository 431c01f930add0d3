#include "core/plans/PlannedAction.h"

namespace orvane {
namespace {

constexpr std::array<std::string_view, allPlannedActions.size()> rawValues{"trash", "review", "move"};

}  // namespace

std::string_view rawValue(PlannedAction action) noexcept {
  return rawValues[static_cast<std::size_t>(action)];
}

std::optional<PlannedAction> plannedActionFromRawValue(std::string_view text) noexcept {
  for (const auto action : allPlannedActions) {
    if (rawValue(action) == text) return action;
  }
  return std::nullopt;
}

}  // namespace orvane
