#include "app/cleanup/CleanupModel.h"

#include "app/overview/OverviewAreas.h"
#include "tests/app/WindowFixture.h"

#include <QCoreApplication>

#include <atomic>
#include <filesystem>
#include <optional>
#include <thread>

namespace orvane::test {
namespace {

constexpr double day = 86400;
constexpr auto* installers = "# Old Installers & Downloads";

class CleanupModelTest : public WindowFixture {
 public:
  CleanupModelTest() {
    // Two installers of different ages, a log, and a file that only its owner can judge.
    setAge(tree.sparseFile("Downloads/old.dmg", 3000), 30 * day);
    tree.sparseFile("Downloads/new.dmg", 5000);
    setAge(tree.sparseFile("Downloads/Work/Logs/run.log", 700), 20 * day);
    tree.sparseFile("Downloads/Work/letter.txt", 90);
    state.emplace(services());
    model.emplace(services(), *state);
  }

  void scan(const std::string& folder = "") {
    state->startScan(QString::fromStdString(folder));
    ASSERT_TRUE(becomesTrue([this] { return !state->isScanning(); }));
    arranged();
  }
  // Waits until what is shown answers what is asked for: twice another order, and the first one again.
  void arranged() {
    for (int turn = 0; turn < 2; ++turn) {
      bool isArranged = false;
      const auto connection = QObject::connect(&*model, &CleanupModel::countsChanged, [&] { isArranged = true; });
      model->setSort(model->sort() == CleanupModel::Size ? CleanupModel::Date : CleanupModel::Size);
      ASSERT_TRUE(becomesTrue([&] { return isArranged; }));
      QObject::disconnect(connection);
    }
  }

  [[nodiscard]] QVariant value(int row, int role) const { return model->data(model->index(row), role); }
  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> result;
    for (int row = 0; row < model->rowCount(); ++row) {
      const bool isHeader = value(row, CleanupModel::KindRole).toInt() == CleanupModel::Header;
      result.push_back((isHeader ? "# " : "") + value(row, CleanupModel::NameRole).toString().toStdString());
    }
    return result;
  }
  [[nodiscard]] int rowOf(std::string_view name) const {
    const auto all = names();
    return static_cast<int>(std::find(all.begin(), all.end(), name) - all.begin());
  }
  [[nodiscard]] int checkOf(std::string_view name) const {
    return value(rowOf(name), CleanupModel::CheckStateRole).toInt();
  }
  void clean() { finish(*model, &CleanupModel::cleanSelected); }

