#pragma once

#include "core/localization/LocalizedStrings.h"

#include <array>
#include <span>

namespace orvane {

// The tables, one file each. A new one is a function here and a line in stringTables().
[[nodiscard]] std::span<const StringRow> shellStrings() noexcept;
[[nodiscard]] std::span<const StringRow> actionStrings() noexcept;
[[nodiscard]] std::span<const StringRow> figureStrings() noexcept;
[[nodiscard]] std::span<const StringRow> windowStrings() noexcept;
[[nodiscard]] std::span<const StringRow> dashboardStrings() noexcept;
[[nodiscard]] std::span<const StringRow> cleanupStrings() noexcept;
[[nodiscard]] std::span<const StringRow> placeStrings() noexcept;
[[nodiscard]] std::span<const StringRow> consentStrings() noexcept;
[[nodiscard]] std::span<const StringRow> sectionStrings() noexcept;
[[nodiscard]] std::span<const StringRow> duplicateStrings() noexcept;
[[nodiscard]] std::span<const StringRow> organizeStrings() noexcept;
[[nodiscard]] std::span<const StringRow> ruleStrings() noexcept;
[[nodiscard]] std::span<const StringRow> settingsStrings() noexcept;
[[nodiscard]] std::span<const StringRow> systemStrings() noexcept;
[[nodiscard]] std::span<const StringRow> keepStrings() noexcept;
[[nodiscard]] std::span<const StringRow> mapStrings() noexcept;
[[nodiscard]] std::span<const StringRow> rowStrings() noexcept;
[[nodiscard]] std::span<const StringRow> askStrings() noexcept;
[[nodiscard]] std::span<const StringRow> planStrings() noexcept;

[[nodiscard]] inline std::array<std::span<const StringRow>, 19> stringTables() noexcept {
  return {shellStrings(),    actionStrings(), figureStrings(),   windowStrings(),  dashboardStrings(),
          cleanupStrings(),  placeStrings(),  consentStrings(),  sectionStrings(), duplicateStrings(),
          organizeStrings(), ruleStrings(),   settingsStrings(), systemStrings(),  keepStrings(),
          mapStrings(),      rowStrings(),    askStrings(),      planStrings()};
}

}  // namespace orvane
