#include "core/base/text/Json.h"
#include "core/base/text/RegularExpression.h"
#include "core/localization/LocalizationManager.h"
#include "core/localization/LocalizedStrings.h"
#include "core/localization/ThreadSafeLanguageStore.h"
#include "platform/linux/LinuxProfile.h"
#include "tests/support/MemoryPreferences.h"
#include "tests/support/Testing.h"

#include <cstdint>

namespace orvane::test {
namespace {

TEST(LocalizedStrings, holdEveryKeyOnceInEveryLanguage) {
  std::set<std::string_view> seen;
  for (const auto key : LocalizedStrings::keys()) {
    EXPECT_TRUE(seen.insert(key).second) << key;
    for (const auto language : allAppLanguages) {
      const auto text = LocalizedStrings::translation(language, key);
      EXPECT_TRUE(text && text->find_first_not_of(' ') != std::string_view::npos) << key << ' ' << rawValue(language);
    }
  }
  EXPECT_GE(seen.size(), 45U);
}

// Where a text is left in English by oversight, it is the same as the English one.
TEST(LocalizedStrings, areTranslated) {
  // Names, signs of units, and what is no text.
  const std::set<std::string_view> alike{"app.name", "action.ok", "agent.quoted"};
  for (const auto key : LocalizedStrings::keys()) {
    if (alike.contains(key) || (key.starts_with("unit.") && key.ends_with('B'))) continue;
    const auto english = LocalizedStrings::translation(AppLanguage::en, key);
    for (const auto language : {AppLanguage::ja, AppLanguage::ko, AppLanguage::zhHans, AppLanguage::zhHant}) {
      EXPECT_NE(LocalizedStrings::translation(language, key), english) << key << ' ' << rawValue(language);
    }
  }
}

// "%1" and the like, each once.
std::set<std::string_view> placeholdersOf(std::string_view text) {
  std::set<std::string_view> found;
  for (auto at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
    const auto placeholder = text.substr(at, 2);
    if (placeholder.size() == 2 && placeholder[1] >= '1' && placeholder[1] <= '9') found.insert(placeholder);
  }
  return found;
}

TEST(LocalizedStrings, nameTheSamePlaceholdersInEveryLanguage) {
  for (const auto key : LocalizedStrings::keys()) {
    const auto expected = placeholdersOf(LocalizedStrings::lookup(AppLanguage::en, key));
    for (const auto language : allAppLanguages) {
      EXPECT_EQ(placeholdersOf(LocalizedStrings::lookup(language, key)), expected) << key << ' ' << rawValue(language);
    }
  }
}

using enum AppLanguage;

TEST(LocalizedStrings, haveTheTypographyOfTheirLanguage) {
  // no text of these languages may match the pattern
  const Rows<const char*, std::vector<AppLanguage>, std::string_view> rows{
      {"a no-break space before double signs", {fr}, R"((?<!\u00a0)([;?!»]|:(?=\s|$)))"},
      {"a no-break space within quotation marks", {fr}, R"(«(?!\u00a0))"},
      {"a no-break space before the percent sign", {fr, de, es}, R"(\d ?%(?!\d))"},
      {"a no-break space before dots that stand for words", {de}, R"((?<!\u00a0)…)"},
      {"one sign for dots", {fr, de, ja, ko, zhHans, zhHant, es}, R"(\.\.\.)"},
      {"round apostrophes", {fr}, "'"},
      {"full-width signs", {ja, zhHans, zhHant}, R"([\p{Han}\p{Hiragana}\p{Katakana}][,.;:?!(])"},
  };
  for (const auto& [name, languages, pattern] : rows) {
    const auto wrong = RegularExpression::compile(pattern);
    ASSERT_TRUE(wrong);
    for (const auto key : LocalizedStrings::keys()) {
      for (const auto language : languages) {
        const auto text = LocalizedStrings::lookup(language, key);
        EXPECT_FALSE(wrong->firstMatch(text)) << name << ", " << key << ": " << text;
      }
    }
  }
}

TEST(LocalizedStrings, followThePluralRulesOfTheLanguage) {
  const Rows<AppLanguage, std::int64_t, std::string_view> rows{
      {en, 0, "%1 rules"},
      {en, 1, "%1 rule"},
      {en, 21, "%1 rules"},
      {fr, 0, "%1 règle"},
      {fr, 1, "%1 règle"},
      {fr, 2, "%1 règles"},
      // "many" in French and Spanish, which no row is written for
      {fr, 1'000'000, "%1 règles"},
      {es, 2'000'000, "%1 reglas"},
      {es, 0, "%1 reglas"},
      {es, 1, "%1 regla"},
      {de, 0, "%1 Regeln"},
      {de, 1, "%1 Regel"},
      {ja, 1, "%1 件のルール"},
      {zhHant, 1, "%1 條規則"},
  };
  for (const auto& [language, count, text] : rows) {
    EXPECT_EQ(LocalizedStrings::lookup(language, "count.rules", count), text) << count;
  }
}

TEST(LocalizedStrings, countInTheLanguageThatHasTheKey) {
  EXPECT_EQ(LocalizedStrings::lookup(AppLanguage::de, "no.such.key", 1), "no.such.key");
  EXPECT_EQ(LocalizedStrings::lookup(AppLanguage::fr, "no.such.key"), "no.such.key");
  EXPECT_EQ(LocalizedStrings::lookup(AppLanguage::fr, "app.tagline"), "Désencombrez votre Mac sans aucun effort.");
  ThreadSafeLanguageStore::shared().setCurrentLanguage(AppLanguage::fr);
  EXPECT_EQ(localized("count.files", 0), "%1 fichier");
  ThreadSafeLanguageStore::shared().setCurrentLanguage(AppLanguage::en);
  EXPECT_EQ(localized("count.files", 0), "%1 files");
}

// A language that knows one form writes it alike in every row of a counted text.
TEST(LocalizedStrings, haveACountedTextForEveryCategory) {
  constexpr std::string_view singular = ".one";
  std::size_t counted = 0;
  for (const auto one : LocalizedStrings::keys()) {
    if (!one.ends_with(singular)) continue;
    ++counted;
    const auto other = std::string(one.substr(0, one.size() - singular.size())) + ".other";
    ASSERT_TRUE(LocalizedStrings::translation(AppLanguage::en, other)) << other;
    for (const auto language : {AppLanguage::ja, AppLanguage::ko, AppLanguage::zhHans, AppLanguage::zhHant}) {
      EXPECT_EQ(LocalizedStrings::lookup(language, one), LocalizedStrings::lookup(language, other)) << one;
    }
  }
  EXPECT_GT(counted, 20U);
}

TEST(AppLanguage, isChosenByTheLocale) {
  const Rows<AppLanguage, std::vector<std::string_view>> rows{
      {en, {"", "C.UTF-8", "pt_BR.UTF-8", "eng_US", "jap"}},
      {de, {"de", "de_AT.UTF-8@euro"}},
      {es, {"ES-mx"}},
      {zhHans, {"zh_CN", "zh-Hans-HK"}},
      {zhHant, {"zh_TW.UTF-8", "zh-hant"}},
  };
  for (const auto& [language, locales] : rows) {
    for (const auto locale : locales) EXPECT_EQ(appLanguageForLocale(locale), language) << locale;
  }
}

TEST(LocalizationManager, remembersTheLanguageAndTellsOfIt) {
  MemoryPreferences preferences;
  ThreadSafeLanguageStore store;
  {
    LocalizationManager manager(preferences, store, "fr_FR.UTF-8");
    EXPECT_EQ(manager.currentLanguage(), AppLanguage::fr);
    std::string seen;
    manager.observe([&] { seen = manager.string("nav.history"); });
    manager.setLanguage(AppLanguage::ja);
    EXPECT_EQ(seen, "履歴");
    EXPECT_EQ(store.currentLanguage(), AppLanguage::ja);
  }
  EXPECT_EQ(LocalizationManager(preferences, store, "fr_FR.UTF-8").currentLanguage(), AppLanguage::ja);
  preferences.setValue(LocalizationManager::languageKey, Json("xx"));
  EXPECT_EQ(LocalizationManager(preferences, store, "fr_FR.UTF-8").currentLanguage(), AppLanguage::fr);
}

TEST(LocalizationManager, isReadWhileTheLanguageChanges) {
  const auto german = std::string(LocalizedStrings::lookup(AppLanguage::de, "nav.overview"));
  const auto korean = std::string(LocalizedStrings::lookup(AppLanguage::ko, "nav.overview"));
  auto& store = ThreadSafeLanguageStore::shared();
  store.setCurrentLanguage(AppLanguage::de);
  std::jthread switching([&](const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      store.setCurrentLanguage(AppLanguage::ko);
      store.setCurrentLanguage(AppLanguage::de);
    }
  });
  for (int i = 0; i < 2'000; ++i) EXPECT_THAT(localized("nav.overview"), AnyOf(german, korean));
}

// Names of another system's programs and permissions, in every language of the table.
constexpr std::string_view foreignWords =
    "(?i)(?<!\\p{L})mac(?!\\p{L})|macos|(?<!\\p{L})finder(?!\\p{L})|launchd|xcode|spotlight|"
    "full disk access|accès complet au disque|festplattenvollzugriff|フルディスクアクセス|전체 디스크 접근|"
    "完全磁盘访问|完整磁碟存取|acceso total al disco|system settings|réglages système|systemeinstellungen|"
    "システム設定|시스템 설정|系统设置|系統設定|ajustes del sistema";

TEST(SystemWords, speakOfNoOtherSystem) {
  const LinuxProfile profile(XdgFolders::below("/home/somebody"));
  const ThreadSafeLanguageStore store(profile);
  const auto foreign = RegularExpression::compile(foreignWords);
  ASSERT_TRUE(foreign);
  int replaced = 0;
  for (const auto key : LocalizedStrings::keys()) {
    const auto shown = store.shownKey(key);
    if (shown != key) ++replaced;
    for (const auto language : allAppLanguages) {
      const auto text = LocalizedStrings::translation(language, shown);
      ASSERT_TRUE(text) << shown;
      EXPECT_FALSE(foreign->firstMatch(*text)) << key << ' ' << rawValue(language) << ": " << *text;
    }
  }
  EXPECT_GT(replaced, 0);
}

TEST(SystemWords, areTheGivenOnesWithoutAProfile) {
  const ThreadSafeLanguageStore store;
  for (const auto key : LocalizedStrings::keys()) EXPECT_EQ(store.shownKey(key), key);
  EXPECT_EQ(SystemProfile::none().inOwnWords("See System Settings."), "See System Settings.");
}

TEST(SystemWords, areShownByWhateverLooksUpAText) {
  auto& store = ThreadSafeLanguageStore::shared();
  store.setCurrentLanguage(AppLanguage::fr);
  EXPECT_EQ(localized("app.tagline"), "Désencombrez votre ordinateur sans aucun effort.");
  store.setCurrentLanguage(AppLanguage::en);
  MemoryPreferences preferences;
  EXPECT_EQ(LocalizationManager(preferences, store, "de").string("action.grant_permissions"), "Ordner hinzufügen");
  store.setCurrentLanguage(AppLanguage::en);
}

}  // namespace
}  // namespace orvane::test
