#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/scanning/records/ScanCategory.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

// Selects files inside a step's folder. An absent criterion places no condition.
struct CleaningFilter {
  std::optional<std::vector<ScanCategory>> categories = {};  // one of these
  std::optional<std::vector<std::string>> extensions = {};   // one of these, without the dot, in any case
  std::optional<std::int64_t> minimumAgeDays = {};
  std::optional<std::int64_t> minimumSizeBytes = {};
  std::optional<std::string> nameContains = {};

  bool operator==(const CleaningFilter&) const = default;

  // Whether any criterion is named. Empty lists and an empty text name none.
  [[nodiscard]] bool hasCriteria() const noexcept;

  // Keys in field order; absent criteria are left out.
  [[nodiscard]] Json toJson() const;
  // Every key may be absent or null. Throws JsonError.
  static CleaningFilter fromJson(const Json& json);
};

}  // namespace orvane