  std::optional<AppState> state;
  std::optional<CleanupModel> model;
};

TEST(ScannedItemsTest, piecesWaitForAMainThreadThatIsBusyAndGiveUpWithTheScan) {
  ScannedItems items;
  std::stop_source stop;
  std::atomic<int> given = 0;
  std::thread scan([&] {
    for (int number = 0; number < 10; ++number) {
      const auto piece = std::make_shared<ItemPiece>();
      piece->emplace_back(FileItem::Fields{});
      items.appendLater(piece, 7, stop.get_token());
      ++given;
    }
  });
  while (given < 2) std::this_thread::yield();
  stop.request_stop();
  // It ends although nobody takes the pieces.
  scan.join();
  EXPECT_LT(items.count(), 1);
  QCoreApplication::processEvents();
  EXPECT_GE(items.count(), 2);
  EXPECT_LT(items.count(), 10);
  EXPECT_EQ(items.bytes(), 7 * items.count());
}

TEST_F(CleanupModelTest, neverOffersAgainWhatIsKept) {
  scan();
  model->keep(rowOf("new.dmg"));
  ASSERT_TRUE(becomesTrue([this] { return rowOf("new.dmg") == model->rowCount(); }));
  EXPECT_EQ(state->keptText(), QStringLiteral(u"1 item, 5\u00a0KB, is on the keep list."));
  scan();
  EXPECT_EQ(rowOf("new.dmg"), model->rowCount());
  EXPECT_LT(rowOf("old.dmg"), model->rowCount());
  EXPECT_EQ(state->keptText(), QStringLiteral(u"1 item, 5\u00a0KB, is on the keep list."));
  clean();
  EXPECT_TRUE(holds({"Downloads/new.dmg"}, {"Downloads/old.dmg"}));
}

TEST_F(CleanupModelTest, offersTheHomesLargestFoldersWhereNoneIsThere) {
  std::filesystem::rename(tree.path("Downloads"), tree.path("elsewhere"));
  state->startScan();
  ASSERT_TRUE(becomesTrue([this] { return !state->isScanning(); }));
  EXPECT_FALSE(state->scanFailed().isEmpty() || state->hasScanned());
  ASSERT_FALSE(state->homeFolders().isEmpty());
  const auto largest = state->homeFolders().front().toMap();
  EXPECT_EQ(largest["path"], "~/elsewhere");
  state->grantFolder(largest["url"].toString());
  ASSERT_TRUE(becomesTrue([this] { return state->hasScanned() && !state->isScanning(); }));
  EXPECT_TRUE(state->homeFolders().isEmpty());
  EXPECT_GT(model->itemCount(), 0);
}

TEST_F(CleanupModelTest, listsWhatWasFoundByCategoryLargestFirst) {
  scan();
  EXPECT_THAT(names(), ElementsAre("# System & App Logs", "run.log", installers, "new.dmg", "old.dmg",
                                   "# Manual Review", "letter.txt"));
  EXPECT_TRUE(shows(*state, {{"reclaimableBytes", 3000 + 5000 + 700 + 90},
                             {"proposedBytes", 3000 + 700},
                             {"reviewBytes", 5000},
                             {"scannedFolders", 1},
                             {"hasScanned", true}}));
  EXPECT_TRUE(shows(*model, rowOf(installers), {{"bytes", 8000}}));
  EXPECT_TRUE(shows(*model, rowOf("run.log"), {{"place", "Downloads/Work/Logs"}}));

  model->toggleExpanded(rowOf(installers));
  EXPECT_THAT(names(), ElementsAre("# System & App Logs", "run.log", installers, "# Manual Review", "letter.txt"));
  model->toggleExpanded(rowOf(installers));
  EXPECT_EQ(model->rowCount(), 7);
  localization.setLanguage(AppLanguage::de);
  model->languageChanged();
  EXPECT_NE(names().front(), "# System & App Logs");
  EXPECT_EQ(names()[1], "run.log");
}

TEST_F(CleanupModelTest, selectsWhatIsSafeAndNeverWhatIsManual) {
  scan();
  EXPECT_EQ(checkOf("run.log"), Qt::Checked);
  EXPECT_EQ(checkOf("letter.txt"), -1);
  model->toggle(rowOf("letter.txt"));
  model->toggle(rowOf("# Manual Review"));
  EXPECT_EQ(checkOf("letter.txt"), -1);

  const auto safe = model->selectedCount();
  model->deselectAll();
  EXPECT_TRUE(shows(*model, {{"selectedCount", 0}, {"selectedBytes", 0}}));
  model->selectRecommended();
  EXPECT_EQ(model->selectedCount(), safe);

  // A header tells how much below it is selected, and selects the rest or nothing.
  model->deselectAll();
  EXPECT_EQ(checkOf(installers), Qt::Unchecked);
  model->toggle(rowOf("old.dmg"));
  EXPECT_EQ(checkOf(installers), Qt::PartiallyChecked);
  EXPECT_EQ(model->selectedBytes(), 3000);
  model->toggle(rowOf(installers));
  EXPECT_EQ(checkOf(installers), Qt::Checked);
  EXPECT_EQ(checkOf("new.dmg"), Qt::Checked);
  EXPECT_EQ(model->selectedBytes(), 8000);
  model->toggle(rowOf(installers));
  EXPECT_EQ(model->selectedCount(), 0);
}

TEST_F(CleanupModelTest, searchesSortsAndFilters) {
  scan();
  model->setSearchText("  NEW ");
  arranged();
  EXPECT_THAT(names(), ElementsAre(installers, "new.dmg"));
  EXPECT_TRUE(shows(*model, {{"shownCount", 1}, {"itemCount", 4}}));

  // A header's box is about what is shown.
  model->deselectAll();
  model->toggle(0);
  EXPECT_EQ(model->selectedBytes(), 5000);

  model->setSearchText("");
  model->setCategoryFilter("oldDownloads");
  model->setSort(CleanupModel::Name);
  ASSERT_TRUE(becomesTrue([&] { return model->shownCount() == 2 && rowOf("new.dmg") == 1; }));
  model->setSort(CleanupModel::LastUse);
  ASSERT_TRUE(becomesTrue([&] { return rowOf("old.dmg") == 1; }));
  model->setSort(CleanupModel::Size);
  model->clearFilters();
  model->setRiskFilter(2);
  ASSERT_TRUE(becomesTrue([&] { return model->shownCount() == 1; }));
  EXPECT_THAT(names(), ElementsAre("# Manual Review", "letter.txt"));
  model->clearFilters();
  model->setFolderFilter(QString::fromStdString(tree.path("Downloads/Work")));
  ASSERT_TRUE(becomesTrue([&] { return model->shownCount() == 2; }));
  EXPECT_THAT(names(), ElementsAre("# System & App Logs", "run.log", "# Manual Review", "letter.txt"));
}

TEST_F(CleanupModelTest, cleansOnlyWhatTheListShowsWhereItIsAskedTo) {
  scan();
  ASSERT_EQ(model->selectedCount(), 2);
  model->setSearchText("old");
  arranged();
  EXPECT_TRUE(shows(*model, {{"shownSelectedCount", 1}, {"shownSelectedBytes", 3000}}));
  model->toggle(rowOf("old.dmg"));
  EXPECT_EQ(model->shownSelectedCount(), 0);
  model->cleanShown();
  EXPECT_FALSE(model->isCleaning());
  model->toggle(rowOf("old.dmg"));
  // A folded group is not hidden: its header shows its box.
  model->toggleExpanded(0);
  EXPECT_EQ(model->shownSelectedCount(), 1);
  finish(*model, &CleanupModel::cleanShown);
  EXPECT_TRUE(holds({"Downloads/Work/Logs/run.log"}, {"Downloads/old.dmg"}));
  EXPECT_EQ(model->selectedCount(), 1);

  ASSERT_EQ(model->filters().size(), 1);
  model->removeFilter(CleanupModel::SearchFilter);
  EXPECT_THAT(model->filters(), IsEmpty());
  EXPECT_EQ(model->searchText(), "");
}

TEST_F(CleanupModelTest, movesExactlyWhatIsSelectedAsOneRunAndBringsItBack) {
  scan();
  model->deselectAll();
  model->toggle(rowOf("old.dmg"));
  model->toggle(rowOf("run.log"));
  EXPECT_EQ(model->projectedFreeBytes() - model->currentFreeBytes(), 3700);
  clean();
  EXPECT_EQ(model->resultText().toStdString(), "Successfully moved 2 items to the Trash, reclaiming 4\u00a0KB.");
  EXPECT_THAT(model->messages(), IsEmpty());
  EXPECT_TRUE(holds({"Downloads/new.dmg", ".local/share/Trash/files/old.dmg"},
                    {"Downloads/old.dmg", "Downloads/Work/Logs/run.log"}));
  ASSERT_EQ(journal->getRuns().size(), 1U);
  EXPECT_EQ(journal->getRuns().front().itemCount, 2);
  arranged();
  EXPECT_TRUE(shows(*model, {{"itemCount", 2}, {"selectedCount", 0}, {"canUndo", true}}));
  EXPECT_TRUE(shows(*state, {{"reclaimableBytes", 5090}, {"proposedBytes", 0}}));

  finish(*model, &CleanupModel::undo);
  EXPECT_TRUE(holds({"Downloads/old.dmg", "Downloads/Work/Logs/run.log"}));
  EXPECT_FALSE(model->canUndo());
  arranged();
  EXPECT_EQ(model->itemCount(), 4);
  EXPECT_EQ(checkOf("old.dmg"), Qt::Unchecked);
}

TEST_F(CleanupModelTest, movesWholeFoldersOfCachesWhateverTheirCategory) {
  const std::vector<std::string> names{"Google", "com.example.app", "com.hnc.Discord"};
  for (const auto& name : names) tree.file("Library/Caches/" + name + "/data", name);
  folders.saveBookmark(tree.url("Library/Caches"));
  scan();
  model->deselectAll();
  for (const auto& name : names) model->toggle(rowOf(name));
  clean();
  EXPECT_THAT(model->messages(), IsEmpty());
  for (const auto& name : names) EXPECT_TRUE(holds({}, {"Library/Caches/" + name}));
  const auto areasNow = [this] {
    OverviewSums sums;
    sums.add(state->scannedItems().snapshot(), {});
    return sums.areas();
  };
  const auto isBrowsers = Field(&OverviewArea::category, ScanCategory::browserCaches);
  EXPECT_THAT(areasNow(), Not(Contains(isBrowsers)));
  finish(*model, &CleanupModel::undo);
  EXPECT_THAT(
      areasNow(),
      Contains(AllOf(isBrowsers, testing::ResultOf([](const OverviewArea& area) { return area.parts.front().folder; },
                                                   tree.path("Library/Caches/Google")))));
}

TEST_F(CleanupModelTest, noticesWhatOthersMovedAndBroughtBack) {
  scan();
  SafetyFixture::clean({tree.path("Downloads/old.dmg"), tree.path("Downloads/Work")});
  model->followJournal();
  ASSERT_TRUE(becomesTrue([&] { return model->itemCount() == 1; }));
  EXPECT_EQ(state->reclaimableBytes(), 5000);
  EXPECT_EQ(model->selectedCount(), 0);

  journal->restoreRun(lastRun);
  model->followJournal();
  ASSERT_TRUE(becomesTrue([&] { return model->itemCount() == 4; }));
  EXPECT_EQ(state->reclaimableBytes(), 8790);
}

TEST_F(CleanupModelTest, leavesAloneWhatChangedSinceTheScan) {
  scan();
  tree.file("Downloads/old.dmg", "something else by now");
  ASSERT_EQ(::unlink(tree.path("Downloads/Work/Logs/run.log").c_str()), 0);
  clean();
  EXPECT_EQ(contentOf(tree.path("Downloads/old.dmg")), "something else by now");
  const auto messages = model->messages().join(u'\n').toStdString();
  EXPECT_THAT(messages, AllOf(HasSubstr("Failed to trash run.log: "), HasSubstr("Failed to trash old.dmg: ")));
  EXPECT_THAT(journal->getRuns(), IsEmpty());
  // Vanished items count no more.
  EXPECT_TRUE(shows(*model, {{"canUndo", false}, {"resultNote", ""}, {"itemCount", 3}}));
  EXPECT_EQ(state->reclaimableBytes(), 3000 + 5000 + 90);
}

TEST_F(CleanupModelTest, explainsALabelAndShowsTheFolder) {
  tree.file("Downloads/server.pem", "secret");
  scan();
  for (const auto& [name, reason, isLocked] :
       {std::tuple{"run.log", "Safe to remove. Temporary caches, logs, or redundant installers.", false},
        std::tuple{"letter.txt", "it may be your own work.", true},
        std::tuple{"server.pem", "This looks like a key", true}}) {
    EXPECT_THAT(model->explanation(rowOf(name)).toStdString(), HasSubstr(reason));
    EXPECT_EQ(value(rowOf(name), CleanupModel::LockReasonRole).toString().contains(reason), isLocked) << name;
  }
  model->openContainingFolder(rowOf("run.log"));
  ASSERT_TRUE(becomesTrue([this] { return !desktop.allRevealed().empty(); }));
  EXPECT_THAT(desktop.allRevealed(), ElementsAre(tree.url("Downloads/Work/Logs/run.log")));
}

TEST_F(CleanupModelTest, scansTheFolderThatIsNamedAlone) {
  setAge(tree.sparseFile("Elsewhere/other.log", 300), 30 * day);
  scan(tree.url("Elsewhere").absoluteString());
  EXPECT_THAT(names(), ElementsAre("# System & App Logs", "other.log"));
  state->startScan("/etc");
  ASSERT_TRUE(becomesTrue([this] { return !state->isScanning(); }));
  EXPECT_THAT(state->scanFailed().toStdString(), HasSubstr("/etc"));
}

TEST_F(CleanupModelTest, showsNamesThatAreNoText) {
  setAge(tree.sparseFile("Downloads/bad\xff\nname.dmg", 10), 30 * day);
  scan();
  EXPECT_LT(rowOf("bad\\xff\\nname.dmg"), model->rowCount());
  model->setSearchText("name.dmg");
  arranged();
  EXPECT_EQ(model->shownCount(), 1);
  clean();
  EXPECT_TRUE(holds({}, {"Downloads/bad\xff\nname.dmg"}));
}

// More than one group of items, with the time between them in which a run can wait.
class PausedCleanupTest : public CleanupModelTest {
 public:
  static constexpr int count = 1100;

