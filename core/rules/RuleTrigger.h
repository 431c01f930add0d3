#pragma once

#include "core/base/JsonFwd.h"
#include "core/scanning/ScanCategory.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

// What a file must meet for a rule to act on it. An absent field places no condition, and neither does an empty list or
// text.
struct RuleTrigger {
  std::optional<std::string> folderPath = {};                   // "~/" stands for the home folder
  std::optional<std::vector<std::string>> fileExtensions = {};  // without the dot
  std::optional<std::vector<ScanCategory>> categories = {};
  std::optional<std::int64_t> minimumAgeDays = {};
  std::optional<std::int64_t> minimumSizeBytes = {};
  std::optional<std::string> namePattern = {};  // plain text that the name contains

  bool operator==(const RuleTrigger&) const = default;

  // Keys in field order; absent fields are left out.
  [[nodiscard]] Json toJson() const;
  // Every key may be absent or null. Throws JsonError.
  static RuleTrigger fromJson(const Json& json);
};

}  // namespace orvane
