#include "core/rules/records/RuleTrigger.h"

#include "core/base/files/PathText.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <tuple>
#include <utility>

namespace orvane {
namespace {

using namespace std::string_view_literals;
using Texts = std::vector<std::string>;
using Categories = std::vector<ScanCategory>;

std::string extensionsProblem(const Texts& extensions, std::string_view key) {
  constexpr std::size_t quotedBytes = 100;
  for (const auto& extension : extensions) {
    if (extension.empty() || extension.find_first_of("./*?\0"sv) != std::string::npos) {
      return fmt::format("\"{}\" holds \"{}\": write endings without a dot, as in \"pdf\"", key,
                         shortenedToBytes(extension, quotedBytes));
    }
  }
  return {};
}

std::string numberProblem(const std::int64_t& number, std::string_view key) {
  return number < 0 ? fmt::format("\"{}\" must not be negative", key) : std::string();
}

std::string categoryNames(const Categories& categories) {
  std::vector<std::string_view> names;
  for (const auto category : categories) names.push_back(displayName(category));
  return fmt::format("{}", fmt::join(names, " or "));
}

template <typename Value>
struct Field {
  std::string_view key;
  std::optional<Value> RuleTrigger::*member;
  Value (*read)(const Json& json, std::string_view key);
  std::string (*problem)(const Value& value, std::string_view key);  // null where every value can work
  std::string (*words)(const Value& value);
};
constexpr std::tuple triggerFields{
    Field<std::string>{"folderPath", &RuleTrigger::folderPath, stringFrom, rulePathProblem,
                       [](const auto& path) { return "in " + path; }},
    Field<Texts>{"fileExtensions", &RuleTrigger::fileExtensions, stringsFrom, extensionsProblem,
                 [](const auto& extensions) { return fmt::format(".{}", fmt::join(extensions, " .")); }},
    Field<Categories>{"categories", &RuleTrigger::categories, scanCategoriesFrom, nullptr, categoryNames},
    Field<std::int64_t>{"minimumAgeDays", &RuleTrigger::minimumAgeDays, integerFrom, numberProblem,
                        [](const auto& days) { return fmt::format("{} days old", days); }},
    Field<std::int64_t>{"minimumSizeBytes", &RuleTrigger::minimumSizeBytes, integerFrom, numberProblem,
                        [](const auto& bytes) { return formatByteCount(bytes) + " or more"; }},
    Field<std::string>{"namePattern", &RuleTrigger::namePattern, stringFrom, nullptr,
                       [](const auto& pattern) { return "named *" + pattern + "*"; }},
};

template <typename Visit>
void forEachField(Visit visit) {
  std::apply([&](const auto&... field) { (visit(field), ...); }, triggerFields);
}

// Calls back with each field that places a condition, and its value.
template <typename Visit>
void forEachCondition(const RuleTrigger& trigger, Visit visit) {
  forEachField([&](const auto& field) {
    const auto& value = trigger.*field.member;
    if (!value) return;
    if constexpr (requires { value->empty(); }) {
      if (value->empty()) return;
    }
    visit(field, *value);
  });
}

}  // namespace

std::string rulePathProblem(const std::string& path, std::string_view key) {
  const bool isPath = path.starts_with('/') || path == "~" || path.starts_with("~/");
  if (!isPath) return fmt::format("\"{}\" must begin with / or ~/", key);
  if (path.find('\0') != std::string::npos) return fmt::format("\"{}\" holds a NUL", key);
  return {};
}

std::vector<RuleTrigger::Problem> RuleTrigger::problems() const {
  std::vector<Problem> result;
  forEachCondition(*this, [&](const auto& field, const auto& value) {
    if (field.problem == nullptr) return;
    if (auto text = field.problem(value, field.key); !text.empty()) result.push_back({field.key, std::move(text)});
  });
  return result;
}

std::vector<std::string> RuleTrigger::conditions() const {
  std::vector<std::string> result;
  forEachCondition(*this, [&](const auto& field, const auto& value) { result.push_back(field.words(value)); });
  return result;
}

std::span<const std::string_view> RuleTrigger::keys() {
  static constexpr auto all = std::apply([](const auto&... field) { return std::array{field.key...}; }, triggerFields);
  return all;
}

Json RuleTrigger::toJson() const {
  Json json = Json::object();
  forEachField([&](const auto& field) {
    if (const auto& value = this->*field.member) json[field.key] = *value;
  });
  return json;
}

RuleTrigger RuleTrigger::fromJson(const Json& json) {
  RuleTrigger trigger;
  forEachField([&](const auto& field) {
    if (const auto* value = optionalKey(json, field.key)) trigger.*field.member = field.read(*value, field.key);
  });
  return trigger;
}

}  // namespace orvane
