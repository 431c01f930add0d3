#include "core/tasks/CleanTask.h"
#include "core/tasks/TrashTask.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {
namespace {

class ProposalTest : public TaskFixture {
 public:
  [[nodiscard]] Proposal scanned() {
    auto proposal = proposeClean(taskServices(), {.folders = {tree.url("Downloads")}});
    EXPECT_TRUE(proposal);
    return *std::move(proposal);
  }
};

TEST_F(ProposalTest, onlyRowsThatWereChosenAndCanBeAreApproved) {
  ProposalBuilder builder(TaskKind::plan, roots(), ReferenceClock::now());
  for (const auto choice : {Choice::selected, Choice::unselected, Choice::locked, Choice::selected}) {
    FileItem::Fields fields;
    fields.url = tree.url("Downloads/x");
    fields.fileSize = 5;
    builder.add(FileItem(std::move(fields)), {choice, choice == Choice::locked ? Lock::manualLabel : Lock::none});
  }
  const auto proposal = builder.take();
  EXPECT_THAT(proposal.approve().rows(), ElementsAre(0, 3));
  auto selection = proposal.selection();
  EXPECT_EQ(selection.count(), 2);
  EXPECT_EQ(selection.bytes(), 10);
  selection.selectAll();
  EXPECT_THAT(proposal.approve(selection).rows(), ElementsAre(0, 1, 3));
  // A selection of something else lets nothing in that is locked or not there.
  Selection foreign;
  for (int i = 0; i < 9; ++i) foreign.append(Choice::selected, 1);
  EXPECT_THAT(proposal.approve(foreign).rows(), ElementsAre(0, 1, 3));
  EXPECT_THAT(proposal.approve(Selection()).rows(), IsEmpty());
}

TEST_F(ProposalTest, aGroupThatKeepsOneKeepsOne) {
  ProposalBuilder builder(TaskKind::duplicates, roots(), ReferenceClock::now());
  const auto group = builder.addGroup({.keepsOne = true});
  for (int i = 0; i < 3; ++i) {
    FileItem::Fields fields;
    fields.url = tree.url("Downloads/" + std::to_string(i));
    builder.add(FileItem(std::move(fields)), {Choice::selected, Lock::none, group});
  }
  EXPECT_THAT(builder.take().approve().rows(), ElementsAre(1, 2));
}

TEST_F(ProposalTest, whatIsNotTheItemThatWasShownStays) {
  tree.file("Downloads/same.log", "same");
  const auto replaced = tree.file("Downloads/replaced.log", "before");
  const auto written = tree.file("Downloads/written.log", "before");
  const auto linked = tree.file("Downloads/linked.log", "before");
  tree.folder("Downloads/folder");
  tree.file("Downloads/folder/in", "x");
  const auto clean = scanned();
  const auto whole = proposeTrash(taskServices(), std::vector{tree.url("Downloads/folder")}, roots());
  EXPECT_EQ(clean.size(), 4U);

  fs::remove(replaced);
  tree.file("Downloads/replaced.log", "before");
  tree.file("Downloads/written.log", "after!");
  fs::remove(linked);
  fs::create_symlink(written, linked);
  tree.file("Downloads/arrived.log", "new");
  fs::rename(tree.path("Downloads/folder"), tree.path("Downloads/other"));
  tree.folder("Downloads/folder");

  const auto report = carryOut(taskServices(), clean.approve());
  EXPECT_EQ(report.moved(), 1);
  EXPECT_EQ(report.failed, 3);
  for (const auto& outcome : report.outcomes) {
    const bool isSame = outcome.source == tree.url("Downloads/same.log");
    EXPECT_EQ(outcome.result, isSame ? MoveResult::moved : MoveResult::changed) << outcome.source.path();
  }
  EXPECT_TRUE(exists(tree.path("Downloads/arrived.log")));
  EXPECT_EQ(carryOut(taskServices(), whole.approve()).moved(), 0);
  // A new file in a folder does not make it another folder.
  const auto again = proposeTrash(taskServices(), std::vector{tree.url("Downloads/other")}, roots());
  tree.file("Downloads/other/late", "y");
  EXPECT_EQ(carryOut(taskServices(), again.approve()).moved(), 1);
}

TEST_F(ProposalTest, aBoundaryWithoutFoldersAllowsNothing) {
  tree.file("Downloads/a.log", "x");
  ProposalBuilder builder(TaskKind::clean, Boundary(), ReferenceClock::now());
  scanned().forEach([&](std::size_t, const ProposedRow& row) { builder.add(row.item, {Choice::selected}); });
  const auto report = carryOut(taskServices(), builder.take().approve());
  EXPECT_EQ(report.moved(), 0);
  EXPECT_EQ(report.outcomes.at(0).result, MoveResult::refused);
  EXPECT_FALSE(report.runId);
}

TEST_F(ProposalTest, trashSizesEverythingAndSaysWhatItRefuses) {
  tree.file("Downloads/folder/.hidden/big", std::string(1000, 'x'));
  tree.file("Downloads/folder/node_modules/a", std::string(100, 'x'));
  fs::create_hard_link(tree.path("Downloads/folder/node_modules/a"), tree.path("Downloads/folder/b"));
  const auto proposal = proposeTrash(taskServices(),
                                     std::vector{tree.url("Downloads/folder"), tree.url("Downloads/folder/b"),
                                                 tree.url("none"), tree.url("Downloads/none")},
                                     roots());
  const auto approval = proposal.approve();
  EXPECT_EQ(approval.toTrash(), (RowSum{1, 1100}));
  EXPECT_THAT(rowsOf(proposal, [](const auto& row) { return row.lock == Lock::refused; }),
              UnorderedElementsAre("none", "Downloads/none"));
  EXPECT_THAT(proposal.groups().front().refusal, HasSubstr("Operation denied"));
  EXPECT_EQ(carryOut(taskServices(), approval).toTrash, (RowSum{1, 1100}));
}

TEST_F(ProposalTest, cleanLeavesOutWhatLiesInATrash) {
  tree.file("Downloads/.Trash-0/files/a.log");
  tree.file("Downloads/a.log", "1234567");
  const auto proposal = scanned();
  EXPECT_THAT(rowsOf(proposal), UnorderedElementsAre("Downloads/a.log"));
}

}  // namespace
}  // namespace orvane::test
