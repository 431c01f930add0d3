#include "core/organizer/AutoOrganizeSettingsStore.h"
#include "core/platform/NotificationCenter.h"
#include "core/platform/Volume.h"
#include "core/rules/HeadlessCoordinator.h"
#include "core/rules/RuleEngine.h"
#include "core/rules/ScheduleCoordinator.h"
#include "core/rules/UserNotificationService.h"
#include "core/safety/FileAccessService.h"
#include "platform/linux/LinuxFolderGrants.h"
#include "tests/support/AutoOrganizerFixture.h"
#include "tests/support/MemoryPreferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane::test {
namespace {

class SilentCenter : public NotificationCenter {
 public:
  bool requestAuthorization() override { return true; }
  void post(const Notification& /*notification*/) override { ++posted; }
  void awaitAnswers(std::chrono::milliseconds /*limit*/) noexcept override { ++awaited; }
  int posted = 0;
  int awaited = 0;
};

class FixedVolume : public Volume {
 public:
  [[nodiscard]] std::optional<VolumeCapacity> capacity(const FileUrl& /*location*/) const override {
    return VolumeCapacity{.totalBytes = 100, .availableBytes = 50};
  }
};

// One key of which cannot be written.
class FailingPreferences : public MemoryPreferences {
 public:
  void update(std::string_view name, const std::function<Json(const Json*)>& change) override {
    if (name == failsFor) throw std::runtime_error("disk full");
    MemoryPreferences::update(name, change);
  }
  std::string_view failsFor;
};

class HeadlessCoordinatorTest : public AutoOrganizerFixture {
 public:
  HeadlessCoordinatorTest() {
    for (const auto& rule : rules.getRules()) rules.toggleRule(rule.id, false);
    CleanupRule rule;
    rule.name = "Logs";
    rule.trigger.fileExtensions = {"log"};
    rule.action = RuleAction::moveToTrash();
    rules.addOrUpdateRule(rule);
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
  RuleEngine rules{stored, mover, *journal, validator};
  LinuxFolderGrants grants;
  FileAccessService access{stored, grants, tree.path()};
  SilentCenter center;
  std::string console;
  UserNotificationService notifications{center, [](std::string_view) {}};
  Date now = dateFromUnix(1'700'000'000);
  std::chrono::seconds waited{0};
  FixedVolume volume;
  ScheduleCoordinator schedule{{.preferences = stored,
                                .ruleEngine = rules,
                                .fileAccessService = access,
                                .notificationService = notifications,
                                .now = [this] { return now; }}};
  AutoOrganizeSettingsStore tidySettings{stored};
  HeadlessCoordinator headless{{.schedule = schedule,
                                .tidySettings = tidySettings,
                                .autoOrganizer = autoOrganizer,
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

TEST_F(HeadlessCoordinatorTest, cleansWhenARunIsDueAndTidiesWhereThatIsOn) {
  const auto log = arrive("old.log", -100);
  const auto picture = arrive("holiday.jpg", -100);
  headless.carryOut();
  EXPECT_TRUE(exists(log)) << "nothing is on";
  EXPECT_TRUE(exists(picture));

  lastRun(std::chrono::hours(48));
  tidyUp();
  headless.carryOut();
  EXPECT_FALSE(exists(log));
  EXPECT_FALSE(exists(picture));
  EXPECT_EQ(files().size(), 1U) << "the picture, below Sorted";
  EXPECT_EQ(tidySettings.get().lastRunMovedCount, 1);
  EXPECT_EQ(center.posted, 1);
  EXPECT_EQ(center.awaited, 2);
  EXPECT_EQ(waited.count(), 0);
  EXPECT_EQ(console, "");
}

TEST_F(HeadlessCoordinatorTest, waitsForARunThatIsAlmostDue) {
  const auto log = arrive("old.log", -100);
  // A day after the last run was started, which took five minutes.
  lastRun(std::chrono::hours(24) - std::chrono::minutes(5));
  headless.carryOut();
  EXPECT_FALSE(exists(log));
  EXPECT_EQ(waited, std::chrono::minutes(5));
}

TEST_F(HeadlessCoordinatorTest, doesNotWaitForWhatIsFarOffOrHangsOnFreeSpace) {
  const auto log = arrive("old.log", -100);
  lastRun(std::chrono::hours(23));
  headless.carryOut();
  lastRun(std::chrono::hours(24) - std::chrono::minutes(5), OnLowDiskSpace{-1});
  headless.carryOut();
  EXPECT_TRUE(exists(log));
  EXPECT_EQ(waited.count(), 0);
}

TEST_F(HeadlessCoordinatorTest, tidiesAlsoWhereTheCleanupFails) {
  const auto picture = arrive("holiday.jpg", -100);
  lastRun(std::chrono::hours(48));
  tidyUp();
  stored.failsFor = ScheduleCoordinator::storageKey;
  headless.carryOut();
  EXPECT_FALSE(exists(picture));
  EXPECT_EQ(console, "Scheduled cleanup failed: disk full");
}

}  // namespace
}  // namespace orvane::test
