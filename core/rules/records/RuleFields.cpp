#include "core/rules/records/RuleFields.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/rules/records/RuleTrigger.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace orvane {
namespace {

using namespace std::string_view_literals;
using Texts = std::vector<std::string>;
using Categories = std::vector<ScanCategory>;

constexpr std::int64_t bytesPerMegabyte = 1'000'000;
constexpr std::string_view listSeparators = ",; \t\r\n";

// --- folders

// A folder condition is the plain beginning of a path: one that the home folder begins with lets everything in it pass.
bool folderNarrows(const std::string& folder) {
  const auto beginning = standardizedPath(expandedHome(folder));
  const auto home = homeFolder();
  return !home.starts_with(beginning) && !canonicalPath(home).starts_with(beginning);
}

// --- texts and lists of them

std::string asWritten(const std::string& text) {
  return text;
}

std::optional<std::string> textFrom(const std::string& text) {
  auto result = trimmed(text);
  return result.empty() ? std::nullopt : std::optional(std::move(result));
}

Texts partsOf(std::string_view text) {
  Texts parts;
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(listSeparators), text.size()));
    if (text.empty()) return parts;
    const auto end = std::min(text.find_first_of(listSeparators), text.size());
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(end);
  }
}

template <typename List>
std::optional<List> listOrNone(List list) {
  return list.empty() ? std::nullopt : std::optional(std::move(list));
}

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

std::string extensionsText(const Texts& extensions) {
  return fmt::format("{}", fmt::join(extensions, ", "));
}

// A dot before an ending is forgiven.
std::optional<Texts> extensionsFrom(const std::string& text) {
  auto extensions = partsOf(text);
  for (auto& extension : extensions) {
    if (extension.starts_with('.')) extension.erase(0, 1);
  }
  return listOrNone(std::move(extensions));
}

// --- categories

// Items labelled manual match no rule, so that their category may be missing.
bool categoriesNarrow(const Categories& categories) {
  return std::ranges::any_of(allScanCategories, [&](ScanCategory category) {
    return defaultRisk(category) != RiskLabel::manual && std::ranges::find(categories, category) == categories.end();
  });
}

std::string categoryWords(const Categories& categories) {
  std::vector<std::string_view> names;
  for (const auto category : categories) names.push_back(displayName(category));
  return fmt::format("{}", fmt::join(names, " or "));
}

std::string categoriesText(const Categories& categories) {
  std::vector<std::string_view> names;
  for (const auto category : categories) names.push_back(rawValue(category));
  return fmt::format("{}", fmt::join(names, ", "));
}

std::optional<Categories> categoriesFrom(const std::string& text) {
  Categories categories;
  for (const auto& part : partsOf(text)) {
    if (const auto category = scanCategoryFromRawValue(part)) categories.push_back(*category);
  }
  return listOrNone(std::move(categories));
}

// --- numbers

std::string numberProblem(const std::int64_t& number, std::string_view key) {
  return number < 0 ? fmt::format("\"{}\" must not be negative", key) : std::string();
}

bool numberNarrows(const std::int64_t& number) {
  return number > 0;
}

std::string numberText(const std::int64_t& number) {
  return std::to_string(number);
}

std::optional<std::int64_t> numberFrom(const std::string& text) {
  std::int64_t number = 0;
  const auto digits = trimmed(text);
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return error == std::errc() ? std::optional(number) : std::nullopt;
}

std::string megabytesText(const std::int64_t& bytes) {
  return std::to_string(bytes / bytesPerMegabyte + (bytes % bytesPerMegabyte >= bytesPerMegabyte / 2 ? 1 : 0));
}

std::optional<std::int64_t> megabytesFrom(const std::string& text) {
  const auto number = numberFrom(text);
  constexpr auto maxMegabytes = std::numeric_limits<std::int64_t>::max() / bytesPerMegabyte;
  return number ? std::optional(std::clamp<std::int64_t>(*number, 0, maxMegabytes) * bytesPerMegabyte) : std::nullopt;
}

// --- the table

// The part of a field that depends on the type of its value.
template <typename Value>
struct FieldRow {
  RuleField field;
  std::optional<Value> RuleTrigger::*member;
  Value (*read)(const Json& json, std::string_view key);
  std::string (*problem)(const Value& value, std::string_view key);  // null where every value can work
  bool (*narrows)(const Value& value);                               // null where every value narrows
  std::string (*words)(const Value& value);
  std::string (*text)(const Value& value);
  std::optional<Value> (*fromText)(const std::string& text);
};

