#include "core/plans/OfflineHeuristicParser.h"

#include "core/plans/CleaningPlanSchema.h"
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
  const Rows<const char*, Template, const char*> rows{
      {"clean screenshots", screenshot, "Downloads screenshots .png .jpg .jpeg 30d"},
      {"remove screen shots older than two weeks from my desktop", screenshot,
       "Desktop screenshots .png .jpg .jpeg 14d"},
      {"Delete Screenshot.", screenshot, "Downloads screenshots .png .jpg .jpeg 30d"},
      {"big screenshots in pictures", screenshot, "Pictures screenshots .png .jpg .jpeg 30d 500M"},
      {"screenshots and dmg files", screenshot, "Downloads screenshots .png .jpg .jpeg 30d"},
      {"sort screenshots on my desktop", organize, "Desktop screenshots .png .jpg .jpeg"},
      {"trash and sort screenshots", screenshot, "Downloads screenshots .png .jpg .jpeg 30d"},
      {"delete dmg files", installer, "Downloads oldDownloads .dmg .pkg .iso .zip 7d"},
      {"delete dmg files on the desktop", installer, "Downloads oldDownloads .dmg .pkg .iso .zip 7d"},
      {"remove setup.dmg older than a year", installer, "Downloads oldDownloads .dmg .pkg .iso .zip 365d"},
      {"installers over 3 megabytes", installer, "Downloads oldDownloads .dmg .pkg .iso .zip 7d 3M"},
      {"organise installers on my desktop", organize, "Desktop .dmg .pkg .iso"},
      {"clear caches", cachesAndLogs, "Library/Caches caches"},
      {"tidy and delete old logs", cachesAndLogs, "Library/Logs logs 30d"},
      {"logs and caches", cachesAndLogs, "Library/Caches caches logs"},
      {"logs in my documents from six months ago", cachesAndLogs, "Documents logs 180d"},
      {"sort my downloads", organize, "Downloads"},
      {"tidy my desktop", organize, "Desktop"},
      {"group old photos", organize, "Pictures 30d"},
      {"categorize huge documents", organize, "Documents 500M"},
      {"find files larger than 2 gb", reviewQuery, "Downloads largeFiles 2048M"},
      {"find big files", reviewQuery, "Downloads largeFiles 500M"},
      {"show me stuff", reviewQuery, "Downloads 200M"},
      {"", reviewQuery, "Downloads 200M"},
      {"login items", reviewQuery, "Downloads 200M"},
      {"stale stuff", reviewQuery, "Downloads 30d"},
      {"free space on my desktop", removalQuery, "Desktop 200M"},
      {"purge files of 3 days and 1 gig", removalQuery, "Downloads largeFiles 3d 1024M"},
      {"show organizer", reviewQuery, "Downloads 200M"},
      {"files of a week", reviewQuery, "Downloads 7d"},
      {"files of an year", reviewQuery, "Downloads 365d"},
      {"files of ten\tmonths", reviewQuery, "Downloads 300d"},
      {"files of 5weeks", reviewQuery, "Downloads 35d"},
      {"older than 1 day or 9 days", reviewQuery, "Downloads 1d"},
      {"files of 0 days", reviewQuery, "Downloads 0d"},
      {"files of \u0663\u0660 days", reviewQuery, "Downloads 30d"},
      {"old files of 12 daysy", reviewQuery, "Downloads 30d"},
      {"files of the last week", reviewQuery, "Downloads 200M"},
      {"3 megabytes", reviewQuery, "Downloads largeFiles 3M"},
      {"4 gigs", reviewQuery, "Downloads largeFiles 4096M"},
      {"two gigabytes", reviewQuery, "Downloads largeFiles 2048M"},
      {"7MEG", reviewQuery, "Downloads largeFiles 7M"},
      {"1.5 gb", reviewQuery, "Downloads largeFiles 5120M"},
      {"mb", reviewQuery, "Downloads largeFiles 100M"},
      {"gb or mb, big", reviewQuery, "Downloads largeFiles 1024M"},
      {"large mb", reviewQuery, "Downloads largeFiles 100M"},
      {"desktop or downloads", reviewQuery, "Downloads 200M"},
      {"photo documents", reviewQuery, "Documents 200M"},
      {"logs on the desktop", cachesAndLogs, "Desktop logs"},
      {"my DESKTOP\u00e9s", reviewQuery, "Downloads 200M"},
      {"pictures\u2026", reviewQuery, "Pictures 200M"},
  };
  for (const auto& [prompt, made, files] : rows) {
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

}  // namespace
}  // namespace orvane::test
