#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// How a folder is organised.
enum class OrganizationStrategy : std::uint8_t { byCategory, byDate, byType };

inline constexpr std::array allOrganizationStrategies{OrganizationStrategy::byCategory, OrganizationStrategy::byDate,
                                                      OrganizationStrategy::byType};

// The English title; also the identity.
[[nodiscard]] std::string_view rawValue(OrganizationStrategy strategy) noexcept;
[[nodiscard]] std::optional<OrganizationStrategy> organizationStrategyFromRawValue(std::string_view text) noexcept;

}  // namespace orvane
