#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// How much care an item needs. `safe` items start selected, `review` items may be selected, `manual` items never.
enum class RiskLabel : std::uint8_t { safe, review, manual };

inline constexpr std::array allRiskLabels{RiskLabel::safe, RiskLabel::review, RiskLabel::manual};

// The case name; also the JSON form and the identity.
[[nodiscard]] std::string_view rawValue(RiskLabel label) noexcept;
[[nodiscard]] std::optional<RiskLabel> riskLabelFromRawValue(std::string_view text) noexcept;
// English title and explanation.
[[nodiscard]] std::string_view title(RiskLabel label) noexcept;
[[nodiscard]] std::string_view explanation(RiskLabel label) noexcept;
// Name of a symbol image, kept as an opaque text.
[[nodiscard]] std::string_view systemImage(RiskLabel label) noexcept;
[[nodiscard]] bool isSelectable(RiskLabel label) noexcept;

}  // namespace orvane
