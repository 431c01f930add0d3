#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// The languages of the interface, in the order in which they are offered.
enum class AppLanguage : std::uint8_t { en, fr, de, ja, ko, zhHans, zhHant, es };

inline constexpr std::array allAppLanguages{
    AppLanguage::en, AppLanguage::fr,     AppLanguage::de,     AppLanguage::ja,
    AppLanguage::ko, AppLanguage::zhHans, AppLanguage::zhHant, AppLanguage::es,
};

// Their tags as in BCP 47.
inline constexpr std::array<std::string_view, allAppLanguages.size()> appLanguageTags{
    "en", "fr", "de", "ja", "ko", "zh-Hans", "zh-Hant", "es",
};

// The language's tag, which is also how it is stored: "zh-Hans".
[[nodiscard]] std::string_view rawValue(AppLanguage language) noexcept;
// The language of exactly this tag.
[[nodiscard]] std::optional<AppLanguage> appLanguageFromRawValue(std::string_view tag) noexcept;

// The language's own name for itself.
[[nodiscard]] std::string_view nativeName(AppLanguage language) noexcept;

// The language that suits a locale, as POSIX or BCP 47 name it ("de_AT.UTF-8", "zh-TW"); English for any other.
[[nodiscard]] AppLanguage appLanguageForLocale(std::string_view locale) noexcept;

}  // namespace orvane
