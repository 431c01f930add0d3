#include "cli/RuleFile.h"

#include "core/base/Json.h"
#include "core/base/PathText.h"
#include "core/base/UnicodeText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <span>

namespace orvane::cli {
namespace {

using Keys = std::span<const std::string_view>;

constexpr std::array<std::string_view, 8> ruleKeys{"id",     "name",      "description", "trigger",
                                                   "action", "isEnabled", "isBuiltIn",   "createdAt"};
constexpr std::array<std::string_view, 6> triggerKeys{"folderPath",     "fileExtensions",   "categories",
                                                      "minimumAgeDays", "minimumSizeBytes", "namePattern"};
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

void requirePath(const std::string& path, std::string_view key) {
  const bool isPath = path.starts_with('/') || path == "~" || path.starts_with("~/");
  if (!isPath) throw JsonError(fmt::format("\"{}\" must begin with / or ~/", key));
  if (path.find('\0') != std::string::npos) throw JsonError(fmt::format("\"{}\" holds a NUL", key));
}

void requireSound(const RuleTrigger& trigger) {
  if (trigger.folderPath && !trigger.folderPath->empty()) requirePath(*trigger.folderPath, "folderPath");
  if (trigger.minimumAgeDays.value_or(0) < 0) throw JsonError("\"minimumAgeDays\" must not be negative");
  if (trigger.minimumSizeBytes.value_or(0) < 0) throw JsonError("\"minimumSizeBytes\" must not be negative");
  if (!trigger.fileExtensions) return;
  for (const auto& extension : *trigger.fileExtensions) {
    if (extension.empty() || extension.find_first_of("./*?") != std::string::npos) {
      throw JsonError(fmt::format("\"fileExtensions\" holds \"{}\": write endings without a dot, as in \"pdf\"",
                                  shortenedToBytes(extension, 100)));
    }
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
  auto action = RuleAction::fromJson(json);
  if (action.type() == RuleAction::Type::moveToFolder) requirePath(action.path(), "path");
  return action;
}

}  // namespace

CleanupRule ruleFromText(std::string_view text) {
  const auto json = parseJson(text);
  requireKnownKeys(json, "a rule", ruleKeys);
  CleanupRule rule;
  if (optionalKey(json, "id") != nullptr) rule.id = uuidAt(json, "id");
  rule.name = trimmed(stringAt(json, "name"));
  if (rule.name.empty()) throw JsonError("\"name\" must not be empty");
  if (const auto* description = optionalKey(json, "description")) {
    rule.description = stringFrom(*description, "description");
  }
  const auto& trigger = requiredKey(json, "trigger");
  requireKnownKeys(trigger, "\"trigger\"", triggerKeys);
  rule.trigger = RuleTrigger::fromJson(trigger);
  requireSound(rule.trigger);
  rule.action = actionFrom(requiredKey(json, "action"));
  if (optionalKey(json, "isEnabled") != nullptr) rule.isEnabled = booleanAt(json, "isEnabled");
  if (optionalKey(json, "createdAt") != nullptr) rule.createdAt = dateAt(json, "createdAt");
  return rule;
}

}  // namespace orvane::cli
