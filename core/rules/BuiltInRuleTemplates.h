#pragma once

#include "core/rules/records/CleanupRule.h"

#include <vector>

namespace orvane {

// The rules that come with the program.
class BuiltInRuleTemplates {
 public:
  BuiltInRuleTemplates() = delete;

  // The twelve rules, made anew: identities and creation times are those of the call.
  [[nodiscard]] static std::vector<CleanupRule> defaultRules();
};

}  // namespace orvane
