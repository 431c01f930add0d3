#include "core/plans/glossary/TranslatedPrompt.h"

#include "core/base/files/HomeFolder.h"
#include "core/plans/OfflineHeuristicParser.h"
#include "core/plans/PromptReading.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace orvane {
namespace {

using testing::IsEmpty;

struct MeantRequest {
  AppLanguage language;
  std::string prompt;
  std::string meant;  // a plan as planText() writes it, or another answer
};

std::vector<MeantRequest> meantRequests() {
  std::ifstream file(ORVANE_REQUESTS);
  std::vector<MeantRequest> requests;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('#')) continue;
    std::stringstream fields(line);
    MeantRequest request;
    std::string tag;
    std::string kind;
    std::getline(fields, tag, '|');
    std::getline(fields, kind, '|');
    std::getline(fields, request.prompt, '|');
    std::getline(fields, request.meant);
    request.language = appLanguageFromRawValue(tag).value();
    requests.push_back(std::move(request));
  }
  return requests;
}

// As in "trash ~/Desktop screenshots 14d 500M".
std::string planText(const CleaningPlan& plan) {
  const auto& step = plan.steps.front();
  auto folder = step.targetFolder;
  if (folder.starts_with(homeFolder())) folder.replace(0, homeFolder().size(), "~");
  auto text = fmt::format("{} {}", rawValue(step.action), folder);
  for (const auto category : step.filter.categories.value_or(std::vector<ScanCategory>())) {
    text += fmt::format(" {}", rawValue(category));
  }
  if (step.filter.minimumAgeDays) text += fmt::format(" {}d", *step.filter.minimumAgeDays);
  if (step.filter.minimumSizeBytes) text += fmt::format(" {}M", *step.filter.minimumSizeBytes / 1'048'576);
  return text;
}

CleaningPlan planFor(const std::string& prompt, AppLanguage window) {
  const auto words = TranslatedPrompt::of(prompt, window).text();
  return OfflineHeuristicParser().parse(prompt, PromptReading::of(words));
}

TEST(TranslatedRequests, becomeThePlansThatAreMeantInAnyWindow) {
  std::size_t plans = 0;
  for (const auto& request : meantRequests()) {
    if (!request.meant.starts_with("trash") && !request.meant.starts_with("review") &&
        !request.meant.starts_with("move")) {
      continue;
    }
    ++plans;
    // The parser plans for the first of several folders.
    auto meant = request.meant;
    if (const auto others = meant.find(",~/"); others != std::string::npos) {
      meant.erase(others, meant.find(' ', others) - others);
    }
    for (const auto window : {request.language, AppLanguage::en, AppLanguage::ja}) {
      const auto plan = planFor(request.prompt, window);
      EXPECT_EQ(planText(plan), meant) << request.prompt << " in a window in " << rawValue(window);
      EXPECT_EQ(plan.userGoal, request.prompt);
    }
  }
  EXPECT_GE(plans, 100U);
}

struct TranslatedWords {
  const char* prompt;
  const char* text;
};
void PrintTo(const TranslatedWords& words, std::ostream* out) {
  *out << words.prompt;
}
class TranslatedPromptText : public testing::TestWithParam<TranslatedWords> {};

