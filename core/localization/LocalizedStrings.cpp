#include "core/localization/LocalizedStrings.h"

#include "core/localization/PluralCategory.h"
#include "core/localization/strings/StringTables.h"

#include <string>
#include <unordered_map>

namespace orvane {
namespace {

using Index = std::unordered_map<std::string_view, const StringRow*>;

Index makeIndex() {
  Index index;
  for (const auto table : stringTables()) {
    for (const auto& row : table) index.emplace(row.key, &row);
  }
  return index;
}

const StringRow* rowOf(std::string_view key) noexcept {
  static const Index index = makeIndex();
  const auto found = index.find(key);
  return found == index.end() ? nullptr : found->second;
}

}  // namespace

std::optional<std::string_view> LocalizedStrings::translation(AppLanguage language, std::string_view key) noexcept {
  const auto* row = rowOf(key);
  if (row == nullptr) return std::nullopt;
  const auto text = row->texts[static_cast<std::size_t>(language)];
  if (text.empty()) return std::nullopt;
  return text;
}

std::string_view LocalizedStrings::lookup(AppLanguage language, std::string_view key) noexcept {
  if (const auto text = translation(language, key)) return *text;
  return translation(AppLanguage::en, key).value_or(key);
}

std::string_view LocalizedStrings::lookup(AppLanguage language, std::string_view key, std::int64_t count) {
  const auto* row = rowOf(std::string(key) + '.' + pluralCategory(language, count));
  if (row == nullptr) row = rowOf(std::string(key) + ".other");
  return row == nullptr ? key : lookup(language, row->key);
}

std::vector<std::string_view> LocalizedStrings::keys() {
  std::vector<std::string_view> result;
  for (const auto table : stringTables()) {
    for (const auto& row : table) result.push_back(row.key);
  }
  return result;
}

}  // namespace orvane
