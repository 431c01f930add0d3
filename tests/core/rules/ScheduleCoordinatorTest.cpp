#include "core/base/text/Json.h"
#include "core/map/records/MapSnapshot.h"
#include "core/map/services/SnapshotStore.h"
#include "core/rules/ScheduleCandidates.h"
#include "core/rules/records/ScheduleSettings.h"
#include "core/rules/schedule/DailyMap.h"
#include "core/rules/schedule/ScheduleCoordinator.h"
#include "core/rules/services/UserNotificationService.h"
#include "core/tasks/MapTask.h"
#include "tests/support/CleanupRules.h"
#include "tests/support/RecordingCenter.h"
#include "tests/support/TaskFixture.h"
#include "tests/support/TimeZone.h"

namespace orvane::test {
namespace {

class ScheduleCoordinatorTest : public TaskFixture {
 public:
  ScheduleCoordinatorTest() {
    rules.resetToDefaults();
    for (const auto& rule : rules.getRules()) rules.toggleRule(rule.id, false);
    const auto rule = ruleFor("Logs", {.fileExtensions = {{"log"}}});
    rules.addOrUpdateRule(rule);
    ruleId = rule.id;
  }

  RecordingCenter center;
  UserNotificationService notifications{center, [](std::string_view) {}};
  Date now = dateFromUnix(1'700'000'000);
  ScheduleCoordinator coordinator{
      {.preferences = preferences, .tasks = taskServices(), .notificationService = notifications, .now = [this] {
         return now;
       }}};
  Uuid ruleId;
};

TEST_F(ScheduleCoordinatorTest, runsNotesTheTimeAndTellsOfIt) {
  const auto file = tree.file("Downloads/old.log", "1234567");
  coordinator.changeSettings([](ScheduleSettings& settings) { settings.isEnabled = true; });
  EXPECT_TRUE(coordinator.isRunDue(std::nullopt));
  const auto summary = coordinator.executeScheduledRun();
  EXPECT_EQ(summary.itemsProcessed, 1);
  EXPECT_EQ(summary.bytesReclaimed, 7);
  EXPECT_FALSE(exists(file));
  EXPECT_EQ(coordinator.getSettings().lastRunDate, now);
  ASSERT_EQ(center.posted.size(), 1U);
  EXPECT_EQ(center.posted[0].body, "Reclaimed 7 bytes across 1 files. Tap to view details or undo.");
  EXPECT_FALSE(coordinator.isRunDue(std::nullopt));
  EXPECT_EQ(journal->restoreRun(summary.batchId).restoredCount, 1);
}

TEST_F(ScheduleCoordinatorTest, asksOnceAndMovesWhatWasShown) {
  const auto file = tree.file("Downloads/old.log", "1234567");
  int asked = 0;
  const auto answering = [&](bool answer) {
    return [&, answer](const Approval& approval) {
      ++asked;
      EXPECT_EQ(approval.toTrash(), (RowSum{1, 7}));
      tree.file("Downloads/arrived.log");
      return answer;
    };
  };
  EXPECT_EQ(coordinator.carryOutScheduledRun({.approve = answering(false)}).moved(), 0);
  EXPECT_TRUE(exists(file));
  EXPECT_FALSE(coordinator.getSettings().lastRunDate);
  fs::remove(tree.path("Downloads/arrived.log"));
  EXPECT_EQ(coordinator.carryOutScheduledRun({.approve = answering(true)}).moved(), 1);
  EXPECT_FALSE(exists(file));
  EXPECT_TRUE(exists(tree.path("Downloads/arrived.log")));
  EXPECT_EQ(asked, 2);
}

TEST_F(ScheduleCoordinatorTest, leavesEverythingWithoutAnEnabledRule) {
  const auto file = tree.file("Downloads/old.log");
  rules.toggleRule(ruleId, false);
  EXPECT_EQ(coordinator.executeScheduledRun().itemsProcessed, 0);
  EXPECT_TRUE(exists(file));
  EXPECT_FALSE(coordinator.getSettings().lastRunDate);
  EXPECT_TRUE(center.posted.empty());
}

TEST_F(ScheduleCoordinatorTest, startsWithTheDefaultsWhereTheStoredOnesAreDamaged) {
  preferences.setValue(ScheduleCoordinator::storageKey, Json("weekly"));
  EXPECT_EQ(coordinator.getSettings(), ScheduleSettings());
  EXPECT_FALSE(coordinator.isRunDue(0));
}

std::vector<std::string> namesOf(const std::vector<FileItem>& items) {
  std::vector<std::string> result;
  for (const auto& item : items) result.emplace_back(item.relativePath());
  return result;
}

TEST(ScheduleCandidatesTest, takesEveryFileOnce) {
  const TemporaryTree tree;
  tree.files({"Downloads/a.log", "Downloads/.hidden/b.log", "Downloads/.c.log", "Downloads/Player.app/Contents/d.log",
              "Downloads/node_modules/e.log", "Downloads/deep/er/f\xff.log"});
  tree.link("Downloads/link.log", tree.path("Downloads/a.log"));
  tree.file("Library/Preferences/com.example.plist");
  const auto items = scheduleCandidates(std::vector{tree.url("Downloads/deep"), tree.url("Downloads"),
                                                    tree.url("Library"), tree.url("missing"), tree.url("Downloads")});
  EXPECT_THAT(namesOf(items), UnorderedElementsAre("a.log", "e.log", "f\xff.log", "com.example.plist"));
  for (const auto& item : items) {
    EXPECT_EQ(item.createdDate(), item.lastModifiedDate());
    EXPECT_TRUE(item.identity());
    EXPECT_EQ(item.riskLabel() == RiskLabel::manual, item.relativePath() == "com.example.plist");
  }
  EXPECT_TRUE(scheduleCandidates(std::vector{tree.url("Downloads")}, stopped()).empty());
}

TEST(ScheduleSettingsTest, knowsWhenARunIsDue) {
  using Optional = std::optional<std::int64_t>;
  // switched on, how often, days since the last run, free bytes, due
  const Rows<const char*, bool, ScheduleFrequency, Optional, Optional, bool> rows{
      {"switched off", false, Weekly{}, {}, {}, false},
      {"never run", true, Weekly{}, {}, {}, true},
      {"daily, today", true, Daily{}, 0, {}, false},
      {"daily, yesterday", true, Daily{}, 1, {}, true},
      {"weekly, 6 days", true, Weekly{}, 6, {}, false},
      {"weekly, 7 days", true, Weekly{}, 7, {}, true},
      {"monthly, 29 days", true, Monthly{}, 29, {}, false},
      {"monthly, 30 days", true, Monthly{}, 30, {}, true},
      {"low, a byte less", true, OnLowDiskSpace{10}, 0, 10737418239, true},
      {"low, just enough", true, OnLowDiskSpace{10}, {}, 10737418240, false},
      {"low, unknown, never run", true, OnLowDiskSpace{10}, {}, {}, true},
      {"low, unknown, run before", true, OnLowDiskSpace{10}, 99, {}, false},
      {"low, more than any disk", true, OnLowDiskSpace{INT64_MAX}, 0, INT64_MAX, true},
  };
  const auto now = dateFromUnix(1700000000);
  inTimeZone("UTC", [&] {
    for (const auto& [name, isEnabled, frequency, daysAgo, freeBytes, isDue] : rows) {
      ScheduleSettings settings;
      settings.isEnabled = isEnabled;
      settings.frequency = frequency;
      if (daysAgo) settings.lastRunDate = dateFromUnix(1700000000 - *daysAgo * 86400);
      EXPECT_EQ(settings.isRunDue(freeBytes, now), isDue) << name;
    }
  });
}

TEST(ScheduleSettingsTest, countsTheDayOfAClockChangeAsOne) {
  inTimeZone("Europe/Berlin", [] {
    ScheduleSettings settings;
    settings.isEnabled = true;
    settings.frequency = Daily{};
    // Noon before clocks go forward; the next noon comes after 23 hours.
    settings.lastRunDate = dateFromUnix(1711796400);
    EXPECT_FALSE(settings.isRunDue({}, dateFromUnix(1711796400 + 23 * 3600 - 1)));
    EXPECT_TRUE(settings.isRunDue({}, dateFromUnix(1711796400 + 23 * 3600)));
  });
}

TEST(ScheduleSettingsTest, hasItsJsonForm) {
  ScheduleSettings settings;
  EXPECT_EQ(jsonText(settings.toJson()),
            R"({"isEnabled":false,"frequency":{"weekly":{}},"runApprovedRulesOnly":true})");
  settings.frequency = OnLowDiskSpace{25};
  settings.lastRunDate = dateFromReferenceSeconds(1.5);
  EXPECT_EQ(ScheduleSettings::fromJson(parseJson(jsonText(settings.toJson()))), settings);
  EXPECT_EQ(displayName(settings.frequency), "When Free Space < 25 GB");
}

TEST(ScheduleSettingsTest, wantsOneFrequency) {
  for (const char* text : {"{}", R"({"daily":{},"weekly":{}})"}) {
    EXPECT_EQ(messageOf<JsonError>([&] { return frequencyFromJson(parseJson(text)); }),
              "Invalid number of keys found, expected one.");
  }
}

class UserNotificationServiceTest : public testing::Test {
 public:
  RecordingCenter center;
  std::string console;
  UserNotificationService service{center, [this](std::string_view line) { console += line; }};
};

TEST_F(UserNotificationServiceTest, announcesARunThatDidSomething) {
  service.postCleanupSummary(0, 99);
  EXPECT_TRUE(center.posted.empty());
  service.postCleanupSummary(3, 2000);
  service.postCleanupSummary(1, 0);
  ASSERT_EQ(center.posted.size(), 2U);
  EXPECT_EQ(center.posted[0].title, "Orvane Scheduled Cleanup Complete");
  EXPECT_TRUE(center.posted[0].body.starts_with("Reclaimed 2"));
  EXPECT_TRUE(center.posted[0].body.ends_with(" across 3 files. Tap to view details or undo."));
  EXPECT_NE(center.posted[0].identifier, center.posted[1].identifier);
}

TEST_F(UserNotificationServiceTest, leavesALineWhereNobodyListens) {
  EXPECT_TRUE(service.requestAuthorization());
  center.fails = true;
  EXPECT_FALSE(service.requestAuthorization());
  service.postCleanupSummary(1, 1);
  EXPECT_EQ(console, "Failed to dispatch notification: no service");
}

class DailyMap : public TaskFixture {
 public:
  DailyMap() {
    tree.file("Videos/film.mkv", std::string(500'000, 'x'));
    store.setOn(true);
  }
  // Five days ago there were 1,000 bytes free.
  void rememberEarlierMap() {
    MapSnapshot snapshot{.taken = ReferenceClock::now() - std::chrono::hours(5 * 24 + 1), .root = tree.path()};
    snapshot.freeBytes = 1000;
    snapshot.folders[tree.path()] = 0;
    store.add(snapshot);
  }
  void run() {
    mapAndWarn(maps, center, [this] { ++lowered; });
  }
  [[nodiscard]] std::size_t remembered() { return store.moments(ReferenceClock::now()).size(); }

  SnapshotStore store{tree.path(".local/share/orvane/map.db"), preferences};
  TaskServices tasks = taskServices();
  SmallVolume volume;
  MapServices maps{.tasks = tasks, .snapshots = store, .volume = volume};
  RecordingCenter center;
  int lowered = 0;
};

TEST_F(DailyMap, isMadeOnceADayAtALowerPriority) {
  run();
  run();
  EXPECT_EQ(remembered(), 1U);
  EXPECT_GE(lowered, 1);
  EXPECT_TRUE(center.posted.empty());
}

TEST_F(DailyMap, isNotMadeWhileNothingIsToBeRemembered) {
  store.setOn(false);
  run();
  EXPECT_EQ(lowered, 0);
  EXPECT_FALSE(exists(tree.path(".local/share/orvane")));
}

TEST_F(DailyMap, warnsOfADiskThatIsSoonFullWithWhatGrew) {
  rememberEarlierMap();
  run();
  ASSERT_EQ(center.posted.size(), 1U);
  EXPECT_THAT(center.posted[0].body, HasSubstr(": 6."));
  EXPECT_THAT(center.posted[0].body, HasSubstr("Videos (+"));
  EXPECT_TRUE(store.warned().has_value());
}

TEST_F(DailyMap, warnsAgainOnlyAfterThereWasRoom) {
  rememberEarlierMap();
  store.setWarned(ReferenceClock::now() - std::chrono::hours(24));
  run();
  EXPECT_TRUE(center.posted.empty());
  // Room again, another day.
  store.clear();
  rememberEarlierMap();
  store.setWarned(ReferenceClock::now() - std::chrono::hours(24));
  volume.free = 5000;
  run();
  EXPECT_TRUE(center.posted.empty());
  EXPECT_FALSE(store.warned().has_value());
}

}  // namespace
}  // namespace orvane::test
