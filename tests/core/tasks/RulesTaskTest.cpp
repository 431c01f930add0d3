#include "core/base/text/Json.h"
#include "core/tasks/RulesTask.h"
#include "tests/support/CleanupRules.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {
namespace {

constexpr double day = 86400;

class RulesTaskTest : public TaskFixture {
 public:
  [[nodiscard]] Proposal proposed(std::vector<CleanupRule> wanted, RuleFiles files = RuleFiles::scanned) {
    options.rules = std::move(wanted);
    options.boundary = roots();
    options.files = files;
    auto proposal = proposeRules(taskServices(), options);
    EXPECT_TRUE(proposal);
    return *std::move(proposal);
  }
  [[nodiscard]] std::set<std::string> rowsUnder(const Proposal& proposal, std::uint32_t rule, Lock lock = Lock::none) {
    return rowsOf(proposal, [&](const ProposedRow& row) { return row.group->source == rule && row.lock == lock; });
  }
  [[nodiscard]] RuleAction toLogs() const { return RuleAction::moveToFolder(tree.path("Downloads/Logs")); }

  RuleTrigger logs{.fileExtensions = {{"log"}}};
  RuleTrigger images{.fileExtensions = {{"dmg"}}};
  RulesOptions options;
};

TEST_F(RulesTaskTest, takesEachFileOnceUnderTheFirstRuleThatMovesIt) {
  tree.file("Downloads/a.log", "1234567");
  tree.file("Downloads/Logs/b.log", "12345");
  tree.file("Downloads/Logs/big.log", "1234567890");
  setAge(tree.file("Downloads/c.dmg", "123"), 60 * day);
  tree.file("Downloads/d.txt");
  auto off = ruleFor("Off", logs);
  off.isEnabled = false;
  const auto proposal = proposed({off, ruleFor("Show", images, RuleAction::reviewOnly()),
                                  ruleFor("Show logs", logs, RuleAction::reviewOnly()), ruleFor("Sort", logs, toLogs()),
                                  ruleFor("Big", {.fileExtensions = {{"log"}}, .minimumSizeBytes = 10})});
  EXPECT_THAT(rowsUnder(proposal, 1, Lock::listedOnly), UnorderedElementsAre("Downloads/c.dmg"));
  EXPECT_THAT(rowsUnder(proposal, 2, Lock::listedOnly), UnorderedElementsAre("Downloads/Logs/b.log"));
  EXPECT_THAT(rowsUnder(proposal, 3), UnorderedElementsAre("Downloads/a.log"));
  EXPECT_THAT(rowsUnder(proposal, 4), UnorderedElementsAre("Downloads/Logs/big.log"));
  EXPECT_EQ(proposal.size(), 4U);
  const auto sorted = proposed({ruleFor("Sort", logs, toLogs())});
  EXPECT_EQ(*firstNotice<RowsInPlace>(sorted.notices()), (RowsInPlace{{2, 15}, "Sort"}));
  const auto approval = proposal.approve();
  EXPECT_EQ(approval.toFolders(), (RowSum{1, 7}));
  EXPECT_EQ(approval.toTrash(), (RowSum{1, 10}));

  const auto report = carryOut(taskServices(), approval);
  EXPECT_EQ(report.summary().itemsProcessed, 2);
  EXPECT_EQ(report.summary().bytesReclaimed, 10);
  EXPECT_TRUE(exists(tree.path("Downloads/Logs/a.log")));
  EXPECT_TRUE(exists(tree.path("Downloads/Logs/b.log")));
  EXPECT_TRUE(exists(tree.path("Downloads/c.dmg")));
}

TEST_F(RulesTaskTest, countsAgesToTheMomentOfTheOptions) {
  setAge(tree.file("Downloads/a.log"), 2 * day + 7200);
  const auto aged = ruleFor("Aged", {.minimumAgeDays = 2});
  options.now = ReferenceClock::now() - ReferenceClock::duration(day);
  EXPECT_TRUE(proposed({aged}).empty());
  options.now = ReferenceClock::now();
  EXPECT_EQ(proposed({aged}).size(), 1U);
}

TEST_F(RulesTaskTest, locksFilesWhoseDestinationIsRefused) {
  const auto file = tree.file("Downloads/a.log");
  const auto proposal =
      proposed({ruleFor("Sort", logs, RuleAction::moveToFolder(tree.path("Elsewhere"))), ruleFor("Logs", logs)});
  EXPECT_THAT(rowsUnder(proposal, 0, Lock::refused), UnorderedElementsAre("Downloads/a.log"));
  EXPECT_FALSE(proposal.groups().front().refusal.empty());
  auto selection = proposal.selection();
  selection.selectAll();
  EXPECT_TRUE(proposal.approve(selection).empty());
  EXPECT_TRUE(exists(file));
}

TEST_F(RulesTaskTest, leavesOutARuleThatWouldTakeEverything) {
  tree.file("Downloads/a.log");
  setAge(tree.file("Downloads/c.dmg"), 60 * day);
  const auto proposal = proposed({ruleFor("All", {}), ruleFor("Logs", logs)});
  EXPECT_THAT(rowsOf(proposal), UnorderedElementsAre("Downloads/a.log"));
  const auto* refused = firstNotice<RuleRefused>(proposal.notices());
  ASSERT_NE(refused, nullptr);
  EXPECT_EQ(refused->rule, "All");
  EXPECT_THAT(refused->reason, HasSubstr("every file"));
}

TEST_F(RulesTaskTest, countsWhatARuleDoesNotTake) {
  tree.file("Documents/paper.pdf", "123");
  tree.file("Documents/a.log");
  tree.file("Documents/a.txt");
  options.boundary = Boundary({tree.url("Documents")});
  options.rules = {ruleFor("Papers", {.fileExtensions = {{"pdf"}}})};
  const auto candidates = ruleCandidates(taskServices(), options.boundary);
  ASSERT_TRUE(candidates);
  const auto proposal = proposeRules(taskServices(), options, *candidates);
  EXPECT_TRUE(proposal.empty());
  EXPECT_EQ(*firstNotice<RowsKeptByLabel>(proposal.notices()), (RowsKeptByLabel{{1, 3}, "Papers"}));
  RowsNotTaken expected{"Papers"};
  expected.counts[static_cast<std::size_t>(RuleMismatch::manualLabel)] = 2;
  expected.counts[static_cast<std::size_t>(RuleMismatch::extension)] = 1;
  EXPECT_EQ(*firstNotice<RowsNotTaken>(proposal.notices()), expected);
  options.rules = {ruleFor("Logs", logs)};
  EXPECT_EQ(countRules(taskServices(), options, *candidates), (RowSum{1, 7}));
  TaskMonitor monitor;
  monitor.stop = stopped();
  EXPECT_FALSE(countRules(taskServices(), options, *candidates, monitor));
  EXPECT_FALSE(proposeRules(taskServices(), options, monitor));
}

TEST_F(RulesTaskTest, takesAFileOfOverlappingFoldersOnce) {
  tree.file("Downloads/deep/a.log");
  options.rules = {ruleFor("Logs", logs)};
  options.boundary = Boundary({tree.url("Downloads"), tree.url("Downloads/deep")});
  for (const auto files : {RuleFiles::scanned, RuleFiles::scheduled}) {
    options.files = files;
    EXPECT_EQ(proposeRules(taskServices(), options)->size(), 1U);
  }
}

TEST_F(RulesTaskTest, proposesTheSameAgainFromItsSubject) {
  tree.file("Downloads/node_modules/a.log");
  tree.file("Downloads/b.log");
  for (const auto files : {RuleFiles::scanned, RuleFiles::scheduled}) {
    const auto proposal = proposed({ruleFor("Logs", logs)}, files);
    const auto again = reproposeRules(taskServices(), proposal.subject(), roots(), proposal.countedTo());
    ASSERT_TRUE(again);
    EXPECT_EQ(rowsOf(*again), rowsOf(proposal));
    EXPECT_EQ(again->groups(), proposal.groups());
    EXPECT_EQ(again->subject(), proposal.subject());
  }
  const auto nowhere =
      reproposeRules(taskServices(), proposed({ruleFor("Logs", logs)}).subject(), Boundary(), options.now);
  EXPECT_TRUE(nowhere->empty());
  for (const auto* subject : {"[]", "{}", R"({"rules":{},"files":"scanned"})", R"({"rules":[1],"files":"scanned"})",
                              R"({"rules":[],"files":"all"})"}) {
    EXPECT_THROW((void)reproposeRules(taskServices(), parseJson(subject), roots(), options.now), JsonError) << subject;
  }
}

}  // namespace
}  // namespace orvane::test
