#include "core/localization/LocalizationManager.h"

#include "core/base/text/Json.h"
#include "core/localization/LocalizedStrings.h"
#include "core/localization/ThreadSafeLanguageStore.h"
#include "core/platform/Preferences.h"

#include <array>
#include <cstdlib>
#include <utility>

namespace orvane {
namespace {

AppLanguage rememberedOr(const Preferences& preferences, AppLanguage otherwise) {
  const auto stored = preferences.value(LocalizationManager::languageKey);
  if (!stored || !stored->is_string()) return otherwise;
  return appLanguageFromRawValue(stored->get<std::string>()).value_or(otherwise);
}

}  // namespace

LocalizationManager::LocalizationManager(Preferences& preferences, ThreadSafeLanguageStore& store,
                                         std::string_view systemLocale)
    : m_preferences(preferences),
      m_store(store),
      m_currentLanguage(rememberedOr(preferences, appLanguageForLocale(systemLocale))) {
  m_store.setCurrentLanguage(m_currentLanguage);
}

AppLanguage LocalizationManager::rememberedLanguage() const {
  return rememberedOr(m_preferences, m_store.currentLanguage());
}

void LocalizationManager::setLanguage(AppLanguage language) {
  useLanguage(language);
  rememberLanguage(language);
}

void LocalizationManager::useLanguage(AppLanguage language) {
  m_store.setCurrentLanguage(language);
  m_currentLanguage = language;
  for (const auto& observer : m_observers) observer();
}

void LocalizationManager::rememberLanguage(AppLanguage language) const {
  m_preferences.setValue(languageKey, Json(rawValue(language)));
}

std::string LocalizationManager::string(std::string_view key) const {
  return std::string(LocalizedStrings::lookup(m_currentLanguage, m_store.shownKey(key)));
}

void LocalizationManager::observe(std::function<void()> whenChanged) {
  m_observers.push_back(std::move(whenChanged));
}

std::string localized(std::string_view key) {
  const auto& store = ThreadSafeLanguageStore::shared();
  return std::string(LocalizedStrings::lookup(store.currentLanguage(), store.shownKey(key)));
}

std::string localized(std::string_view key, std::int64_t count) {
  const auto& store = ThreadSafeLanguageStore::shared();
  return std::string(LocalizedStrings::lookup(store.currentLanguage(), store.shownKey(key), count));
}

std::string environmentLocale() {
  for (const char* name : std::array{"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return {};
}

}  // namespace orvane
