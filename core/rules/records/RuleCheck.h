#pragma once

#include "core/rules/records/CleanupRule.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

enum class RulePart : std::uint8_t {
  name,
  folder,
  minimumAge,
  minimumSize,
  extensions,
  destination,
  whole,  // all conditions together
};

// Something wrong with a rule, whatever the disk holds.
struct RuleProblem {
  RulePart part = RulePart::whole;
  std::string text;      // an English sentence that names the key of the rule's JSON form
  std::string_view key;  // of the text in the user's language

  bool operator==(const RuleProblem&) const = default;
};

// In the order of the parts. A rule that has one is not taken over from an editor or a file.
[[nodiscard]] std::vector<RuleProblem> problemsWith(const CleanupRule& rule);
// Why a stored rule is not carried out; absent when it is. A name that is missing hinders nobody.
[[nodiscard]] std::optional<RuleProblem> refusalOf(const CleanupRule& rule);

}  // namespace orvane
