#pragma once

#include "core/base/values/Uuid.h"
#include "core/rules/records/CleanupRule.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

struct TaskServices;

// The stored rules in their order; the built-in ones where none are stored.
[[nodiscard]] std::vector<CleanupRule> cleanupRules(const TaskServices& services);
// The same with identities that last, for those who show them. Throws std::system_error.
struct LastingRules {
  std::vector<CleanupRule> rules;
  // The key of the preferences under which stored rules were just set aside, as they could not be read.
  std::optional<std::string> setAsideUnder = std::nullopt;
};
[[nodiscard]] LastingRules lastingRules(const TaskServices& services);

// A rule that this system offers beside the built-in ones, to be stored as the user's own.
struct SuggestedRule {
  std::string_view name;  // for commands
  CleanupRule rule;       // named in the user's language
  bool isAdded = false;   // one of the rules does the same
};
[[nodiscard]] std::vector<SuggestedRule> suggestedRules(const TaskServices& services,
                                                        std::span<const CleanupRule> rules);

// These store the list at once. Throw std::system_error.

// Replaces the rule of the same identity in its place, else appends it.
void storeRule(const TaskServices& services, const CleanupRule& rule);
void switchRule(const TaskServices& services, const Uuid& id, bool isEnabled);
// A built-in rule stays.
void deleteRule(const TaskServices& services, const Uuid& id);
// The built-in rules as they came; the user's own go.
void resetRules(const TaskServices& services);

}  // namespace orvane
