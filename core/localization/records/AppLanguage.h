#pragma once

#include "core/base/values/EnumTable.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// The languages of the interface, in the order in which they are offered.
enum class AppLanguage : std::uint8_t { en, fr, de, ja, ko, zhHans, zhHant, es };

struct AppLanguageRow {
  AppLanguage value;
  std::string_view rawValue;    // its tag as in BCP 47, which is also how it is stored
  std::string_view nativeName;  // its own name for itself
};

inline constexpr EnumTable appLanguages({
    AppLanguageRow{AppLanguage::en, "en", "English"},
    AppLanguageRow{AppLanguage::fr, "fr", "Français"},
    AppLanguageRow{AppLanguage::de, "de", "Deutsch"},
    AppLanguageRow{AppLanguage::ja, "ja", "日本語"},
    AppLanguageRow{AppLanguage::ko, "ko", "한국어"},
    AppLanguageRow{AppLanguage::zhHans, "zh-Hans", "简体中文"},
    AppLanguageRow{AppLanguage::zhHant, "zh-Hant", "繁體中文"},
    AppLanguageRow{AppLanguage::es, "es", "Español"},
});
inline constexpr auto allAppLanguages = appLanguages.values();
inline constexpr auto appLanguageTags = appLanguages.rawValues();

constexpr std::string_view rawValue(AppLanguage language) noexcept {
  return appLanguages[language].rawValue;
}
// The language of exactly this tag.
constexpr std::optional<AppLanguage> appLanguageFromRawValue(std::string_view tag) noexcept {
  return appLanguages.find(tag);
}
constexpr std::string_view nativeName(AppLanguage language) noexcept {
  return appLanguages[language].nativeName;
}

// The language that suits a locale, as POSIX or BCP 47 name it ("de_AT.UTF-8", "zh-TW"); English for any other.
[[nodiscard]] AppLanguage appLanguageForLocale(std::string_view locale) noexcept;

}  // namespace orvane
