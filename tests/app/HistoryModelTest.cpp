#include "app/history/HistoryModel.h"

#include "app/overview/OverviewModel.h"
#include "core/tasks/TrashTask.h"
#include "tests/app/WindowFixture.h"
#include "tests/support/TimeZone.h"

#include <gmock/gmock.h>

#include <optional>
#include <utility>

namespace orvane::test {
namespace {

using testing::IsEmpty;

class HistoryModelTest : public WindowFixture {
 public:
  HistoryModelTest() { open(); }
  ~HistoryModelTest() override { QCoreApplication::processEvents(); }

  void open() {
    feed.emplace(services());
    model.emplace(services(), *feed);
  }
  [[nodiscard]] QVariant value(int row, int role) const { return model->data(model->index(row), role); }
  [[nodiscard]] bool showsRows(int rows) {
    return becomesTrue([&] { return model->rowCount() == rows; });
  }

  std::optional<JournalFeed> feed;
  std::optional<HistoryModel> model;
};

TEST_F(HistoryModelTest, saysThatThereIsNothing) {
  EXPECT_TRUE(becomesTrue([this] { return model->isLoaded(); }));
  EXPECT_EQ(model->rowCount(), 0);
}

TEST_F(HistoryModelTest, unfoldsARunAndBringsItBack) {
  clean({tree.file("Downloads/a.txt", "first"), tree.file("Downloads/b.txt", "second")});
  model->reload();
  ASSERT_TRUE(showsRows(1));
  EXPECT_EQ(value(0, HistoryModel::KindRole).toInt(), HistoryModel::Run);
  EXPECT_EQ(value(0, HistoryModel::TitleKeyRole).toString(), "run.clean");
  EXPECT_EQ(value(0, HistoryModel::CountRole).toInt(), 2);
  EXPECT_TRUE(value(0, HistoryModel::CanRestoreRole).toBool());

  EXPECT_TRUE(value(0, HistoryModel::IsLastRole).toBool());

  model->toggleExpanded(0);
  ASSERT_TRUE(showsRows(3));
  EXPECT_FALSE(value(0, HistoryModel::IsLastRole).toBool());
  EXPECT_FALSE(value(1, HistoryModel::IsLastRole).toBool());
  EXPECT_TRUE(value(2, HistoryModel::IsLastRole).toBool());
  EXPECT_EQ(value(2, HistoryModel::NameRole).toString(), "b.txt");
  EXPECT_EQ(value(2, HistoryModel::PlaceRole).toString(), "Downloads");
  EXPECT_EQ(value(2, HistoryModel::StateKeyRole).toString(), "state.in_trash");

  model->restoreRun(0);
  ASSERT_TRUE(becomesTrue([this] { return !value(0, HistoryModel::CanRestoreRole).toBool(); }));
  EXPECT_EQ(contentOf(tree.path("Downloads/a.txt")), "first");
  EXPECT_EQ(contentOf(tree.path("Downloads/b.txt")), "second");
  EXPECT_EQ(value(0, HistoryModel::StateKeyRole).toString(), "state.restored");
  EXPECT_THAT(model->messages(), IsEmpty());
  model->toggleExpanded(0);
  EXPECT_TRUE(showsRows(1));
}

TEST_F(HistoryModelTest, putsARunUnderItsDayWhereTheUserLives) {
  JournalEntry entry;
  entry.timestamp = dateFromUnix(1767223800);  // 2025-12-31T23:30:00Z
  entry.originalURL = tree.url("Downloads/a.txt");
  entry.trashedURL = FileUrl(trashPath() + "/files/a.txt");
  journal->record(entry);
  model->reload();
  ASSERT_TRUE(showsRows(1));
  for (const auto& row : {std::pair{"UTC", "2025-12-31"}, std::pair{"Europe/Berlin", "2026-01-01"},
                          std::pair{"America/New_York", "2025-12-31"}}) {
    inTimeZone(row.first, [&] { EXPECT_EQ(value(0, HistoryModel::DayRole).toString().toStdString(), row.second); });
  }
}

TEST_F(HistoryModelTest, addsUpItsFiguresWhileTheyAreShown) {
  auto& figures = *model->figures();
  const auto become = [&](double moved, double restored, double inTrash) {
    return becomesTrue([&] {
      return figures.movedBytes() == moved && figures.restoredBytes() == restored && figures.inTrashBytes() == inTrash;
    });
  };
  clean({tree.file("Downloads/a.txt"), tree.file("Downloads/b.txt")});
  model->reload();
  ASSERT_TRUE(showsRows(1));
  EXPECT_FALSE(figures.isKnown()) << "nobody looks";
  figures.setShown(true);
  EXPECT_TRUE(become(14, 0, 14));
  ASSERT_EQ(figures.weeks().size(), 12);
  EXPECT_EQ(figures.weeks().back().toMap()["bytes"].toDouble(), 14);
  model->toggleExpanded(0);
  ASSERT_TRUE(showsRows(3));
  model->restoreEntry(1);
  EXPECT_TRUE(become(14, 7, 7));
}

TEST_F(HistoryModelTest, saysAnewWhoActedInAnotherLanguage) {
  clean({tree.file("Downloads/a.txt", "first")});
  model->reload();
  ASSERT_TRUE(showsRows(1));
  bool isTold = false;
  QObject::connect(&*model, &QAbstractItemModel::dataChanged, &*model,
                   [&](const QModelIndex&, const QModelIndex&, const QList<int>& roles) {
                     isTold = isTold || roles.contains(HistoryModel::OriginRole);
                   });
  model->languageChanged();
  EXPECT_TRUE(isTold);
}

TEST_F(HistoryModelTest, marksEachRunWithTheSectionThatActed) {
  clean({tree.file("Downloads/a.txt", "first")});
  const std::vector place{FileUrl(tree.file("Downloads/b.txt", "second"))};
  const auto tasks = services().tasks;
  ASSERT_EQ(carryOut(tasks, proposeTrash(tasks, place, roots()).approve()).moved(), 1);
  model->reload();
  ASSERT_TRUE(showsRows(2));
  EXPECT_EQ(value(0, HistoryModel::ActorSymbolRole).toString(), "trash");
  EXPECT_EQ(value(1, HistoryModel::ActorSymbolRole).toString(), "history") << "nothing tells who had it done";
}

TEST_F(HistoryModelTest, bringsBackOneItemAndLeavesTheOthers) {
  clean({tree.file("Downloads/a.txt", "first"), tree.file("Downloads/b.txt", "second")});
  model->reload();
  ASSERT_TRUE(showsRows(1));
  model->toggleExpanded(0);
  ASSERT_TRUE(showsRows(3));
  EXPECT_TRUE(value(2, HistoryModel::CanRestoreRole).toBool());
  model->restoreEntry(2);
  ASSERT_TRUE(becomesTrue([this] { return value(2, HistoryModel::StateKeyRole).toString() == "state.restored"; }));
  EXPECT_FALSE(value(2, HistoryModel::CanRestoreRole).toBool());
  EXPECT_EQ(contentOf(tree.path("Downloads/b.txt")), "second");
  EXPECT_FALSE(exists(tree.path("Downloads/a.txt")));
  EXPECT_TRUE(value(0, HistoryModel::CanRestoreRole).toBool());

  model->restoreEntry(1);
  ASSERT_TRUE(becomesTrue([this] { return !value(0, HistoryModel::CanRestoreRole).toBool(); }));
  EXPECT_EQ(value(0, HistoryModel::StateKeyRole).toString(), "state.restored");
  EXPECT_EQ(contentOf(tree.path("Downloads/a.txt")), "first");
  EXPECT_THAT(model->messages(), IsEmpty());
}

TEST_F(HistoryModelTest, warnsOfWhatCannotComeBack) {
  clean({tree.file("Downloads/a.txt"), tree.file("Downloads/b.txt")});
  ASSERT_EQ(::unlink((trashPath() + "/files/a.txt").c_str()), 0);
  model->reload();
  ASSERT_TRUE(showsRows(1));
  model->toggleExpanded(0);
  ASSERT_TRUE(showsRows(3));
  EXPECT_EQ(value(1, HistoryModel::StateKeyRole).toString(), "state.gone");
  EXPECT_FALSE(value(1, HistoryModel::CanRestoreRole).toBool());
  model->restoreRun(0);
  ASSERT_TRUE(becomesTrue([this] { return !model->isRestoring() && !model->messages().empty(); }));
  EXPECT_EQ(model->messages().size(), 1);
  EXPECT_TRUE(exists(tree.path("Downloads/b.txt")));
}

TEST_F(HistoryModelTest, asksBeforeItRestoresIntoATakenPlace) {
  const auto restoreRun = [this] {
    bool isAsked = false;
    const auto connection = QObject::connect(&*model, &HistoryModel::placesTaken, [&] { isAsked = true; });
    model->restoreRun(0);
    EXPECT_TRUE(becomesTrue([&] { return isAsked; }));
    QObject::disconnect(connection);
  };
  tree.file("Downloads/pip/wheel", "old");
  clean({tree.path("Downloads/pip")});
  tree.file("Downloads/pip/wheel", "newer");
  model->reload();
  ASSERT_TRUE(showsRows(1));
  restoreRun();
  EXPECT_FALSE(model->isRestoring());
  EXPECT_EQ(model->resultText(), "") << "nothing was restored yet";
  EXPECT_THAT(model->takenPlaces(), testing::ElementsAre("~/Downloads/pip (5 bytes)"));
  EXPECT_TRUE(model->areFoldersTaken());
  EXPECT_EQ(contentOf(tree.path("Downloads/pip/wheel")), "newer");

  model->swapPlaces();
  ASSERT_TRUE(becomesTrue([this] { return !model->isRestoring(); }));
  ASSERT_TRUE(showsRows(2));
  EXPECT_EQ(contentOf(tree.path("Downloads/pip/wheel")), "old");
  EXPECT_EQ(model->resultText(),
            "1 item is back where it was. 1 item from its place is in the Trash, as a run of its own.");

  restoreRun();
  model->restoreBeside();
  ASSERT_TRUE(becomesTrue([this] { return !model->isRestoring() && !model->resultText().isEmpty(); }));
  EXPECT_EQ(model->resultText(), "pip came back as pip (restored 1): something stands in its place.");
  EXPECT_EQ(contentOf(tree.path("Downloads/pip (restored 1)/wheel")), "newer");
  EXPECT_THAT(model->messages(), IsEmpty());
}

TEST_F(HistoryModelTest, anUnknownRunIsAWarning) {
  ASSERT_TRUE(becomesTrue([this] { return model->isLoaded(); }));
  model->restore(QString::fromStdString(Uuid::random().toString()));
  ASSERT_TRUE(becomesTrue([this] { return !model->isRestoring(); }));
  ASSERT_EQ(model->messages().size(), 1);
  EXPECT_TRUE(model->messages().front().startsWith("No recorded cleanup run found for ID: "));
}

TEST_F(HistoryModelTest, findsRunsByWhatTheyMoved) {
  clean({tree.file("Downloads/holiday.jpg"), tree.file("Downloads/letter.txt")});
  clean({tree.file("Downloads/other.txt")});
  model->reload();
  ASSERT_TRUE(showsRows(2));
  model->setSearchText("HOLIDAY");
  ASSERT_TRUE(becomesTrue([this] { return model->shownCount() == 1; }));
  ASSERT_TRUE(showsRows(2));
  EXPECT_EQ(value(1, HistoryModel::NameRole).toString(), "holiday.jpg");
  model->setSearchText("nowhere");
  EXPECT_TRUE(showsRows(0));
  model->setSearchText("");
  EXPECT_TRUE(becomesTrue([this] { return model->shownCount() == 2; }));
}

TEST_F(HistoryModelTest, showsWhatAnotherProcessDid) {
  ASSERT_TRUE(becomesTrue([this] { return model->isLoaded(); }));
  UndoJournal other(trash, fileMover, validator, FileUrl(journalFolder()));
  CleanupRun run(mover, other, roots());
  run.carryOut(requests({tree.file("Downloads/a.txt")}));
  EXPECT_TRUE(showsRows(1));
}

TEST_F(HistoryModelTest, feedsTheOverview) {
  AppState state(services());
  CleanupModel cleanup(services(), state);
  OverviewModel overview(services(), {.state = state, .cleanup = cleanup, .history = *model, .feed = *feed});
  setAge(tree.sparseFile("Downloads/old.dmg", 3000), 30.0 * 86400);
  setAge(tree.sparseFile("Downloads/Work/Logs/run.log", 700), 30.0 * 86400);
  schedule.isEnabled = true;
  overview.reloadSchedule();
  state.startScan();
  ASSERT_TRUE(becomesTrue([&] { return overview.areas().size() == 2; }));
  const auto largest = overview.areas().front().toMap();
  EXPECT_EQ(largest["category"].toString(), "oldDownloads");
  EXPECT_EQ(largest["bytes"].toDouble(), 3000);
  const auto logs = overview.areas().back().toMap();
  EXPECT_EQ(logs["children"].toList().front().toMap()["label"].toString(), "Work");

  overview.showArea("logs", logs["children"].toList().front().toMap()["folder"].toString());
  EXPECT_EQ(state.selectedNavigation(), static_cast<int>(AppNavigationItem::Cleanup));
  EXPECT_TRUE(becomesTrue([&] { return cleanup.shownCount() == 1; }));
  EXPECT_TRUE(becomesTrue([&] { return overview.nextScheduledRun() > 0; }));
  EXPECT_EQ(overview.scheduleFrequencyKey(), "frequency.weekly");

  cleanup.cleanSelected();
  ASSERT_TRUE(becomesTrue([&] { return overview.runCount() == 1; }));
  EXPECT_TRUE(becomesTrue([&] { return state.lifetimeReclaimedBytes() == 3700; }));
  EXPECT_TRUE(becomesTrue([&] { return overview.areas().empty(); }));
  overview.undo(overview.recentRuns().front().toMap()["id"].toString());
  EXPECT_TRUE(becomesTrue([&] { return state.lifetimeReclaimedBytes() == 0; }));
  EXPECT_TRUE(exists(tree.path("Downloads/old.dmg")));
}

}  // namespace
}  // namespace orvane::test
