#include "core/organizer/OrganizationStrategy.h"

namespace orvane {
namespace {

struct StrategyRow {
  OrganizationStrategy strategy;
  std::string_view rawValue;
};

constexpr std::array rows{
    StrategyRow{OrganizationStrategy::byCategory, "Smart Categories"},
    StrategyRow{OrganizationStrategy::byDate, "By Date (Year & Month)"},
    StrategyRow{OrganizationStrategy::byType, "By File Type"},
};

constexpr bool rowsFollowDeclaration() {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].strategy != allOrganizationStrategies[i] || static_cast<std::size_t>(rows[i].strategy) != i) {
      return false;
    }
  }
  return rows.size() == allOrganizationStrategies.size();
}
static_assert(rowsFollowDeclaration());

}  // namespace

std::string_view rawValue(OrganizationStrategy strategy) noexcept {
  return rows[static_cast<std::size_t>(strategy)].rawValue;
}

std::optional<OrganizationStrategy> organizationStrategyFromRawValue(std::string_view text) noexcept {
  for (const auto& row : rows) {
    if (row.rawValue == text) return row.strategy;
  }
  return std::nullopt;
}

}  // namespace orvane
