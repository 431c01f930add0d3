#include "core/localization/PluralCategory.h"

#include <unicode/plurrule.h>

#include <array>
#include <memory>

namespace orvane {
namespace {

using RulesOfLanguages = std::array<std::unique_ptr<icu::PluralRules>, allAppLanguages.size()>;

RulesOfLanguages makeRules() {
  RulesOfLanguages rules;
  for (const auto language : allAppLanguages) {
    UErrorCode status = U_ZERO_ERROR;
    const auto locale = icu::Locale::forLanguageTag(rawValue(language), status);
    rules[static_cast<std::size_t>(language)].reset(icu::PluralRules::forLocale(locale, status));
  }
  return rules;
}

}  // namespace

std::string pluralCategory(AppLanguage language, std::int64_t count) {
  static const auto rules = makeRules();
  const auto& ofLanguage = rules[static_cast<std::size_t>(language)];
  std::string category;
  // Without ICU's data there are no rules.
  if (!ofLanguage) return "other";
  return ofLanguage->select(static_cast<double>(count)).toUTF8String(category);
}

}  // namespace orvane
