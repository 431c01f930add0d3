#pragma once

#include "core/localization/records/AppLanguage.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

class Preferences;
class ThreadSafeLanguageStore;

// The language of the interface: what the screens observe, and what is remembered between starts. Belongs to the main
// thread; other threads use localized().
class LocalizationManager {
 public:
  static constexpr std::string_view languageKey = "OrvaneLanguage";

  // Starts with the remembered language, else with the one that suits `systemLocale`.
  LocalizationManager(Preferences& preferences, ThreadSafeLanguageStore& store, std::string_view systemLocale);
  static LocalizationManager& shared();

  [[nodiscard]] AppLanguage currentLanguage() const noexcept { return m_currentLanguage; }
  // Takes effect at once for every thread, then tells the observers, then remembers the language. Throws
  // std::system_error when it cannot be remembered; it holds for this process all the same.
  void setLanguage(AppLanguage language);
  // Its two halves, for whoever must not wait for the disk: the first for the main thread, the second for any other.
  void useLanguage(AppLanguage language);
  void rememberLanguage(AppLanguage language) const;
  // As remembered now, by whichever process; the current one where none is. From any thread.
  [[nodiscard]] AppLanguage rememberedLanguage() const;
  // The text for a key in the current language: else the English one, else the key itself.
  [[nodiscard]] std::string string(std::string_view key) const;

  // Called after each change, for as long as the manager lives.
  void observe(std::function<void()> whenChanged);

 private:
  Preferences& m_preferences;
  ThreadSafeLanguageStore& m_store;
  AppLanguage m_currentLanguage;
  std::vector<std::function<void()>> m_observers;
};

// The text for a key in the current language, from any thread.
[[nodiscard]] std::string localized(std::string_view key);

// The text for a count of things in the current language, from any thread; "%1" stays for the number.
[[nodiscard]] std::string localized(std::string_view key, std::int64_t count);

// The locale that the environment asks for texts in: LC_ALL, else LC_MESSAGES, else LANG, else empty.
[[nodiscard]] std::string environmentLocale();

}  // namespace orvane
