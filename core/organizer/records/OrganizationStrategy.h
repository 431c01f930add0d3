#pragma once

#include "core/base/values/EnumTable.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// How a folder is organised.
enum class OrganizationStrategy : std::uint8_t { byCategory, byDate, byType };

// The English title is also the identity.
inline constexpr EnumTable organizationStrategies({
    RawValueRow{OrganizationStrategy::byCategory, "Smart Categories"},
    RawValueRow{OrganizationStrategy::byDate, "By Date (Year & Month)"},
    RawValueRow{OrganizationStrategy::byType, "By File Type"},
});
inline constexpr auto allOrganizationStrategies = organizationStrategies.values();

constexpr std::string_view rawValue(OrganizationStrategy strategy) noexcept {
  return organizationStrategies[strategy].rawValue;
}
constexpr std::optional<OrganizationStrategy> organizationStrategyFromRawValue(std::string_view text) noexcept {
  return organizationStrategies.find(text);
}

}  // namespace orvane
