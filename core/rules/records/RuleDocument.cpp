#include "core/rules/records/RuleDocument.h"

#include "core/base/files/PathText.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/rules/records/RuleCheck.h"
#include "core/rules/records/RuleFields.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <span>
#include <vector>

namespace orvane {
namespace {

using Keys = std::span<const std::string_view>;

constexpr std::array<std::string_view, 8> ruleKeys{"id",     "name",      "description", "trigger",
                                                   "action", "isEnabled", "isBuiltIn",   "createdAt"};
constexpr std::array<std::string_view, 2> actionKeys{"type", "path"};
constexpr std::array actionTypes{RuleAction::Type::moveToFolder, RuleAction::Type::moveToTrash,
                                 RuleAction::Type::reviewOnly};

void requireKnownKeys(const Json& object, std::string_view what, Keys known) {
  if (!object.is_object()) throw JsonError(fmt::format("{} must be an object", what));
  for (const auto& [key, value] : object.items()) {
    if (std::ranges::find(known, key) != known.end()) continue;
    throw JsonError(
        fmt::format("{} has no key \"{}\"; it may have {}", what, shortenedToBytes(key, 100), fmt::join(known, ", ")));
  }
}

RuleAction actionFrom(const Json& json) {
  requireKnownKeys(json, "\"action\"", actionKeys);
  const auto type = stringAt(json, "type");
  const bool isKnown = std::ranges::any_of(actionTypes, [&](auto known) { return rawValue(known) == type; });
  if (!isKnown) {
    throw JsonError(fmt::format("\"type\" cannot be \"{}\"; it is one of moveToFolder, moveToTrash, reviewOnly",
                                shortenedToBytes(type, 100)));
  }
  return RuleAction::fromJson(json);
}

}  // namespace

CleanupRule ruleFromText(std::string_view text) {
  const auto json = parseJson(text);
  requireKnownKeys(json, "a rule", ruleKeys);
  CleanupRule rule;
  if (optionalKey(json, "id") != nullptr) rule.id = uuidAt(json, "id");
  rule.name = trimmed(stringAt(json, "name"));
  if (const auto* description = optionalKey(json, "description")) {
    rule.description = stringFrom(*description, "description");
  }
  const auto& trigger = requiredKey(json, "trigger");
  std::vector<std::string_view> conditionKeys;
  for (const auto& field : ruleFields()) conditionKeys.push_back(field.key);
  requireKnownKeys(trigger, "\"trigger\"", conditionKeys);
  rule.trigger = RuleTrigger::fromJson(trigger);
  rule.action = actionFrom(requiredKey(json, "action"));
  if (optionalKey(json, "isEnabled") != nullptr) rule.isEnabled = booleanAt(json, "isEnabled");
  if (optionalKey(json, "createdAt") != nullptr) rule.createdAt = dateAt(json, "createdAt");
  if (const auto problems = problemsWith(rule); !problems.empty()) throw JsonError(problems.front().text);
  return rule;
}

}  // namespace orvane