// clang-format off: a field a paragraph
constexpr std::tuple fieldRows{
    FieldRow<std::string>{{.key = "folderPath",
                           .input = RuleField::Input::folder,
                           .example = "~/Downloads",
                           .titleKey = "rules.folder",
                           .problemKey = "rules.folder_missing"},
                          &RuleTrigger::folderPath,
                          stringFrom,
                          rulePathProblem,
                          folderNarrows,
                          [](const auto& path) { return "in " + path; },
                          asWritten,
                          textFrom},
    FieldRow<Texts>{{.key = "fileExtensions",
                     .example = "dmg, pkg, iso",
                     .titleKey = "rules.extensions",
                     .problemKey = "rules.extension_wrong"},
                    &RuleTrigger::fileExtensions,
                    stringsFrom,
                    extensionsProblem,
                    nullptr,
                    [](const auto& extensions) { return fmt::format(".{}", fmt::join(extensions, " .")); },
                    extensionsText,
                    extensionsFrom},
    FieldRow<Categories>{{.key = "categories", .input = RuleField::Input::categories, .titleKey = "rules.categories"},
                         &RuleTrigger::categories,
                         scanCategoriesFrom,
                         nullptr,
                         categoriesNarrow,
                         categoryWords,
                         categoriesText,
                         categoriesFrom},
    FieldRow<std::int64_t>{{.key = "minimumAgeDays",
                            .input = RuleField::Input::number,
                            .titleKey = "rules.minimum_age",
                            .conditionKey = "rules.older_than",
                            .problemKey = "rules.number_negative"},
                           &RuleTrigger::minimumAgeDays,
                           integerFrom,
                           numberProblem,
                           numberNarrows,
                           [](const auto& days) { return fmt::format("{} days old", days); },
                           numberText,
                           numberFrom},
    FieldRow<std::int64_t>{{.key = "minimumSizeBytes",
                            .input = RuleField::Input::megabytes,
                            .titleKey = "rules.minimum_size",
                            .conditionKey = "rules.larger_than",
                            .problemKey = "rules.number_negative"},
                           &RuleTrigger::minimumSizeBytes,
                           integerFrom,
                           numberProblem,
                           numberNarrows,
                           [](const auto& bytes) { return formatByteCount(bytes) + " or more"; },
                           megabytesText,
                           megabytesFrom},
    FieldRow<std::string>{{.key = "namePattern", .titleKey = "rules.pattern", .conditionKey = "rules.name_contains"},
                          &RuleTrigger::namePattern,
                          stringFrom,
                          nullptr,
                          nullptr,
                          [](const auto& pattern) { return "named *" + pattern + "*"; },
                          asWritten,
                          textFrom},
};
// clang-format on

// Null where the trigger has no such condition.
template <typename Value>
const Value* conditionIn(const RuleTrigger& trigger, const FieldRow<Value>& row) {
  const auto& value = trigger.*row.member;
  if (!value) return nullptr;
  if constexpr (requires { value->empty(); }) {
    if (value->empty()) return nullptr;
  }
  return &*value;
}

template <typename Value>
std::string sayCondition(const RuleTrigger& trigger, const FieldRow<Value>& row, std::string (*say)(const Value&)) {
  const auto* value = conditionIn(trigger, row);
  return value == nullptr ? std::string() : say(*value);
}

template <std::size_t at>
constexpr const auto& rowAt = std::get<at>(fieldRows);

template <std::size_t at>
constexpr RuleField fieldAt() {
  auto field = rowAt<at>.field;
  field.read = [](RuleTrigger& trigger, const Json& value) {
    trigger.*rowAt<at>.member = rowAt<at>.read(value, rowAt<at>.field.key);
  };
  field.write = [](const RuleTrigger& trigger, Json& object) {
    if (const auto& value = trigger.*rowAt<at>.member) object[rowAt<at>.field.key] = *value;
  };
  field.problem = [](const RuleTrigger& trigger) {
    const auto* value = conditionIn(trigger, rowAt<at>);
    const auto problem = rowAt<at>.problem;
    return value == nullptr || problem == nullptr ? std::string() : problem(*value, rowAt<at>.field.key);
  };
  field.narrows = [](const RuleTrigger& trigger) {
    const auto* value = conditionIn(trigger, rowAt<at>);
    const auto narrows = rowAt<at>.narrows;
    return value != nullptr && (narrows == nullptr || narrows(*value));
  };
  field.words = [](const RuleTrigger& trigger) { return sayCondition(trigger, rowAt<at>, rowAt<at>.words); };
  field.text = [](const RuleTrigger& trigger) { return sayCondition(trigger, rowAt<at>, rowAt<at>.text); };
  field.setText = [](RuleTrigger& trigger, const std::string& text) {
    trigger.*rowAt<at>.member = rowAt<at>.fromText(text);
  };
  field.number = [](const RuleTrigger& trigger) -> std::optional<std::int64_t> {
    const auto& value = trigger.*rowAt<at>.member;
    if constexpr (std::is_same_v<std::remove_cvref_t<decltype(value)>, std::optional<std::int64_t>>) return value;
    return std::nullopt;
  };
  return field;
}

template <std::size_t... at>
constexpr auto allFields(std::index_sequence<at...> /*positions*/) {
  return std::array{fieldAt<at>()...};
}

}  // namespace

std::span<const RuleField> ruleFields() {
  static constexpr auto fields = allFields(std::make_index_sequence<std::tuple_size_v<decltype(fieldRows)>>());
  return fields;
}

}  // namespace orvane
