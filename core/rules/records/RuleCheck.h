#pragma once

#include "core/rules/records/CleanupRule.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Parts of a rule, by their keys in its JSON form; a condition goes by the key of its RuleField.
inline constexpr std::string_view ruleNamePart = "name";
inline constexpr std::string_view ruleConditionsPart = "trigger";  // all conditions together
inline constexpr std::string_view ruleDestinationPart = "path";

// Something wrong with a rule, whatever the disk holds.
struct RuleProblem {
  std::string_view part;
  std::string text;      // an English sentence that names the part
  std::string_view key;  // of the text in the user's language

  bool operator==(const RuleProblem&) const = default;
};

// In the order of the parts. A rule that has one is not taken over from an editor or a file.
[[nodiscard]] std::vector<RuleProblem> problemsWith(const CleanupRule& rule);
// Why a stored rule is not carried out; absent when it is. A name that is missing hinders nobody.
[[nodiscard]] std::optional<RuleProblem> refusalOf(const CleanupRule& rule);

}  // namespace orvane
