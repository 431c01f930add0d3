#include "app/common/Format.h"
#include "app/common/Text.h"
#include "app/shell/LanguageModel.h"
#include "app/shell/TableTranslator.h"
#include "core/localization/LocalizedStrings.h"
#include "core/organizer/records/CloudProvider.h"
#include "core/platform/SystemApplications.h"
#include "core/safety/records/ManagedFolderType.h"
#include "core/scanning/records/ScanCategory.h"
#include "tests/app/WindowFixture.h"

#include <QDateTime>

#include <algorithm>
#include <array>
#include <filesystem>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <tuple>

namespace orvane::test {
namespace {

std::set<std::string> textKeys() {
  const auto keys = LocalizedStrings::keys();
  return {keys.begin(), keys.end()};
}

// Every first group of the pattern in the files of a folder with one of these extensions.
std::set<std::string> mentioned(const std::string& folder, const std::set<std::string>& extensions,
                                const std::regex& pattern) {
  std::set<std::string> result;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(ORVANE_SOURCES "/" + folder)) {
    if (!extensions.contains(entry.path().extension())) continue;
    const auto text = contentOf(entry.path());
    for (std::sregex_iterator found(text.begin(), text.end(), pattern); found != std::sregex_iterator(); ++found) {
      result.insert((*found)[1]);
    }
  }
  return result;
}

TEST(Texts, areThereForEveryKeyThatTheScreensAndTheModelsName) {
  const auto keys = textKeys();
  const auto inScreens = mentioned("app", {".qml"}, std::regex(R"re(qsTr\(\s*"([^"]+)"\s*\))re"));
  ASSERT_GT(inScreens.size(), 40U);
  for (const auto& key : inScreens) EXPECT_TRUE(keys.contains(key)) << key;
  for (const auto& key : mentioned("app", {".qml"}, std::regex(R"re(Texts\.counted\(\s*"([^"]+)")re"))) {
    EXPECT_TRUE(keys.contains(key + ".one") && keys.contains(key + ".other")) << key;
  }
  const std::regex quotedKey(R"re("([a-z]+\.[a-z][a-zA-Z_]*(?:\.[a-z]+)*)")re");
  const auto inModels = mentioned("app", {".cpp", ".h"}, quotedKey);
  ASSERT_GT(inModels.size(), 30U);
  for (const auto& key : inModels) {
    if (key.starts_with("org.")) continue;  // names on the message bus
    const bool isCounted = keys.contains(key + ".one") && keys.contains(key + ".other");
    EXPECT_TRUE(keys.contains(key) || isCounted) << key;
  }
  for (const auto category : allScanCategories) {
    for (const std::string prefix : {"category.", "reason."}) {
      EXPECT_TRUE(keys.contains(prefix + std::string(rawValue(category)))) << rawValue(category);
    }
  }
  for (int kind = 0; kind <= static_cast<int>(SystemApplication::Kind::package); ++kind) {
    const std::string name(rawValue(static_cast<SystemApplication::Kind>(kind)));
    EXPECT_TRUE(keys.contains("apps.kind." + name)) << name;
  }
  for (const auto* unit : {"KB", "MB", "GB", "TB", "PB", "EB"}) {
    EXPECT_TRUE(keys.contains(std::string("unit.") + unit)) << unit;
  }
}

// Texts that no one sees are translated and kept in step for nothing.
TEST(Texts, areShownSomewhere) {
  // Of the given set, with no place in the window's layout.
  const std::set<std::string> unshown{"action.clean", "dashboard.disk_usage"};
  // The first part of keys that end in the name of a category, a risk, a unit or a kind of application.
  const std::array<std::string_view, 5> composed{"category.", "reason.", "risk.", "unit.", "apps.kind."};
  const std::regex quoted(R"re("([a-z]+\.[a-zA-Z_.]+)")re");
  auto named = mentioned("app", {".cpp", ".h", ".qml"}, quoted);
  for (const auto* folder : {"platform", "core/rules", "core/tasks"}) named.merge(mentioned(folder, {".cpp"}, quoted));
  for (const auto& key : textKeys()) {
    if (std::ranges::any_of(composed, [&](auto prefix) { return key.starts_with(prefix); })) continue;
    const bool isNamed = named.contains(key) || named.contains(key.substr(0, key.rfind('.')));
    EXPECT_NE(isNamed, unshown.contains(key)) << key;
  }
}

TEST(Icons, areDrawnForEverySymbolThatTheCoreNames) {
  std::set<std::string_view> symbols;
  for (const auto category : allScanCategories) symbols.insert(systemImage(category));
  for (const auto type : allManagedFolderTypes) symbols.insert(systemImage(type));
  for (const auto provider : allCloudProviders) symbols.insert(systemImage(provider));
  for (const auto symbol : symbols) {
    const auto file = std::string(ORVANE_SOURCES "/app/icons/").append(symbol).append(".svg");
    EXPECT_TRUE(std::filesystem::is_regular_file(file)) << symbol;
  }
}

class LanguageTest : public WindowFixture {
 public:
  ~LanguageTest() override { speak(AppLanguage::en); }
  static void speak(AppLanguage language) {
    WindowFixture::speak(language);
    Format::followLanguage();
  }
  [[nodiscard]] AppLanguage remembered() {
    return LocalizationManager(preferences, ThreadSafeLanguageStore::shared(), "en").currentLanguage();
  }
};

TEST_F(LanguageTest, changesEverywhereAtOnceAndIsRemembered) {
  LanguageModel model(localization);
  const TableTranslator translator;
  ASSERT_EQ(model.rowCount(), 8);
  EXPECT_EQ(translator.translate("Main", "nav.overview", nullptr, -1), "Overview");
  int changes = 0;
  QObject::connect(&model, &LanguageModel::currentChanged, [&] { ++changes; });
  model.select("fr");
  model.select("fr");
  model.select("xx");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(model.currentCode(), "fr");
  EXPECT_EQ(translator.translate("Main", "nav.overview", nullptr, -1), "Aperçu");
  // A text that is no key stays as it is.
  EXPECT_TRUE(translator.translate("Main", "some words", nullptr, -1).isNull());
  EXPECT_TRUE(becomesTrue([&] { return remembered() == AppLanguage::fr; }));
}

TEST_F(LanguageTest, followsWhatAnotherProcessChoseAndNeverUndoesTheUsersOwnChoice) {
  LanguageModel model(localization);
  LocalizationManager(preferences, ThreadSafeLanguageStore::shared(), "en").rememberLanguage(AppLanguage::ja);
  model.reload();
  EXPECT_TRUE(becomesTrue([&] { return model.currentCode() == "ja"; }));
  // The file's change is noticed before the newest choice is on the disk.
  std::vector<std::string> codes;
  QObject::connect(&model, &LanguageModel::currentChanged, [&] { codes.push_back(model.currentCode().toStdString()); });
  model.select("de");
  model.select("ko");
  model.reload();
  ASSERT_TRUE(becomesTrue([&] { return remembered() == AppLanguage::ko; }));
  EXPECT_EQ(model.currentCode(), "ko");
  EXPECT_EQ(codes, (std::vector<std::string>{"de", "ko"}));
}

TEST_F(LanguageTest, writesFiguresAsTheLanguageDoes) {
  const ScopedEnvironment all("LC_ALL", "en_US.UTF-8");
  for (const auto& [language, bytes, text] :
       {std::tuple{AppLanguage::en, 0, "Zero KB"}, std::tuple{AppLanguage::en, 1, "1 byte"},
        std::tuple{AppLanguage::en, 1'250'000'000, "1.25\u00a0GB"},
        std::tuple{AppLanguage::de, 1'250'000'000, "1,25\u00a0GB"},
        std::tuple{AppLanguage::fr, 1'250'000'000, "1,25\u00a0Go"}}) {
    speak(language);
    EXPECT_EQ(Format::bytes(bytes).toStdString(), text);
  }
  speak(AppLanguage::de);
  EXPECT_EQ(Format::count(1234567), "1.234.567");
  EXPECT_EQ(Format::percent(0.25), "25\u00a0%");
}

TEST_F(LanguageTest, countsInWords) {
  speak(AppLanguage::fr);
  EXPECT_EQ(countedText("count.runs", 0), "0 opération");
  EXPECT_EQ(countedText("count.runs", 1234), "1\u202f234 opérations");
  EXPECT_EQ(Format::counted("rules.run_enabled", 1), "Lancer 1 règle");
  EXPECT_EQ(Format::counted("rules.status", 1).arg(countedText("count.rules", 12)), "12 règles, dont 1 active");
  EXPECT_EQ(countedText("apps.result", 1).arg("Gimp", "2 Mo"),
            "Gimp et 1 de ses résidus mis à la corbeille, 2 Mo en tout.");
}

TEST_F(LanguageTest, tellsAgesInWords) {
  const auto noon = QDateTime(QDate::currentDate(), QTime(12, 0));
  for (const auto& [days, english, japanese] :
       {std::tuple{0, "today", "今日"}, std::tuple{1, "yesterday", "昨日"}, std::tuple{2, "2 days ago", "2 日前"},
        std::tuple{21, "3 weeks ago", "3 週間前"}, std::tuple{430, "14 months ago", "14 か月前"}}) {
    const auto then = static_cast<double>(noon.addDays(-days).toMSecsSinceEpoch());
    speak(AppLanguage::en);
    EXPECT_EQ(Format::age(then).toStdString(), english);
    speak(AppLanguage::ja);
    EXPECT_EQ(Format::age(then).toStdString(), japanese);
  }
  EXPECT_TRUE(Format::age(0).isEmpty());
}

TEST_F(LanguageTest, headsDaysByNameAndThenByDate) {
  const ScopedEnvironment all("LC_ALL", "en_US.UTF-8");
  for (const auto& [language, date, head] :
       {std::tuple{AppLanguage::en, "2026-03-01", "Today"}, std::tuple{AppLanguage::en, "2026-02-28", "Yesterday"},
        std::tuple{AppLanguage::en, "2026-02-27", "Friday, February 27, 2026"},
        std::tuple{AppLanguage::en, "2026-03-02", "Monday, March 2, 2026"},
        std::tuple{AppLanguage::de, "2026-02-28", "Gestern"},
        std::tuple{AppLanguage::de, "2026-02-27", "Freitag, 27. Februar 2026"},
        std::tuple{AppLanguage::fr, "2026-02-27", "Vendredi 27 février 2026"},
        std::tuple{AppLanguage::ja, "2026-02-27", "2026年2月27日金曜日"}}) {
    speak(language);
    EXPECT_EQ(Format::dayHead(date, "2026-03-01").toStdString(), head);
  }
  const auto afternoon = QDateTime(QDate(2026, 2, 27), QTime(17, 39)).toMSecsSinceEpoch();
  EXPECT_EQ(Format::time(static_cast<double>(afternoon)), "17:39");
}

}  // namespace
}  // namespace orvane::test