  PausedCleanupTest() {
    for (int number = 0; number < count; ++number) {
      setAge(tree.sparseFile("Downloads/Logs/" + std::to_string(number) + ".log", 10), 20 * day);
    }
  }
  // Each of them is in its place or in the Trash.
  [[nodiscard]] int left() const {
    int result = 0;
    for (int number = 0; number < count; ++number) {
      const auto name = std::to_string(number) + ".log";
      const bool isLeft = exists(tree.path("Downloads/Logs/" + name));
      EXPECT_NE(isLeft, exists(trashPath() + "/files/" + name)) << name;
      result += isLeft ? 1 : 0;
    }
    return result;
  }
  void beginAndPause() {
    scan();
    model->cleanSelected();
    model->pause();
    ASSERT_TRUE(becomesTrue([this] { return model->isWaiting(); }));
    ASSERT_GT(left(), 0);
    ASSERT_LT(left(), count);
  }
};

TEST_F(PausedCleanupTest, waitsBetweenItemsAndGoesOnAsOneRun) {
  beginAndPause();
  EXPECT_TRUE(model->isCleaning() && model->paceText().contains(" of ")) << model->paceText().toStdString();
  finish(*model, &CleanupModel::resume);
  EXPECT_EQ(left(), 0);
  EXPECT_EQ(recordedRuns(taskServices()).size(), 1U);
  finish(*model, &CleanupModel::undo);
  EXPECT_EQ(left(), count);
}

TEST_F(PausedCleanupTest, canBeCancelledWhileItWaits) {
  beginAndPause();
  const auto before = left();
  finish(*model, &CleanupModel::cancel);
  EXPECT_EQ(left(), before);
  EXPECT_TRUE(shows(*model, {{"messages", QStringList()}, {"canUndo", true}}));
}

TEST_F(PausedCleanupTest, endsWithTheProgram) {
  beginAndPause();
  const auto before = left();
  model.reset();
  EXPECT_EQ(left(), before);
}

TEST_F(CleanupModelTest, offersNoUndoOfWhatWasRestoredElsewhere) {
  scan();
  clean();
  model->followHistory(readHistory(taskServices()));
  ASSERT_TRUE(model->canUndo()) << "the run can still be undone";
  (void)restoreNow(taskServices(), {recordedRuns(taskServices()).front().runId}, {}, {});
  model->followHistory(readHistory(taskServices()));
  EXPECT_TRUE(shows(*model, {{"canUndo", false}, {"resultText", ""}}));
}

}  // namespace
}  // namespace orvane::test
