#include "core/plans/glossary/TranslatedPrompt.h"

#include "core/base/files/HomeFolder.h"
#include "core/plans/OfflineHeuristicParser.h"
#include "core/plans/PromptReading.h"
#include "tests/support/Testing.h"

#include <fmt/format.h>

namespace orvane::test {
namespace {

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

TEST(TranslatedPrompt, isWrittenInWordsThatTheTablesKnow) {
  const Rows<const char*, const char*> rows{
      {"LÖSCHE GROSSE DATEIEN", "delete large files"},
      {"loesche grosse Dateien", "delete large files"},
      {"lo\u0308sche gro\u00DFe Dateien", "delete large files"},
      {"elimina las imagenes mas antiguas", "delete pictures older"},
      {"キャッシュを削除", "caches delete"},
      {"キャッシュを　削除", "caches delete"},
      {"ｷｬｯｼｭを削除", "caches delete"},
      {"２ＧＢ以上のファイルを削除", "over 2 gb files delete"},
      {"바탕 화면 스크린샷 삭제", "desktop screenshots delete"},
      {"Dokumenteordner leeren", "documents clear"},
      {"Logarithmen löschen", "Logarithmen delete"},
      {"räum die Logs auf", "clean logs"},
      {"räum die Dokumente auf", "tidy documents"},
      {"vide la corbeille", "empty trash"},
      {"supprime node_modules et setup-v2.dmg", "delete node_modules and setup-v2.dmg"},
      {"カスタム名前のファイルを削除", "カスタム files delete"},
      {"不要删除一切照片", "don't delete all pictures"},
      // A number counts only where its unit follows, and a bound only where it is one from below.
      {"supprime un fichier", "delete files"},
      {"Dateien über 1,5 GB löschen", "files over 1536 mb delete"},
      {"Dateien über 1.024 MB löschen", "files over 1024 mb delete"},
      {"supprime 3 fichiers du jour", "delete 3 files day"},
      {"borra los 3 del mes", "delete 3, month"},
      {"Screenshots unter 2 MB löschen", "screenshots under 2 mb delete"},
      {"elimina logs de menos de un mes", "delete logs under 1 month"},
      {"2GB未満のファイルを削除", "2 gb under files delete"},
      {"三個月前的日誌", "3 month older logs"},
      {"Logs, drei Monate alt, weg", "logs 3 month old delete"},
      // A number of several words is read whole, or a word of it stays, which nobody knows: never the end of it alone.
      {"删除四十天前的截图", "delete 40 day older screenshots"},
      {"刪除三十五天前的螢幕截圖", "delete 35 day older screenshots"},
      {"删除一百二十天前的截图", "delete 120 day older screenshots"},
      {"删除一千零五天前的截图", "delete 1005 day older screenshots"},
      {"二十五日以上前のログを削除", "25 day older logs delete"},
      {"删除二三天前的截图", "delete 二 3 day older screenshots"},
      {"删除一百五天前的截图", "delete 一百 5 day older screenshots"},
      {"logs de plus de vingt-cinq jours", "logs over vingt 5 day"},
      {"logs de plus de soixante-quinze jours", "logs over soixante 15 day"},
      {"logs de más de cuarenta y cinco días", "logs over cuarenta and 5 day"},
      {"logs de más de mil quinientos días", "logs over mil 500 day"},
      {"이십오 일 지난 로그", "이 over 15 day logs"},
      // Names of another language in an English request make it no other request.
      {"Delete photos of Los Angeles", "Delete photos of Los Angeles"},
      {"clear the cache", "clear the cache"},
      {"remove old logs of die-hard", "remove old logs of die-hard"},
      {"sort downloads", "sort downloads"},
      {"cache", "cache"},
      {"hello there", "hello there"},
      {"", ""},
      {"\xff\xfe", "\xff\xfe"},
  };
  for (const auto& [prompt, text] : rows) EXPECT_EQ(TranslatedPrompt::of(prompt).text(), text) << prompt;
}

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
}  // namespace orvane::test
