#include "core/plans/OfflineHeuristicParser.h"

#include "core/plans/CleaningPlanSchema.h"
#include "core/plans/PromptReading.h"
#include "tests/support/TemporaryTree.h"

#include <fmt/format.h>

namespace orvane::test {
namespace {

enum class Template : std::uint8_t { organize, screenshot, installer, cachesAndLogs, removalQuery, reviewQuery };
using enum Template;

struct Texts {
  PlannedAction action;
  std::string explanation;
  std::string summary;
};

Texts textsOf(Template made, const std::string& folder, const std::string& age) {
  switch (made) {
    case organize:
      return {PlannedAction::move, "Organize files directly into categorized subfolders inside " + folder + ".",
              "Organize " + folder + " into structured categories."};
    case screenshot:
      return {PlannedAction::trash, "Move screenshots older than " + age + " days to Trash.",
              "Find and trash old screenshots."};
    case installer:
      return {PlannedAction::trash, "Clean downloaded installer packages (.dmg, .pkg) older than " + age + " days.",
              "Clean leftover disk images and installer packages."};
    case cachesAndLogs:
      return {PlannedAction::trash, "Remove safe temporary caches and log files to reclaim disk space.",
              "Reclaim space from system/user caches and logs."};
    case removalQuery:
      return {PlannedAction::trash, "Trash unneeded files matching query criteria.",
              "Trash unneeded files matching query criteria."};
    case reviewQuery:
      break;
  }
  return {PlannedAction::review, "Review candidate files matching query criteria.",
          "Query candidate files matching criteria for review."};
}

// The files that a step takes, as in "Desktop screenshots .png 14d 500M".
std::string taken(const CleaningPlanStep& step) {
  constexpr std::int64_t mebibyte = 1'048'576;
  auto text = step.targetFolder.substr(std::string_view("/home/ann/").size());
  for (const auto category : step.filter.categories.value_or(std::vector<ScanCategory>())) {
    text += fmt::format(" {}", rawValue(category));
  }
  for (const auto& extension : step.filter.extensions.value_or(std::vector<std::string>())) text += " ." + extension;
  if (step.filter.minimumAgeDays) text += fmt::format(" {}d", *step.filter.minimumAgeDays);
  if (const auto size = step.filter.minimumSizeBytes) {
    EXPECT_EQ(*size % mebibyte, 0);
    text += fmt::format(" {}M", *size / mebibyte);
  }
  return text;
}

class OfflineParser : public testing::Test {
 protected:
  ScopedEnvironment home{"HOME", "/home/ann"};
  OfflineHeuristicParser parser;
};

TEST_F(OfflineParser, makesAPlanOfOneStep) {
  const Rows<Template, const char*, std::vector<const char*>> rows{
      {screenshot,
       "Downloads screenshots .png .jpg .jpeg 30d",
       {"clean screenshots", "Delete Screenshot.", "screenshots and dmg files", "trash and sort screenshots"}},
      {screenshot,
       "Desktop screenshots .png .jpg .jpeg 14d",
       {"remove screen shots older than two weeks from my desktop"}},
      {screenshot, "Pictures screenshots .png .jpg .jpeg 30d 500M", {"big screenshots in pictures"}},
      {organize, "Desktop screenshots .png .jpg .jpeg", {"sort screenshots on my desktop"}},
      {installer,
       "Downloads oldDownloads .dmg .pkg .iso .zip 7d",
       {"delete dmg files", "delete dmg files on the desktop"}},
      {installer, "Downloads oldDownloads .dmg .pkg .iso .zip 365d", {"remove setup.dmg older than a year"}},
      {installer, "Downloads oldDownloads .dmg .pkg .iso .zip 7d 3M", {"installers over 3 megabytes"}},
      {organize, "Desktop .dmg .pkg .iso", {"organise installers on my desktop"}},
      {cachesAndLogs, "Library/Caches caches", {"clear caches"}},
      {cachesAndLogs, "Library/Logs logs 30d", {"tidy and delete old logs"}},
      {cachesAndLogs, "Library/Caches caches logs", {"logs and caches"}},
      {cachesAndLogs, "Documents logs 180d", {"logs in my documents from six months ago"}},
      {organize, "Downloads", {"sort my downloads"}},
      {organize, "Desktop", {"tidy my desktop"}},
      {organize, "Pictures 30d", {"group old photos"}},
      {organize, "Documents 500M", {"categorize huge documents"}},
      {reviewQuery, "Downloads largeFiles 2048M", {"find files larger than 2 gb", "two gigabytes"}},
      {reviewQuery, "Downloads largeFiles 500M", {"find big files"}},
      {reviewQuery,
       "Downloads 200M",
       {"show me stuff", "", "login items", "show organizer", "files of the last week", "desktop or downloads",
        "my DESKTOP\u00e9s"}},
      {reviewQuery, "Downloads 30d", {"stale stuff", "files of \u0663\u0660 days", "old files of 12 daysy"}},
      {removalQuery, "Desktop 200M", {"free space on my desktop"}},
      {removalQuery, "Downloads largeFiles 3d 1024M", {"purge files of 3 days and 1 gig"}},
      {reviewQuery, "Downloads 7d", {"files of a week"}},
      {reviewQuery, "Downloads 365d", {"files of an year"}},
      {reviewQuery, "Downloads 300d", {"files of ten\tmonths"}},
      {reviewQuery, "Downloads 35d", {"files of 5weeks"}},
      {reviewQuery, "Downloads 1d", {"older than 1 day or 9 days"}},
      {reviewQuery, "Downloads 0d", {"files of 0 days"}},
      {reviewQuery, "Downloads largeFiles 3M", {"3 megabytes"}},
      {reviewQuery, "Downloads largeFiles 4096M", {"4 gigs"}},
      {reviewQuery, "Downloads largeFiles 7M", {"7MEG"}},
      {reviewQuery, "Downloads largeFiles 5120M", {"1.5 gb"}},
      {reviewQuery, "Downloads largeFiles 100M", {"mb", "large mb"}},
      {reviewQuery, "Downloads largeFiles 1024M", {"gb or mb, big"}},
      {reviewQuery, "Documents 200M", {"photo documents"}},
      {cachesAndLogs, "Desktop logs", {"logs on the desktop"}},
      {reviewQuery, "Pictures 200M", {"pictures\u2026"}},
  };
  const auto expectPlan = [&](const std::string& prompt, Template made, const std::string& files) {
    SCOPED_TRACE(prompt);
    const auto before = ReferenceClock::now();
    const auto plan = parser.parse(prompt);
    ASSERT_EQ(plan.steps.size(), 1U);
    const auto& step = plan.steps.front();
    const auto folder = step.targetFolder.substr(std::string_view("/home/ann/").size());
    const auto texts = textsOf(made, folder, std::to_string(step.filter.minimumAgeDays.value_or(0)));
    EXPECT_EQ(taken(step), files);
    EXPECT_FALSE(step.filter.nameContains);
    EXPECT_EQ(step.action, texts.action);
    EXPECT_EQ(step.explanation, texts.explanation);
    EXPECT_EQ(step.destinationFolder, made == organize ? std::optional(step.targetFolder) : std::nullopt);
    EXPECT_EQ(plan.summary, texts.summary);
    EXPECT_EQ(plan.userGoal, prompt);
    EXPECT_TRUE(plan.isDryRun);
    EXPECT_GE(plan.createdAt, before);
    EXPECT_NE(plan.id, Uuid());
    EXPECT_NE(step.id, plan.id);
  };
  for (const auto& [made, files, prompts] : rows) {
    for (const auto* prompt : prompts) expectPlan(prompt, made, files);
  }
}

TEST_F(OfflineParser, usesTheManagedFolderWhereTheRequestNamesNone) {
  const FileUrl managed("/data/scans");
  EXPECT_EQ(parser.parse("find big files", managed).steps[0].targetFolder, "/data/scans");
  EXPECT_EQ(parser.parse("find big documents", managed).steps[0].targetFolder, "/home/ann/Documents");
  EXPECT_EQ(parser.parse("delete pkgs", managed).steps[0].targetFolder, "/home/ann/Downloads");
  const auto sorting = parser.parse("sort old things", managed);
  EXPECT_EQ(sorting.steps[0].destinationFolder, "/data/scans");
  EXPECT_EQ(sorting.steps[0].explanation, "Organize files directly into categorized subfolders inside scans.");
  EXPECT_EQ(sorting.summary, "Organize scans into structured categories.");
}

TEST_F(OfflineParser, keepsTheGoalAsTypedButTrimmed) {
  EXPECT_EQ(parser.parse(" \n\u3000Find BIG  files\t\r\n").userGoal, "Find BIG  files");
}

TEST_F(OfflineParser, returnsAnOrganizeRequestWithoutCriteriaThatValidationRejects) {
  const auto fault = CleaningPlanSchema::firstFault(parser.parse("sort my downloads"));
  ASSERT_TRUE(fault);
  EXPECT_EQ(*fault, PlanValidationError(PlanValidationError::InvalidFilterCriteria{}));
  EXPECT_FALSE(CleaningPlanSchema::firstFault(parser.parse("sort screenshots on my desktop")));
}

using OfflineParserDeath = OfflineParser;

TEST_F(OfflineParserDeath, endsTheProcessBeforeANumberWraps) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH((void)parser.parse("older than 9223372036854775807 weeks"), "overflow");
  EXPECT_DEATH((void)parser.parse("older than 99999999999999999999 days"), "overflow");
  EXPECT_DEATH((void)parser.parse("larger than 8589934592 gb"), "overflow");
  EXPECT_EQ(parser.parse("larger than 8589934591 gb").steps[0].filter.minimumSizeBytes, 8'589'934'591 * 1'073'741'824);
}

std::string textOf(std::string_view prompt, const PromptReading& reading) {
  std::string text;
  for (const auto& word : reading.words) {
    if (!text.empty()) text += "|";
    text += fmt::format("{}:{}{}", word.span.in(prompt),
                        word.meaning == WordMeaning::none ? "" : rawValue(word.meaning), word.counts ? "" : "!");
  }
  return text;
}

TEST(PromptReading, tellsWhatEachWordBecame) {
  // "text:meaning", separated by "|"; "!" for a word that does not count
  const Rows<const char*, const char*> rows{
      {"", ""},
      {"Delete the LOGS, older than a month!", "Delete:removal|the:|LOGS:logs|older:age|than:|a month:age"},
      {"remove screen shots of setup.dmg", "remove:removal|screen shots:screenshots|of:|setup:|dmg:installers"},
      {"big files over 1.5 gb or 3mb", "big:size|files:|over:|1:|5 gb:size|or:|3mb:"},
      {"mb and gb", "mb:size!|and:|gb:size"},
      {"photos in downloads", "photos:folder!|in:|downloads:folder"},
      {"don't sort login items", "don:|t:|sort:organizing|login:|items:"},
      // Characters that change their length in lower case, and bytes that are no text.
      {"İİ LOGS older", "İ:|İ:|LOGS:logs|older:age"},
      {"Ⱥ \xff LOGS", "Ⱥ:|LOGS:logs"},
  };
  for (const auto& [prompt, words] : rows) EXPECT_EQ(textOf(prompt, PromptReading::of(prompt)), words);
}

}  // namespace
}  // namespace orvane::test
