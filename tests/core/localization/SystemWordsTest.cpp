#include "core/base/text/RegularExpression.h"
#include "core/localization/LocalizationManager.h"
#include "core/localization/LocalizedStrings.h"
#include "core/localization/ThreadSafeLanguageStore.h"
#include "platform/linux/LinuxProfile.h"
#include "tests/support/MemoryPreferences.h"
#include "tests/support/Testing.h"

namespace orvane::test {
namespace {

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
