#pragma once

#include "core/base/text/JsonFwd.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orvane {

struct RuleTrigger;

// One condition of a rule's trigger, for all that read, check, word or edit triggers. It never places a condition where
// its value is absent, an empty list or an empty text.
struct RuleField {
  // The form in which a person writes the value.
  enum class Input : std::uint8_t {
    text,
    folder,
    categories,  // their JSON names, with commas
    number,
    megabytes,
  };

  std::string_view key;  // of the JSON form
  Input input = Input::text;
  std::string_view example = {};  // for an empty field
  // Keys of texts in the user's language: the name of the field; the condition with "%1" for its value, absent where
  // the value alone says it, counted where it is a number; and the problem with a value that can never work.
  std::string_view titleKey = {};
  std::string_view conditionKey = {};
  std::string_view problemKey = {};

  // Throws JsonError.
  void (*read)(RuleTrigger& trigger, const Json& value) = nullptr;
  // Adds the key to an object; nothing where the value is absent.
  void (*write)(const RuleTrigger& trigger, Json& object) = nullptr;
  // An English sentence that names the key; empty where the value can work.
  std::string (*problem)(const RuleTrigger& trigger) = nullptr;
  // Whether the condition keeps some files out that a rule may touch.
  bool (*narrows)(const RuleTrigger& trigger) = nullptr;
  // In English, as in "in ~/Downloads"; empty where it places no condition.
  std::string (*words)(const RuleTrigger& trigger) = nullptr;
  // As `input` has it; empty where it places no condition.
  std::string (*text)(const RuleTrigger& trigger) = nullptr;
  void (*setText)(RuleTrigger& trigger, const std::string& text) = nullptr;
  // Days or bytes; absent where it places no condition or is no number.
  std::optional<std::int64_t> (*number)(const RuleTrigger& trigger) = nullptr;
};

// In the order of RuleTrigger.
[[nodiscard]] std::span<const RuleField> ruleFields();

}  // namespace orvane
