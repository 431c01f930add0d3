#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/scanning/records/ScanCategory.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The conditions that a file must meet for a rule to act on it. An absent field places no condition, and neither does
// an empty list or text. RuleFields.h has a row for each.
struct RuleTrigger {
  std::optional<std::string> folderPath = {};                   // "~/" stands for the home folder
  std::optional<std::vector<std::string>> fileExtensions = {};  // without the dot
  std::optional<std::vector<ScanCategory>> categories = {};
  std::optional<std::int64_t> minimumAgeDays = {};
  std::optional<std::int64_t> minimumSizeBytes = {};
  std::optional<std::string> namePattern = {};  // plain text that the name contains

  bool operator==(const RuleTrigger&) const = default;

  // Each condition in English, as in "in ~/Downloads"; none for a trigger that every file meets.
  [[nodiscard]] std::vector<std::string> conditions() const;

  // Keys in field order; absent fields are left out.
  [[nodiscard]] Json toJson() const;
  // Every key may be absent or null. Throws JsonError.
  static RuleTrigger fromJson(const Json& json);
};

// Why a path of a rule can never work, naming its key; empty where it can.
[[nodiscard]] std::string rulePathProblem(const std::string& path, std::string_view key);

}  // namespace orvane
