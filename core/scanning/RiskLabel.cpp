#include "core/scanning/RiskLabel.h"

namespace orvane {
namespace {

struct LabelRow {
  RiskLabel label;
  std::string_view rawValue;
  std::string_view title;
  std::string_view explanation;
  std::string_view systemImage;
  bool isSelectable;
};

constexpr std::array rows{
    LabelRow{RiskLabel::safe, "safe", "Safe",
             "Safe to remove. Temporary cache, log, or installer with no personal data.", "checkmark.shield.fill",
             true},
    LabelRow{RiskLabel::review, "review", "Review",
             "Review recommended. May contain personal documents, archives, or screenshots.",
             "exclamationmark.triangle.fill", true},
    LabelRow{RiskLabel::manual, "manual", "Manual",
             "Visible for information only. Protected or sensitive item that Orvane will never automatically remove.",
             "lock.shield.fill", false},
};

constexpr bool rowsFollowDeclaration() {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].label != allRiskLabels[i] || static_cast<std::size_t>(rows[i].label) != i) return false;
  }
  return rows.size() == allRiskLabels.size();
}
static_assert(rowsFollowDeclaration());

constexpr const LabelRow& rowOf(RiskLabel label) {
  return rows[static_cast<std::size_t>(label)];
}

}  // namespace

std::string_view rawValue(RiskLabel label) noexcept {
  return rowOf(label).rawValue;
}

std::optional<RiskLabel> riskLabelFromRawValue(std::string_view text) noexcept {
  for (const auto& row : rows) {
    if (row.rawValue == text) return row.label;
  }
  return std::nullopt;
}

std::string_view title(RiskLabel label) noexcept {
  return rowOf(label).title;
}

std::string_view explanation(RiskLabel label) noexcept {
  return rowOf(label).explanation;
}

std::string_view systemImage(RiskLabel label) noexcept {
  return rowOf(label).systemImage;
}

bool isSelectable(RiskLabel label) noexcept {
  return rowOf(label).isSelectable;
}

}  // namespace orvane
