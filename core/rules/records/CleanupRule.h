#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"
#include "core/rules/records/RuleAction.h"
#include "core/rules/records/RuleTrigger.h"

#include <string>

namespace orvane {

// Which files to act on, and what to do with them.
struct CleanupRule {
  Uuid id = Uuid::random();
  std::string name;
  std::string description;
  RuleTrigger trigger;
  RuleAction action = RuleAction::reviewOnly();
  bool isEnabled = true;
  bool isBuiltIn = false;  // one of the templates: can be switched off and edited, not deleted
  Date createdAt = ReferenceClock::now();

  bool operator==(const CleanupRule&) const = default;

  // Keys in field order.
  [[nodiscard]] Json toJson() const;
  // Every key is required. Throws JsonError.
  static CleanupRule fromJson(const Json& json);
};

}  // namespace orvane
