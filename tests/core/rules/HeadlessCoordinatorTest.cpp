#include "core/organizer/tidy/AutoOrganizer.h"
#include "core/rules/schedule/HeadlessCoordinator.h"
#include "core/rules/schedule/ScheduleCoordinator.h"
#include "core/rules/services/UserNotificationService.h"
#include "tests/support/CleanupRules.h"
#include "tests/support/MemoryPreferences.h"
#include "tests/support/RecordingCenter.h"
#include "tests/support/TaskFixture.h"
#include "tests/support/TimeZone.h"

namespace orvane::test {
namespace {

// One key of which cannot be written.
class FailingPreferences : public MemoryPreferences {
 public:
  void update(std::string_view name, const std::function<Json(const Json*)>& change) override {
    if (name == failsFor) throw std::runtime_error("disk full");
    MemoryPreferences::update(name, change);
  }
  std::string_view failsFor;
};

class HeadlessCoordinatorTest : public TaskFixture {
 public:
  HeadlessCoordinatorTest() {
    for (const auto& rule : rules.getRules()) rules.toggleRule(rule.id, false);
    rules.addOrUpdateRule(ruleFor("Logs", {.fileExtensions = {{"log"}}}));
  }
  // A file that is long there.
  [[nodiscard]] std::string arrive(std::string_view name) const {
    const auto path = tree.file("Downloads/" + std::string(name));
    setAge(path, 3000 * 86400.0);
    return path;
  }
  // Scheduled cleanups are on, and the last one was so long ago.
  void lastRun(std::chrono::seconds ago, ScheduleFrequency frequency = Daily{}) {
    schedule.changeSettings([&](ScheduleSettings& settings) {
      settings.isEnabled = true;
      settings.frequency = frequency;
      settings.lastRunDate = now - ago;
    });
  }
  void tidyUp() {
    tidySettings.update([&](AutoOrganizeSettings& settings) {
      settings.isEnabled = true;
      settings.folderPaths = {tree.path("Downloads")};
    });
  }

  FailingPreferences stored;
  RecordingCenter center;
  std::string console;
  UserNotificationService notifications{center, [](std::string_view) {}};
  Date now = dateFromUnix(1'700'000'000);
  std::chrono::seconds waited{0};
  SmallVolume volume;
  ScheduleCoordinator schedule{
      {.preferences = stored, .tasks = taskServices(), .notificationService = notifications, .now = [this] {
         return now;
       }}};
  AutoOrganizer tidier{taskServices()};
  HeadlessCoordinator headless{{.schedule = schedule,
                                .tidySettings = tidySettings,
                                .autoOrganizer = tidier,
                                .notificationCenter = center,
                                .volume = volume,
                                .home = FileUrl(tree.path()),
                                .console = [this](std::string_view line) { console += line; },
                                .wait =
                                    [this](std::chrono::seconds time) {
                                      waited += time;
                                      now += time;
                                    }}};
};

TEST_F(HeadlessCoordinatorTest, namesTheRuleThatItLeavesOut) {
  rules.addOrUpdateRule(ruleFor("Everything", {}));
  const auto log = arrive("old.log");
  const auto picture = arrive("holiday.jpg");
  lastRun(std::chrono::hours(48));
  headless.carryOut();
  EXPECT_FALSE(exists(log));
  EXPECT_TRUE(exists(picture));
  EXPECT_THAT(console, StartsWith("Rule 'Everything' is left out: "));
}

TEST_F(HeadlessCoordinatorTest, cleansWhenARunIsDueAndTidiesWhereThatIsOn) {
  const auto log = arrive("old.log");
  const auto picture = arrive("holiday.jpg");
  headless.carryOut();
  EXPECT_TRUE(exists(log)) << "nothing is on";
  EXPECT_TRUE(exists(picture));

  lastRun(std::chrono::hours(48));
  tidyUp();
  EXPECT_TRUE(headless.carryOut());
  EXPECT_FALSE(exists(log));
  EXPECT_FALSE(exists(picture));
  EXPECT_TRUE(exists(tree.path("Downloads/Sorted")));
  EXPECT_EQ(tidySettings.get().lastRunMovedCount, 1);
  EXPECT_EQ(center.posted.size(), 1U);
  EXPECT_EQ(center.awaited, 2);
  EXPECT_EQ(waited.count(), 0);
  EXPECT_EQ(console, "");
}

TEST_F(HeadlessCoordinatorTest, waitsForARunThatIsAlmostDue) {
  const auto log = arrive("old.log");
  // A day after the last run was started, which took five minutes.
  lastRun(std::chrono::hours(24) - std::chrono::minutes(5));
  headless.carryOut();
  EXPECT_FALSE(exists(log));
  EXPECT_EQ(waited, std::chrono::minutes(5));
}

// The timer comes at 10:00 UTC, which is noon before clocks go back and eleven after.
TEST_F(HeadlessCoordinatorTest, acceptsTheTimersStartWhenSummerTimeEnds) {
  struct Row {
    ScheduleFrequency frequency;
    int days;
  };
  inTimeZone("Europe/Berlin", [&] {
    const auto start = dateFromUnix(1'792'922'400);  // 2026-10-25T10:00:00Z, nine hours after the change
    for (const auto& row : {Row{Daily{}, 1}, Row{Weekly{}, 7}, Row{Monthly{}, 30}}) {
      const auto log = arrive("old.log");
      now = start;
      waited = {};
      lastRun(std::chrono::days(row.days) - std::chrono::seconds(20), row.frequency);
      headless.carryOut();
      EXPECT_FALSE(exists(log)) << displayName(row.frequency);
      EXPECT_EQ(waited, std::chrono::seconds(20));
      headless.carryOut();
      EXPECT_EQ(waited, std::chrono::seconds(20)) << "a second start is none";
    }
  });
}

TEST_F(HeadlessCoordinatorTest, doesNotWaitForWhatIsFarOffOrHangsOnFreeSpace) {
  const auto log = arrive("old.log");
  lastRun(std::chrono::hours(23));
  headless.carryOut();
  lastRun(std::chrono::hours(24) - std::chrono::minutes(5), OnLowDiskSpace{-1});
  headless.carryOut();
  EXPECT_TRUE(exists(log));
  EXPECT_EQ(waited.count(), 0);
}

TEST_F(HeadlessCoordinatorTest, tidiesAlsoWhereTheCleanupFails) {
  const auto picture = arrive("holiday.jpg");
  lastRun(std::chrono::hours(48));
  tidyUp();
  stored.failsFor = ScheduleCoordinator::storageKey;
  EXPECT_FALSE(headless.carryOut());
  EXPECT_FALSE(exists(picture));
  EXPECT_EQ(console, "Scheduled cleanup failed: disk full");
}

}  // namespace
}  // namespace orvane::test
