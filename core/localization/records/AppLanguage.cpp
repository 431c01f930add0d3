#include "core/localization/records/AppLanguage.h"

#include "core/base/text/AsciiText.h"

#include <algorithm>
#include <array>

namespace orvane {
namespace {

// Scripts and regions that mean traditional characters.
constexpr std::array<std::string_view, 4> traditionalSubtags{"hant", "tw", "hk", "mo"};

bool equalsIgnoringCase(std::string_view text, std::string_view lowered) noexcept {
  return std::ranges::equal(text, lowered, {}, lowerAscii);
}

bool isSubtagEnd(char c) noexcept {
  return c == '-' || c == '_' || c == '.' || c == '@';
}

// Calls back with each subtag until it says that it is done.
template <typename IsDone>
void forEachSubtag(std::string_view locale, IsDone isDone) {
  while (!locale.empty()) {
    const auto end = static_cast<std::size_t>(std::ranges::find_if(locale, isSubtagEnd) - locale.begin());
    if (isDone(locale.substr(0, end))) return;
    // The code set and what follows say nothing of the language.
    if (end < locale.size() && (locale[end] == '.' || locale[end] == '@')) return;
    locale.remove_prefix(std::min(end + 1, locale.size()));
  }
}

AppLanguage chineseOf(std::string_view locale) noexcept {
  auto result = AppLanguage::zhHans;
  forEachSubtag(locale, [&](std::string_view subtag) {
    // A script settles it, whatever the region says.
    if (equalsIgnoringCase(subtag, "hans")) return true;
    const bool isTraditional = std::ranges::any_of(
        traditionalSubtags, [&](std::string_view traditional) { return equalsIgnoringCase(subtag, traditional); });
    if (isTraditional) result = AppLanguage::zhHant;
    return isTraditional;
  });
  return result;
}

}  // namespace

AppLanguage appLanguageForLocale(std::string_view locale) noexcept {
  const auto language =
      locale.substr(0, static_cast<std::size_t>(std::ranges::find_if(locale, isSubtagEnd) - locale.begin()));
  if (equalsIgnoringCase(language, "zh")) return chineseOf(locale);
  for (const auto candidate : allAppLanguages) {
    if (equalsIgnoringCase(language, rawValue(candidate))) return candidate;
  }
  return AppLanguage::en;
}

}  // namespace orvane
