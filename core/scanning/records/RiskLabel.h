#pragma once

#include "core/base/values/EnumTable.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// How much care an item needs. `safe` items start selected, `review` items may be selected, `manual` items never.
enum class RiskLabel : std::uint8_t { safe, review, manual };

struct RiskLabelRow {
  RiskLabel value;
  std::string_view rawValue;  // the case name; also the JSON form and the identity
  std::string_view title;     // English, as the explanation
  std::string_view explanation;
  std::string_view systemImage;  // name of a symbol image, kept as an opaque text
  bool isSelectable;
};

inline constexpr EnumTable riskLabels({
    RiskLabelRow{RiskLabel::safe, "safe", "Safe",
                 "Safe to remove. Temporary cache, log, or installer with no personal data.", "checkmark.shield.fill",
                 true},
    RiskLabelRow{RiskLabel::review, "review", "Review",
                 "Review recommended. May contain personal documents, archives, or screenshots.",
                 "exclamationmark.triangle.fill", true},
    RiskLabelRow{
        RiskLabel::manual, "manual", "Manual",
        "Visible for information only. Protected or sensitive item that Orvane will never automatically remove.",
        "lock.shield.fill", false},
});
inline constexpr auto allRiskLabels = riskLabels.values();

constexpr std::string_view rawValue(RiskLabel label) noexcept {
  return riskLabels[label].rawValue;
}
constexpr std::optional<RiskLabel> riskLabelFromRawValue(std::string_view text) noexcept {
  return riskLabels.find(text);
}
constexpr std::string_view title(RiskLabel label) noexcept {
  return riskLabels[label].title;
}
constexpr std::string_view explanation(RiskLabel label) noexcept {
  return riskLabels[label].explanation;
}
constexpr std::string_view systemImage(RiskLabel label) noexcept {
  return riskLabels[label].systemImage;
}
constexpr bool isSelectable(RiskLabel label) noexcept {
  return riskLabels[label].isSelectable;
}

}  // namespace orvane
