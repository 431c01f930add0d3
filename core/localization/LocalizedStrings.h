#pragma once

#include "core/localization/records/AppLanguage.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// One text of the interface: the key, and the text in every language, in the order of AppLanguage. A row without a
// language does not compile into anything but an empty text, which the tests refuse.
struct StringRow {
  std::string_view key;
  std::array<std::string_view, allAppLanguages.size()> texts;
};

// The table of the interface's texts. UTF-8.
class LocalizedStrings {
 public:
  LocalizedStrings() = delete;

  // The text for a key in a language: else the English text, else the key itself.
  [[nodiscard]] static std::string_view lookup(AppLanguage language, std::string_view key) noexcept;
  // The text for a count of things, which stands in the row `key`.CATEGORY for the count's plural category, or in
  // `key`.other where the table has no such row.
  [[nodiscard]] static std::string_view lookup(AppLanguage language, std::string_view key, std::int64_t count);
  // The language's own text, or absent.
  [[nodiscard]] static std::optional<std::string_view> translation(AppLanguage language, std::string_view key) noexcept;
  // Every key, in the order of the table.
  [[nodiscard]] static std::vector<std::string_view> keys();
};

}  // namespace orvane
