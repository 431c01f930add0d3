#include "core/safety/records/UndoError.h"
#include "core/tasks/History.h"
#include "core/tasks/RestoreSwap.h"
#include "core/tasks/RestoreTask.h"
#include "core/tasks/TrashTask.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {
namespace {

class RestoreTask : public TaskFixture {
 public:
  // Trashes new files of these names as one run.
  Uuid trashRun(const std::vector<std::string>& names) {
    std::vector<FileUrl> places;
    for (const auto& name : names) places.emplace_back(tree.file("Downloads/" + name, name));
    const auto report = carryOut(taskServices(), proposeTrash(taskServices(), places, roots()).approve());
    EXPECT_EQ(report.moved(), static_cast<std::int64_t>(names.size()));
    return report.runId.value();
  }
  [[nodiscard]] bool isThere(const std::string& name) const { return exists(tree.path("Downloads/" + name)); }
  [[nodiscard]] bool isRestored() const { return journal->getRuns().front().isRestored; }
};

TEST_F(RestoreTask, bringsBackExactlyWhatWasApproved) {
  const auto run = trashRun({"a", "bb", "ccc"});
  const auto proposal = proposeRestore(taskServices(), {run});
  ASSERT_EQ(proposal.size(), 3U);
  EXPECT_EQ(*proposal.row(0).destinationFolder(), tree.url("Downloads"));
  auto selection = proposal.selection();
  selection.set(1, Selection::Whether::unselected);
  EXPECT_EQ(proposal.approve(selection).toFolders(), (RowSum{2, 4}));
  auto report = carryOut(taskServices(), proposal.approve(selection));
  EXPECT_EQ(report.toFolders, (RowSum{2, 4}));
  EXPECT_EQ(report.runId, std::nullopt) << "nothing that could be undone";
  EXPECT_EQ(report.outcomes[0].destination, tree.url("Downloads/a"));
  EXPECT_TRUE(isThere("a") && !isThere("bb") && isThere("ccc"));
  EXPECT_FALSE(isRestored());

  const auto rest = proposeRestore(taskServices(), {run});
  EXPECT_EQ(rest.size(), 1U);
  EXPECT_EQ(carryOut(taskServices(), rest.approve()).moved(), 1);
  EXPECT_TRUE(isRestored());
  // All of it again.
  const auto none = proposeRestore(taskServices(), {run});
  EXPECT_TRUE(none.approve().empty());
  EXPECT_THAT(restoreWarnings(none, {}), ElementsAre("Was brought back already: a", "Was brought back already: bb",
                                                     "Was brought back already: ccc"));
}

TEST_F(RestoreTask, leavesWhatIsNotTheItemThatWasShown) {
  const auto run = trashRun({"same", "replaced", "written", "gone", "late"});
  const auto place = [&](std::size_t at) { return journal->getEntries(run).at(at).trashedURL.path(); };
  const auto content = contentOf(place(4));
  fs::remove(place(4));
  const auto proposal = proposeRestore(taskServices(), {run});
  fs::remove(place(1));
  tree.file(".local/share/Trash/files/replaced", "another");
  tree.file(".local/share/Trash/files/written", "more than before");
  fs::remove(place(3));
  tree.file(".local/share/Trash/files/late", content);

  const auto report = carryOut(taskServices(), proposal.approve());
  EXPECT_EQ(report.moved(), 1);
  EXPECT_EQ(report.failed, 3) << "nobody approved what was not there";
  EXPECT_TRUE(isThere("same"));
  EXPECT_THAT(restoreWarnings(proposal, report), Each(HasSubstr("Item was emptied from Trash or moved: ")));
  EXPECT_EQ(contentOf(place(1)), "another");
}

TEST_F(RestoreTask, refusesItemsThatCannotComeBackBeforeAnybodyIsAsked) {
  const auto run = trashRun({"same", "replaced", "gone"});
  const auto place = [&](std::size_t at) { return journal->getEntries(run).at(at).trashedURL.path(); };
  fs::remove(place(1));
  tree.file(".local/share/Trash/files/replaced", "another");
  fs::remove(place(2));
  tree.file("Downloads/replaced", "in its place");

  const auto proposal = proposeRestore(taskServices(), {run});
  EXPECT_THAT(restoreWarnings(proposal, {}), ElementsAre("Item was emptied from Trash or moved: replaced",
                                                         "Item was emptied from Trash or moved: gone"));
  EXPECT_EQ(proposal.approve().toFolders(), (RowSum{1, 4}));
  EXPECT_TRUE(proposeMakingRoom(taskServices(), proposal.approve()).empty()) << "nothing comes to take that place";
  EXPECT_EQ(carryOut(taskServices(), proposal.approve()).moved(), 1);
  EXPECT_EQ(contentOf(place(1)), "another");
  EXPECT_TRUE(isRestored());
  EXPECT_EQ(remainingCount(taskServices(), run), 0);
}

TEST_F(RestoreTask, aRunOfWhichNothingIsLeftCountsAsRestored) {
  const auto run = trashRun({"gone"});
  fs::remove(journal->getEntries(run).at(0).trashedURL.path());
  EXPECT_THAT(restoreNow(taskServices(), {run}).warnings, ElementsAre("Item was emptied from Trash or moved: gone"));
  EXPECT_TRUE(isRestored());
  EXPECT_EQ(remainingCount(taskServices(), run), 0);
}

TEST_F(RestoreTask, countsWhatAStopLeaves) {
  const auto run = trashRun({"a", "bb"});
  const auto approval = proposeRestore(taskServices(), {run}).approve();
  const auto report = carryOut(taskServices(), approval, {}, stopped());
  EXPECT_EQ(report.left, 2);
  EXPECT_FALSE(isRestored());
  // Somebody else is faster.
  EXPECT_EQ(journal->restoreRun(run).restoredCount, 2);
  EXPECT_EQ(carryOut(taskServices(), approval).failed, 2);
}

TEST_F(RestoreTask, refusesWhatNoRunHas) {
  EXPECT_THROW(static_cast<void>(proposeRestore(taskServices(), {Uuid::random()})), UndoError);
  const auto run = trashRun({"a"});
  EXPECT_TRUE(proposeRestore(taskServices(), {run, {Uuid::random()}}).empty());
}

TEST_F(RestoreTask, historyTellsWhatRunsWereAndWhereTheirItemsAre) {
  const auto first = trashRun({"a", "bb"});
  const auto second = trashRun({"ccc"});
  static_cast<void>(carryOut(taskServices(), proposeRestore(taskServices(), {second}).approve()));
  const auto entries = recordedEntries(taskServices(), first);
  static_cast<void>(carryOut(taskServices(), proposeRestore(taskServices(), {first, {entries.at(0).id}}).approve()));
  const auto history = readHistory(taskServices());
  ASSERT_EQ(history.runs.size(), 2U);
  EXPECT_EQ(history.runs[0].state, RunState::restored);
  EXPECT_FALSE(history.runs[0].canBeRestored());
  EXPECT_EQ(history.runs[1].state, RunState::inTrash);
  EXPECT_EQ(history.runs[1].kind, RunKind::clean);
  EXPECT_EQ(history.runs[1].remaining, 1);
  EXPECT_TRUE(history.runs[1].canBeRestored());
  EXPECT_EQ(history.lifetimeReclaimedBytes, 2);
  const auto now = [&](std::size_t at) { return recordedItems(taskServices(), first).at(at).state; };
  EXPECT_EQ(now(0), ItemState::restored);
  EXPECT_EQ(now(1), ItemState::inTrash);
  fs::remove(entries.at(1).trashedURL.path());
  EXPECT_EQ(now(1), ItemState::gone);
  tree.file(".local/share/Trash/files/bb", "another");
  EXPECT_EQ(now(1), ItemState::gone);
  EXPECT_THAT(recordedEntries(taskServices(), Uuid::random()), IsEmpty());
}

}  // namespace
}  // namespace orvane::test
