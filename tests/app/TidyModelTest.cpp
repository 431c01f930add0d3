#include "app/settings/TidyModel.h"

#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "tests/app/WindowFixture.h"
#include "tests/support/AutoOrganizerFixture.h"

#include <atomic>

namespace orvane::test {
namespace {

class TidyModelTest : public AutoOrganizerFixture {
 public:
  TidyModelTest() {
    store.update([this](AutoOrganizeSettings& settings) { settings.folderPaths = {tree.path("Downloads")}; });
    tidying.emplace([this](RepeatingTimer& timer) {
      return AutoOrganizeController::Collaborators{.organizer = autoOrganizer,
                                                   .store = store,
                                                   .factory = topics,
                                                   .timer = timer,
                                                   .loginItems = loginItems,
                                                   .now = [] { return day(10); }};
    });
    EXPECT_TRUE(becomesTrue([&] { return tidying->isReady(); }));
  }
  void look() {
    tidying->look();
    looked();
  }
  void looked() {
    ASSERT_TRUE(becomesTrue([&] { return !tidying->isLooking(); }));
  }

  LinuxPreferences tidyPreferences{tree.path("preferences.json")};
  AutoOrganizeSettingsStore store{tidyPreferences};
  NoLoginItems loginItems;
  std::optional<TidyModel> tidying;
};

TEST_F(TidyModelTest, tidiesNowAndSaysWhatItDid) {
  arrive("old.pdf", 1);
  arrive("new.pdf", 9);
  EXPECT_TRUE(shows(*tidying, {{"isEnabled", false}, {"isAvailable", false}, {"unavailableReason", "no model"}}));
  tidying->look();
  EXPECT_TRUE(tidying->isLooking());
  tidying->confirm();
  EXPECT_FALSE(tidying->isRunning()) << "nothing was shown yet";
  looked();
  EXPECT_EQ(tidying->selectedCount(), 2);
  const auto rows = tidying->proposed();
  ASSERT_EQ(rows.size(), 2);
  EXPECT_EQ(rows[1].toMap()["names"], QStringList("new.pdf"));
  arrive("later.pdf", 9);
  tidying->confirm();
  EXPECT_TRUE(tidying->isRunning());
  ASSERT_TRUE(becomesTrue([&] { return !tidying->isRunning(); }));
  EXPECT_TRUE(shows(*tidying, {{"movedCount", 2},
                               {"progressDone", 2},
                               {"statusText", "Moved 1 new item to Recents and sorted 1. Undo anytime in History."}}));
  EXPECT_TRUE(holds(tree, {"Downloads/Recents/new.pdf", "Downloads/later.pdf"})) << "the last was not shown";
  WindowFixture::speak(AppLanguage::de);
  EXPECT_TRUE(tidying->statusText().startsWith("1 neues Objekt nach Recents"));
  WindowFixture::speak(AppLanguage::en);
  look();
  EXPECT_EQ(tidying->selectedCount(), 1);
  tidying->dismiss();
  tidying->confirm();
  EXPECT_FALSE(tidying->isRunning());
  EXPECT_TRUE(exists(tree.path("Downloads/later.pdf")));
}

TEST_F(TidyModelTest, takesWhatCameBackOnDemandOnly) {
  arrive("new.pdf", 9);
  look();
  tidying->confirm();
  ASSERT_TRUE(becomesTrue([&] { return tidying->canUndo(); }));
  tidying->undo();
  ASSERT_TRUE(becomesTrue([&] { return exists(tree.path("Downloads/new.pdf")) && !tidying->isRunning(); }));
  look();
  EXPECT_TRUE(shows(*tidying, {{"selectedCount", 0}, {"returnedCount", 1}}));
  tidying->takeReturned();
  looked();
  EXPECT_TRUE(shows(*tidying, {{"selectedCount", 1}, {"returnedCount", 0}}));
  tidying->confirm();
  ASSERT_TRUE(becomesTrue([&] { return exists(tree.path("Downloads/Recents/new.pdf")); }));
}

TEST_F(TidyModelTest, neverJumpsBackToWhatWasStoredBefore) {
  int shown = 3;
  QObject::connect(&*tidying, &TidyModel::changed, [&] {
    EXPECT_GE(tidying->settings().recentsDays, shown);
    shown = static_cast<int>(tidying->settings().recentsDays);
  });
  for (int days = 4; days <= 20; ++days) {
    tidying->update([days](AutoOrganizeSettings& settings) { settings.recentsDays = days; });
  }
  EXPECT_TRUE(becomesTrue([&] { return store.get().recentsDays == 20; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(shown, 20);
}

TEST_F(TidyModelTest, storesTheSwitchAndSeesThatOfAnotherProcess) {
  tidying->setEnabled(true);
  EXPECT_TRUE(tidying->isEnabled());
  ASSERT_TRUE(becomesTrue([&] { return store.get().isEnabled; }));
  AutoOrganizeSettingsStore(tidyPreferences).update([](AutoOrganizeSettings& settings) { settings.isEnabled = false; });
  tidying->reload();
  EXPECT_TRUE(becomesTrue([&] { return !tidying->isEnabled(); }));
}

TEST(QtRepeatingTimer, callsElsewhereAgainAndAgainUntilItIsStopped) {
  BackgroundQueue queue;
  std::atomic<int> calls{0};
  {
    QtRepeatingTimer timer(
        [&](std::function<void()> task) { queue.post([task = std::move(task)](const std::stop_token&) { task(); }); });
    timer.start(std::chrono::seconds(1), [&] { ++calls; });
    // Started anew: the first one is not called.
    timer.start(std::chrono::seconds(0), [&] { calls += 1000; });
    ASSERT_TRUE(becomesTrue([&] { return calls >= 3000; }));
    timer.stop();
    const int after = calls;
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, after);
    EXPECT_EQ(after % 1000, 0);
  }
}

}  // namespace
}  // namespace orvane::test