TEST_P(TranslatedPromptText, isWhatTheTablesKnow) {
  EXPECT_EQ(TranslatedPrompt::of(GetParam().prompt).text(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Spelling, TranslatedPromptText,
                         testing::Values(TranslatedWords{"LÖSCHE GROSSE DATEIEN", "delete large files"},
                                         TranslatedWords{"loesche grosse Dateien", "delete large files"},
                                         TranslatedWords{"lo\u0308sche gro\u00DFe Dateien", "delete large files"},
                                         TranslatedWords{"elimina las imagenes mas antiguas", "delete pictures older"},
                                         TranslatedWords{"キャッシュを削除", "caches delete"},
                                         TranslatedWords{"キャッシュを　削除", "caches delete"},
                                         TranslatedWords{"ｷｬｯｼｭを削除", "caches delete"},
                                         TranslatedWords{"２ＧＢ以上のファイルを削除", "over 2 gb files delete"},
                                         TranslatedWords{"바탕 화면 스크린샷 삭제", "desktop screenshots delete"}));

INSTANTIATE_TEST_SUITE_P(Words, TranslatedPromptText,
                         testing::Values(TranslatedWords{"Dokumenteordner leeren", "documents clear"},
                                         TranslatedWords{"Logarithmen löschen", "Logarithmen delete"},
                                         TranslatedWords{"räum die Logs auf", "clean logs"},
                                         TranslatedWords{"räum die Dokumente auf", "tidy documents"},
                                         TranslatedWords{"vide la corbeille", "empty trash"},
                                         TranslatedWords{"supprime node_modules et setup-v2.dmg",
                                                         "delete node_modules and setup-v2.dmg"},
                                         TranslatedWords{"カスタム名前のファイルを削除", "カスタム files delete"},
                                         TranslatedWords{"不要删除一切照片", "don't delete all pictures"}));

// A number counts only where its unit follows, and a bound only where it is one from below.
INSTANTIATE_TEST_SUITE_P(
    Quantities, TranslatedPromptText,
    testing::Values(TranslatedWords{"supprime un fichier", "delete files"},
                    TranslatedWords{"Dateien über 1,5 GB löschen", "files over 1536 mb delete"},
                    TranslatedWords{"Dateien über 1.024 MB löschen", "files over 1024 mb delete"},
                    TranslatedWords{"supprime 3 fichiers du jour", "delete 3 files day"},
                    TranslatedWords{"borra los 3 del mes", "delete 3, month"},
                    TranslatedWords{"Screenshots unter 2 MB löschen", "screenshots under 2 mb delete"},
                    TranslatedWords{"elimina logs de menos de un mes", "delete logs under 1 month"},
                    TranslatedWords{"2GB未満のファイルを削除", "2 gb under files delete"},
                    TranslatedWords{"三個月前的日誌", "3 month older logs"},
                    TranslatedWords{"Logs, drei Monate alt, weg", "logs 3 month old delete"}));

// A number of several words is read whole, or a word of it stays, which nobody knows: never the end of it alone.
INSTANTIATE_TEST_SUITE_P(
    LongNumbers, TranslatedPromptText,
    testing::Values(TranslatedWords{"删除四十天前的截图", "delete 40 day older screenshots"},
                    TranslatedWords{"刪除三十五天前的螢幕截圖", "delete 35 day older screenshots"},
                    TranslatedWords{"删除一百二十天前的截图", "delete 120 day older screenshots"},
                    TranslatedWords{"删除一千零五天前的截图", "delete 1005 day older screenshots"},
                    TranslatedWords{"二十五日以上前のログを削除", "25 day older logs delete"},
                    TranslatedWords{"删除二三天前的截图", "delete 二 3 day older screenshots"},
                    TranslatedWords{"删除一百五天前的截图", "delete 一百 5 day older screenshots"},
                    TranslatedWords{"logs de plus de vingt-cinq jours", "logs over vingt 5 day"},
                    TranslatedWords{"logs de plus de soixante-quinze jours", "logs over soixante 15 day"},
                    TranslatedWords{"logs de más de cuarenta y cinco días", "logs over cuarenta and 5 day"},
                    TranslatedWords{"logs de más de mil quinientos días", "logs over mil 500 day"},
                    TranslatedWords{"이십오 일 지난 로그", "이 over 15 day logs"}));

// Names of another language in an English request make it no other request.
INSTANTIATE_TEST_SUITE_P(
    English, TranslatedPromptText,
    testing::Values(TranslatedWords{"Delete photos of Los Angeles", "Delete photos of Los Angeles"},
                    TranslatedWords{"clear the cache", "clear the cache"},
                    TranslatedWords{"remove old logs of die-hard", "remove old logs of die-hard"},
                    TranslatedWords{"sort downloads", "sort downloads"}, TranslatedWords{"cache", "cache"},
                    TranslatedWords{"hello there", "hello there"}, TranslatedWords{"", ""},
                    TranslatedWords{"\xff\xfe", "\xff\xfe"}));

TEST(TranslatedPrompt, readsEnglishAsItIsInEveryWindow) {
  for (const auto window : allAppLanguages) {
    for (const auto* prompt : {"delete screenshots older than two weeks", "installer", "Tidy my desktop", "photos",
                               "remove a 2gb file on my desktop, please", "uninstall Zoom"}) {
      const auto translated = TranslatedPrompt::of(prompt, window);
      EXPECT_EQ(translated.text(), prompt);
      EXPECT_EQ(translated.language(), AppLanguage::en);
      EXPECT_EQ(translated.typed({2, 3}), (TextSpan{2, 3}));
    }
  }
}

TEST(TranslatedPrompt, takesTheLanguageOfTheWindowWhereSeveralKnowTheWords) {
  EXPECT_EQ(TranslatedPrompt::of("清空垃圾桶", AppLanguage::zhHant).language(), AppLanguage::zhHant);
  EXPECT_EQ(TranslatedPrompt::of("清空垃圾桶", AppLanguage::zhHans).language(), AppLanguage::zhHans);
  EXPECT_EQ(TranslatedPrompt::of("elimina la caché", AppLanguage::es).language(), AppLanguage::es);
}

TEST(TranslatedPrompt, knowsWhereEachWordComesFrom) {
  const std::string prompt = "Räum Bildschirmfotos, älter als zwei Wochen, weg";
  const auto translated = TranslatedPrompt::of(prompt);
  ASSERT_EQ(translated.text(), "clean screenshots older than 2 week delete");
  const auto typed = [&](std::string_view words) {
    return std::string(translated.typed({translated.text().find(words), words.size()}).in(prompt));
  };
  EXPECT_EQ(typed("clean"), "Räum");
  EXPECT_EQ(typed("screenshots"), "Bildschirmfotos");
  EXPECT_EQ(typed("2 week"), "zwei Wochen");
  EXPECT_EQ(typed("delete"), "weg");
  EXPECT_EQ(translated.typed({translated.text().size(), 0}), TextSpan());
}

TEST(TranslatedPrompt, leavesALongTextAlone) {
  std::string prompt;
  while (prompt.size() < 1'000'000) prompt += "lösche ein ";
  EXPECT_EQ(TranslatedPrompt::of(prompt).text(), prompt);
}

}  // namespace
}  // namespace orvane
