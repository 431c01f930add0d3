#include "core/base/text/Json.h"
#include "core/rules/ScheduleCandidates.h"
#include "core/rules/schedule/ScheduleCoordinator.h"
#include "core/rules/services/UserNotificationService.h"
#include "tests/support/CleanupRules.h"
#include "tests/support/RecordingCenter.h"
#include "tests/support/TaskFixture.h"

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
    EXPECT_EQ(item.riskLabel() == RiskLabel::manual, item.relativePath() == "com.example.plist");
  }
}

TEST(ScheduleCandidatesTest, findsNothingOnceItIsStopped) {
  const TemporaryTree tree;
  tree.file("Downloads/a.log");
  std::stop_source stop;
  stop.request_stop();
  EXPECT_TRUE(scheduleCandidates(std::vector{tree.url("Downloads")}, stop.get_token()).empty());
}

}  // namespace
}  // namespace orvane::test
