#include "core/rules/records/RuleTrigger.h"

#include "core/base/text/Json.h"
#include "core/rules/records/RuleFields.h"

#include <fmt/format.h>

#include <utility>

namespace orvane {

std::string rulePathProblem(const std::string& path, std::string_view key) {
  const bool isPath = path.starts_with('/') || path == "~" || path.starts_with("~/");
  if (!isPath) return fmt::format("\"{}\" must begin with / or ~/", key);
  if (path.find('\0') != std::string::npos) return fmt::format("\"{}\" holds a NUL", key);
  return {};
}

std::vector<std::string> RuleTrigger::conditions() const {
  std::vector<std::string> result;
  for (const auto& field : ruleFields()) {
    if (auto words = field.words(*this); !words.empty()) result.push_back(std::move(words));
  }
  return result;
}

Json RuleTrigger::toJson() const {
  Json json = Json::object();
  for (const auto& field : ruleFields()) field.write(*this, json);
  return json;
}

RuleTrigger RuleTrigger::fromJson(const Json& json) {
  RuleTrigger trigger;
  for (const auto& field : ruleFields()) {
    if (const auto* value = optionalKey(json, field.key)) field.read(trigger, *value);
  }
  return trigger;
}

}  // namespace orvane
