#include "app/history/HistoryModel.h"

#include "app/overview/OverviewModel.h"
#include "core/tasks/TrashTask.h"
#include "tests/app/WindowFixture.h"
#include "tests/support/TimeZone.h"

#include <gmock/gmock.h>

#include <array>
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
  ASSERT_TRUE(showsRows(4)) << "with a foot";
  for (int row = 0; row < 4; ++row) EXPECT_EQ(value(row, HistoryModel::IsLastRole).toBool(), row == 3);
  EXPECT_EQ(value(2, HistoryModel::NameRole).toString(), "b.txt");
  EXPECT_EQ(value(2, HistoryModel::PlaceRole).toString(), "Downloads");
  EXPECT_EQ(value(2, HistoryModel::DestinationRole).toString(), "") << "the Trash is told by the state";
  EXPECT_EQ(value(2, HistoryModel::StateKeyRole).toString(), "state.in_trash");

  model->restoreRun(0);
  ASSERT_TRUE(becomesTrue([this] { return !value(0, HistoryModel::CanRestoreRole).toBool(); }));
  EXPECT_EQ(contentOf(tree.path("Downloads/a.txt")), "first");
  EXPECT_EQ(contentOf(tree.path("Downloads/b.txt")), "second");
  EXPECT_EQ(value(0, HistoryModel::StateKeyRole).toString(), "state.restored");
  EXPECT_THAT(model->messages(), IsEmpty());
  EXPECT_TRUE(showsRows(3)) << "nothing is left to come back";
  EXPECT_TRUE(value(2, HistoryModel::IsLastRole).toBool());
  model->toggleExpanded(0);
  EXPECT_TRUE(showsRows(1));
}

TEST_F(HistoryModelTest, bringsBackWhatIsChosen) {
  clean({tree.file("Downloads/a.txt", "first"), tree.file("Downloads/b.txt", "second"),
         tree.file("Downloads/c.txt", "third"), tree.file("Downloads/d.txt", "fourth")});
  ASSERT_EQ(::unlink((trashPath() + "/files/a.txt").c_str()), 0);
  tree.file("Downloads/d.txt", "newer");
  model->reload();
  ASSERT_TRUE(showsRows(1));
  model->toggleExpanded(0);
  ASSERT_TRUE(showsRows(6));
  const auto counts = [this](int row) {
    return std::array{
        value(row, HistoryModel::ItemCountRole).toInt(), value(row, HistoryModel::RestorableCountRole).toInt(),
        value(row, HistoryModel::TakenCountRole).toInt(), value(row, HistoryModel::ChosenCountRole).toInt()};
  };
  const auto chosen = [this](int row) { return value(row, HistoryModel::ChosenRole).toBool(); };
  EXPECT_EQ(value(5, HistoryModel::KindRole).toInt(), HistoryModel::Foot);
  EXPECT_EQ(counts(5), (std::array{4, 3, 1, 3}));
  EXPECT_EQ(value(4, HistoryModel::StateKeyRole).toString(), "state.place_taken");
  EXPECT_FALSE(chosen(1)) << "it is gone";

  model->toggleChosen(1);
  model->toggleChosen(2);
  model->toggleChosen(4);
  EXPECT_EQ(counts(5), (std::array{4, 3, 1, 1}));
  EXPECT_EQ(counts(0), counts(5));
  model->toggleChosen(2);
  model->toggleChosen(3);
  model->chooseRange(3, 1);
  EXPECT_EQ(counts(5)[3], 2);
  EXPECT_FALSE(chosen(4));
  model->toggleChosen(2);

  model->restoreChosen(5);
  ASSERT_TRUE(becomesTrue([&] { return !model->isRestoring() && counts(0)[1] == 2; }));
  EXPECT_EQ(contentOf(tree.path("Downloads/c.txt")), "third");
  EXPECT_FALSE(exists(tree.path("Downloads/b.txt")));
  EXPECT_EQ(contentOf(tree.path("Downloads/d.txt")), "newer");
  EXPECT_THAT(model->messages(), IsEmpty());
  EXPECT_FALSE(chosen(2)) << "what was taken out stays so";
}

TEST_F(HistoryModelTest, bringsBackOfASearchOnlyWhatItShows) {
  clean({tree.file("Downloads/a.txt"), tree.file("Downloads/b.log")});
  model->reload();
  ASSERT_TRUE(showsRows(1));
  model->setSearchText(".log");
  ASSERT_TRUE(showsRows(3));
  model->restoreChosen(2);
  EXPECT_TRUE(becomesTrue([this] { return exists(tree.path("Downloads/b.log")); }));
  ASSERT_TRUE(becomesTrue([this] { return !model->isRestoring(); }));
  EXPECT_FALSE(exists(tree.path("Downloads/a.txt")));
}

TEST_F(HistoryModelTest, callsARunByItsRequestAndNarrowsToOneKind) {
  const auto tasks = services().tasks;
  clean({tree.file("Downloads/a.txt")});
  clean({tree.file("Downloads/b.txt")});
  const auto runs = recordedRuns(tasks);
  recordOrigin(tasks, runs[0].runId, {TaskKind::plan, RunOrigin::Start::byHand, "old logs"});
  recordOrigin(tasks, runs[1].runId, {TaskKind::rules, RunOrigin::Start::scheduled, "Stale Installers"});
  model->reload();
  ASSERT_TRUE(showsRows(2));
  EXPECT_EQ(value(0, HistoryModel::NameRole).toString(), "“old logs”");
  EXPECT_EQ(value(0, HistoryModel::OriginRole).toString(), "by the assistant");
  EXPECT_EQ(value(1, HistoryModel::NameRole).toString(), "Stale Installers");
  EXPECT_EQ(value(1, HistoryModel::OriginRole).toString(), "by rules, on schedule");
  for (const auto& [key, rows] : {std::pair{"nav.rules", 1}, {"nav.agent", 1}, {"nav.apps", 0}}) {
    model->setKind(static_cast<int>(HistoryModel::kindKeys().indexOf(key)));
    EXPECT_TRUE(showsRows(rows)) << key;
  }
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
  ASSERT_TRUE(showsRows(4));
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
  ASSERT_TRUE(showsRows(4));
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
  ASSERT_TRUE(showsRows(4));
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
  ASSERT_TRUE(showsRows(3));
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
