#include "core/plans/OfflineHeuristicParser.h"

#include "core/plans/CleaningPlanSchema.h"
#include "tests/support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane {
namespace {

using Categories = std::optional<std::vector<ScanCategory>>;
using Extensions = std::optional<std::vector<std::string>>;
using enum ScanCategory;

constexpr std::int64_t mebibyte = 1'048'576;
constexpr std::int64_t gibibyte = 1'073'741'824;
constexpr std::nullopt_t absent = std::nullopt;

enum class Template : std::uint8_t { organize, screenshot, installer, cachesAndLogs, removalQuery, reviewQuery };

struct Request {
  const char* prompt;
  Template made;
  std::string folder;  // below the home folder
  Categories categories;
  Extensions extensions;
  std::optional<std::int64_t> ageDays;
  std::optional<std::int64_t> sizeBytes;
};
void PrintTo(const Request& request, std::ostream* out) {
  *out << request.prompt;
}

const Extensions pictures = std::vector<std::string>{"png", "jpg", "jpeg"};
const Extensions installers = std::vector<std::string>{"dmg", "pkg", "iso", "zip"};

struct Texts {
  PlannedAction action;
  std::string explanation;
  std::string summary;
};

Texts textsOf(const Request& request) {
  const auto age = std::to_string(request.ageDays.value_or(0));
  switch (request.made) {
    case Template::organize:
      return {PlannedAction::move,
              "Organize files directly into categorized subfolders inside " +
                  FileUrl("/" + request.folder).path().substr(1) + ".",
              "Organize " + request.folder + " into structured categories."};
    case Template::screenshot:
      return {PlannedAction::trash, "Move screenshots older than " + age + " days to Trash.",
              "Find and trash old screenshots."};
    case Template::installer:
      return {PlannedAction::trash, "Clean downloaded installer packages (.dmg, .pkg) older than " + age + " days.",
              "Clean leftover disk images and installer packages."};
    case Template::cachesAndLogs:
      return {PlannedAction::trash, "Remove safe temporary caches and log files to reclaim disk space.",
              "Reclaim space from system/user caches and logs."};
    case Template::removalQuery:
      return {PlannedAction::trash, "Trash unneeded files matching query criteria.",
              "Trash unneeded files matching query criteria."};
    case Template::reviewQuery:
      break;
  }
  return {PlannedAction::review, "Review candidate files matching query criteria.",
          "Query candidate files matching criteria for review."};
}

class OfflineParser : public testing::TestWithParam<Request> {
 protected:
  test::ScopedEnvironment home{"HOME", "/home/ann"};
};

TEST_P(OfflineParser, makesThisPlan) {
  const auto& request = GetParam();
  const auto before = ReferenceClock::now();
  const auto plan = OfflineHeuristicParser().parse(request.prompt);

  CleaningPlan expected;
  expected.id = plan.id;
  expected.createdAt = plan.createdAt;
  expected.userGoal = request.prompt;
  ASSERT_EQ(plan.steps.size(), 1U);
  auto& step = expected.steps.emplace_back();
  const auto texts = textsOf(request);
  expected.summary = texts.summary;
  step.id = plan.steps[0].id;
  step.targetFolder = "/home/ann/" + request.folder;
  step.filter = {.categories = request.categories,
                 .extensions = request.extensions,
                 .minimumAgeDays = request.ageDays,
                 .minimumSizeBytes = request.sizeBytes};
  step.action = texts.action;
  if (request.made == Template::organize) step.destinationFolder = step.targetFolder;
  step.explanation = texts.explanation;

  EXPECT_EQ(plan, expected) << plan.toJson() << "\n" << expected.toJson();
  EXPECT_TRUE(plan.isDryRun);
  EXPECT_GE(plan.createdAt, before);
  EXPECT_NE(plan.id, Uuid());
  EXPECT_NE(plan.steps[0].id, plan.id);
}

Categories only(ScanCategory category) {
  return std::vector{category};
}

INSTANTIATE_TEST_SUITE_P(Screenshots, OfflineParser,
                         testing::Values(Request{"clean screenshots", Template::screenshot, "Downloads",
                                                 only(screenshots), pictures, 30, absent},
                                         Request{"remove screen shots older than two weeks from my desktop",
                                                 Template::screenshot, "Desktop", only(screenshots), pictures, 14,
                                                 absent},
                                         Request{"Delete Screenshot.", Template::screenshot, "Downloads",
                                                 only(screenshots), pictures, 30, absent},
                                         Request{"big screenshots in pictures", Template::screenshot, "Pictures",
                                                 only(screenshots), pictures, 30, 500 * mebibyte},
                                         Request{"screenshots and dmg files", Template::screenshot, "Downloads",
                                                 only(screenshots), pictures, 30, absent},
                                         Request{"sort screenshots on my desktop", Template::organize, "Desktop",
                                                 only(screenshots), pictures, absent, absent},
                                         Request{"trash and sort screenshots", Template::screenshot, "Downloads",
                                                 only(screenshots), pictures, 30, absent}));

INSTANTIATE_TEST_SUITE_P(Installers, OfflineParser,
                         testing::Values(Request{"delete dmg files", Template::installer, "Downloads",
                                                 only(oldDownloads), installers, 7, absent},
                                         Request{"delete dmg files on the desktop", Template::installer, "Downloads",
                                                 only(oldDownloads), installers, 7, absent},
                                         Request{"remove setup.dmg older than a year", Template::installer, "Downloads",
                                                 only(oldDownloads), installers, 365, absent},
                                         Request{"installers over 3 megabytes", Template::installer, "Downloads",
                                                 only(oldDownloads), installers, 7, 3 * mebibyte},
                                         Request{"organise installers on my desktop", Template::organize, "Desktop",
                                                 absent, std::vector<std::string>{"dmg", "pkg", "iso"}, absent,
                                                 absent}));

INSTANTIATE_TEST_SUITE_P(CachesAndLogs, OfflineParser,
                         testing::Values(Request{"clear caches", Template::cachesAndLogs, "Library/Caches",
                                                 only(caches), absent, absent, absent},
                                         Request{"tidy and delete old logs", Template::cachesAndLogs, "Library/Logs",
                                                 only(logs), absent, 30, absent},
                                         Request{"logs and caches", Template::cachesAndLogs, "Library/Caches",
                                                 std::vector{caches, logs}, absent, absent, absent},
                                         Request{"logs in my documents from six months ago", Template::cachesAndLogs,
                                                 "Documents", only(logs), absent, 180, absent}));

INSTANTIATE_TEST_SUITE_P(
    Organizing, OfflineParser,
    testing::Values(Request{"sort my downloads", Template::organize, "Downloads", absent, absent, absent, absent},
                    Request{"tidy my desktop", Template::organize, "Desktop", absent, absent, absent, absent},
                    Request{"group old photos", Template::organize, "Pictures", absent, absent, 30, absent},
                    Request{"categorize huge documents", Template::organize, "Documents", absent, absent, absent,
                            500 * mebibyte}));

INSTANTIATE_TEST_SUITE_P(
    Queries, OfflineParser,
    testing::Values(
        Request{"find files larger than 2 gb", Template::reviewQuery, "Downloads", only(largeFiles), absent, absent,
                2'147'483'648},
        Request{"find big files", Template::reviewQuery, "Downloads", only(largeFiles), absent, absent, 524'288'000},
        Request{"show me stuff", Template::reviewQuery, "Downloads", absent, absent, absent, 209'715'200},
        Request{"", Template::reviewQuery, "Downloads", absent, absent, absent, 209'715'200},
        Request{"login items", Template::reviewQuery, "Downloads", absent, absent, absent, 209'715'200},
        Request{"stale stuff", Template::reviewQuery, "Downloads", absent, absent, 30, absent},
        Request{"free space on my desktop", Template::removalQuery, "Desktop", absent, absent, absent, 209'715'200},
        Request{"purge files of 3 days and 1 gig", Template::removalQuery, "Downloads", only(largeFiles), absent, 3,
                gibibyte},
        Request{"show organizer", Template::reviewQuery, "Downloads", absent, absent, absent, 209'715'200}));

INSTANTIATE_TEST_SUITE_P(
    Quantities, OfflineParser,
    testing::Values(
        Request{"files of a week", Template::reviewQuery, "Downloads", absent, absent, 7, absent},
        Request{"files of an year", Template::reviewQuery, "Downloads", absent, absent, 365, absent},
        Request{"files of ten\tmonths", Template::reviewQuery, "Downloads", absent, absent, 300, absent},
        Request{"files of 5weeks", Template::reviewQuery, "Downloads", absent, absent, 35, absent},
        Request{"older than 1 day or 9 days", Template::reviewQuery, "Downloads", absent, absent, 1, absent},
        Request{"files of 0 days", Template::reviewQuery, "Downloads", absent, absent, 0, absent},
        Request{"files of \u0663\u0660 days", Template::reviewQuery, "Downloads", absent, absent, 30, absent},
        Request{"old files of 12 daysy", Template::reviewQuery, "Downloads", absent, absent, 30, absent},
        Request{"files of the last week", Template::reviewQuery, "Downloads", absent, absent, absent, 200 * mebibyte},
        Request{"3 megabytes", Template::reviewQuery, "Downloads", only(largeFiles), absent, absent, 3'145'728},
        Request{"4 gigs", Template::reviewQuery, "Downloads", only(largeFiles), absent, absent, 4 * gibibyte},
        Request{"two gigabytes", Template::reviewQuery, "Downloads", only(largeFiles), absent, absent, 2 * gibibyte},
        Request{"7MEG", Template::reviewQuery, "Downloads", only(largeFiles), absent, absent, 7 * mebibyte},
        Request{"1.5 gb", Template::reviewQuery, "Downloads", only(largeFiles), absent, absent, 5 * gibibyte},
        Request{"mb", Template::reviewQuery, "Downloads", only(largeFiles), absent, absent, 104'857'600},
        Request{"gb or mb, big", Template::reviewQuery, "Downloads", only(largeFiles), absent, absent, gibibyte},
        Request{"large mb", Template::reviewQuery, "Downloads", only(largeFiles), absent, absent, 100 * mebibyte}));

INSTANTIATE_TEST_SUITE_P(
    Folders, OfflineParser,
    testing::Values(
        Request{"desktop or downloads", Template::reviewQuery, "Downloads", absent, absent, absent, 200 * mebibyte},
        Request{"photo documents", Template::reviewQuery, "Documents", absent, absent, absent, 200 * mebibyte},
        Request{"logs on the desktop", Template::cachesAndLogs, "Desktop", only(logs), absent, absent, absent},
        Request{"my DESKTOP\u00e9s", Template::reviewQuery, "Downloads", absent, absent, absent, 200 * mebibyte},
        Request{"pictures\u2026", Template::reviewQuery, "Pictures", absent, absent, absent, 200 * mebibyte}));

class OfflineParserAlone : public testing::Test {
 protected:
  test::ScopedEnvironment home{"HOME", "/home/ann"};
  OfflineHeuristicParser parser;
};

TEST_F(OfflineParserAlone, usesTheManagedFolderWhereTheRequestNamesNone) {
  const FileUrl managed("/data/scans");
  EXPECT_EQ(parser.parse("find big files", managed).steps[0].targetFolder, "/data/scans");
  EXPECT_EQ(parser.parse("find big documents", managed).steps[0].targetFolder, "/home/ann/Documents");
  EXPECT_EQ(parser.parse("delete pkgs", managed).steps[0].targetFolder, "/home/ann/Downloads");
  const auto organize = parser.parse("sort old things", managed);
  EXPECT_EQ(organize.steps[0].destinationFolder, "/data/scans");
  EXPECT_EQ(organize.steps[0].explanation, "Organize files directly into categorized subfolders inside scans.");
  EXPECT_EQ(organize.summary, "Organize scans into structured categories.");
}

TEST_F(OfflineParserAlone, keepsTheGoalAsTypedButTrimmed) {
  EXPECT_EQ(parser.parse(" \n\u3000Find BIG  files\t\r\n").userGoal, "Find BIG  files");
}

TEST_F(OfflineParserAlone, returnsAnOrganizeRequestWithoutCriteriaThatValidationRejects) {
  const auto fault = CleaningPlanSchema::firstFault(parser.parse("sort my downloads"));
  ASSERT_TRUE(fault);
  EXPECT_EQ(*fault, PlanValidationError(PlanValidationError::InvalidFilterCriteria{}));
  EXPECT_FALSE(CleaningPlanSchema::firstFault(parser.parse("sort screenshots on my desktop")));
}

using OfflineParserDeath = OfflineParserAlone;

TEST_F(OfflineParserDeath, endsTheProcessBeforeANumberWraps) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH((void)parser.parse("older than 9223372036854775807 weeks"), "overflow");
  EXPECT_DEATH((void)parser.parse("older than 99999999999999999999 days"), "overflow");
  EXPECT_DEATH((void)parser.parse("larger than 8589934592 gb"), "overflow");
  EXPECT_EQ(parser.parse("larger than 8589934591 gb").steps[0].filter.minimumSizeBytes, 8'589'934'591 * gibibyte);
}

}  // namespace
}  // namespace orvane
