#pragma once

#include "core/rules/records/CleanupRule.h"

#include <string>
#include <utility>

namespace orvane::test {

inline CleanupRule ruleFor(std::string name, RuleTrigger trigger, RuleAction action = RuleAction::moveToTrash()) {
  CleanupRule rule;
  rule.name = std::move(name);
  rule.trigger = std::move(trigger);
  rule.action = std::move(action);
  return rule;
}

}  // namespace orvane::test
