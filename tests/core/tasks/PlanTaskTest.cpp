#include "core/tasks/PlanTask.h"

#include "core/base/text/Json.h"
#include "core/plans/CleaningPlanSchema.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {
namespace {

using Why = FolderLeftOut::Why;

CleaningPlanStep stepFor(std::string folder, PlannedAction action, CleaningFilter filter = {.minimumSizeBytes = 0}) {
  CleaningPlanStep step;
  step.targetFolder = std::move(folder);
  step.filter = std::move(filter);
  step.action = action;
  return step;
}

CleaningPlanStep moveTo(std::string folder, std::string destination, CleaningFilter filter = {.minimumSizeBytes = 0}) {
  auto step = stepFor(std::move(folder), PlannedAction::move, std::move(filter));
  step.destinationFolder = std::move(destination);
  return step;
}

class PlanTaskTest : public TaskFixture {
 public:
  [[nodiscard]] Proposal propose(std::vector<CleaningPlanStep> steps, PlanReach reach = PlanReach::boundary,
                                 Date now = ReferenceClock::now()) {
    plan.userGoal = "goal";
    plan.steps = std::move(steps);
    auto proposal = proposePlan(taskServices(), plan, reach, now);
    EXPECT_TRUE(proposal);
    return *std::move(proposal);
  }
  [[nodiscard]] std::set<std::string> lockedRows(const Proposal& proposal, Lock lock) const {
    return rowsOf(proposal, [&](const ProposedRow& row) { return row.lock == lock; });
  }
  [[nodiscard]] static std::vector<FolderLeftOut> leftOut(const Proposal& proposal) {
    std::vector<FolderLeftOut> result;
    for (const auto& notice : proposal.notices()) {
      if (const auto* found = std::get_if<FolderLeftOut>(&notice)) result.push_back(*found);
    }
    return result;
  }

  CleaningPlan plan;

 private:
  const ScopedEnvironment m_home{"HOME", tree.path().c_str()};
};

TEST_F(PlanTaskTest, rowsStandByActionAndLabel) {
  const Rows<PlannedAction, const char*, Choice, Lock> rows{
      {PlannedAction::move, "safe.log", Choice::selected, Lock::none},
      {PlannedAction::move, "Screenshot 1.png", Choice::selected, Lock::none},
      {PlannedAction::move, "manual.txt", Choice::selected, Lock::none},
      {PlannedAction::trash, "safe.log", Choice::selected, Lock::none},
      {PlannedAction::trash, "Screenshot 1.png", Choice::unselected, Lock::none},
      {PlannedAction::trash, "manual.txt", Choice::locked, Lock::manualLabel},
      {PlannedAction::review, "safe.log", Choice::locked, Lock::listedOnly},
      {PlannedAction::review, "Screenshot 1.png", Choice::locked, Lock::listedOnly},
      {PlannedAction::review, "manual.txt", Choice::locked, Lock::listedOnly},
  };
  for (const auto& [action, name, choice, lock] : rows) {
    SCOPED_TRACE(std::string(rawValue(action)) + " of " + name);
    const auto file = tree.file("Downloads/" + std::string(name));
    setAge(file, 60 * 86400.0);
    auto step = stepFor("~/Downloads", action);
    if (action == PlannedAction::move) step.destinationFolder = "~/Downloads/Sorted";
    const auto proposal = propose({step});
    ASSERT_EQ(proposal.size(), 1U);
    EXPECT_EQ(proposal.row(0).choice, choice);
    EXPECT_EQ(proposal.row(0).lock, lock);
    EXPECT_TRUE(proposal.row(0).item.identity());
    fs::remove(file);
  }
}

TEST_F(PlanTaskTest, everyFileGoesWhereItWasShownToGo) {
  tree.files({"Downloads/report.pdf", "Downloads/thesis.pdf", "Downloads/Makefile"});
  tree.file("Downloads/old.log", "123");
  const auto proposal = propose({moveTo("~/Downloads", "~/Downloads", {.extensions = std::vector<std::string>{"pdf"}}),
                                 stepFor("~/Downloads", PlannedAction::trash)});
  EXPECT_EQ(proposal.size(), 4U);
  std::map<std::string, std::string> destinations;
  proposal.forEach([&](std::size_t, const ProposedRow& row) {
    const auto* folder = row.destinationFolder();
    destinations[std::string(row.item.url().lastPathComponent())] = folder == nullptr ? "" : folder->path();
    EXPECT_EQ(row.group->source, folder == nullptr ? 1U : 0U);
  });
  EXPECT_EQ(destinations["report.pdf"], tree.path("Downloads/Documents/PDFs"));
  EXPECT_EQ(destinations["thesis.pdf"], tree.path("Downloads/Documents/PDFs"));
  EXPECT_EQ(destinations["old.log"], "");
  EXPECT_EQ(proposal.groups().size(), 2U) << "one for each step and destination";

  EXPECT_EQ(proposal.selection().count(), 3);
  const auto report = carryOut(taskServices(), proposal.approve(without(proposal, "thesis.pdf")));
  EXPECT_EQ(report.toFolders.count, 1);
  EXPECT_EQ(report.toTrash, (RowSum{1, 3}));
  EXPECT_TRUE(exists(tree.path("Downloads/Documents/PDFs/report.pdf")));
  EXPECT_TRUE(exists(tree.path("Downloads/thesis.pdf")));
}

TEST_F(PlanTaskTest, aFileInPlaceIsLockedAndCounted) {
  tree.file("Downloads/report.pdf", "1234567");
  tree.folder("Downloads/Documents");
  tree.link("Downloads/Documents/PDFs", tree.path("Downloads"));
  const auto proposal = propose({moveTo("~/Downloads", "~/Downloads")});
  EXPECT_THAT(lockedRows(proposal, Lock::inPlace), ElementsAre("Downloads/report.pdf"));
  const auto* inPlace = firstNotice<RowsInPlace>(proposal.notices());
  ASSERT_TRUE(inPlace);
  EXPECT_EQ(inPlace->rows, (RowSum{1, 7}));
  EXPECT_TRUE(proposal.approve().empty());
}

TEST_F(PlanTaskTest, aDestinationThatIsRefusedLocksItsRows) {
  tree.file("Downloads/a.txt");
  tree.folder("Elsewhere");
  for (const auto& destination : {tree.path("Elsewhere"), tree.link("Downloads/out", tree.path("Elsewhere")),
                                  std::string("/etc"), std::string("~"), std::string("~/Downloads/../New")}) {
    const auto proposal = propose({moveTo("~/Downloads", destination)});
    ASSERT_EQ(proposal.size(), 1U);
    EXPECT_EQ(proposal.row(0).lock, Lock::refused) << destination;
    EXPECT_FALSE(proposal.row(0).group->refusal.empty());
    auto selection = proposal.selection();
    selection.selectAll();
    EXPECT_TRUE(proposal.approve(selection).empty());
    const auto json = planMatchesJson(plan, proposal);
    EXPECT_EQ(json[0]["isSelected"], false);
    EXPECT_EQ(json[0]["canExecute"], false);
  }
}

TEST_F(PlanTaskTest, saysWhichFoldersItLeavesOutAndLocksTheirSteps) {
  tree.file("Downloads/a.log");
  tree.file("Elsewhere/b.log");
  const std::vector<CleaningPlanStep> steps{
      stepFor("~/None", PlannedAction::trash), stepFor("~/Elsewhere", PlannedAction::trash),
      stepFor(" ~/Elsewhere/ ", PlannedAction::trash), stepFor("~", PlannedAction::trash),
      stepFor("~/Downloads", PlannedAction::trash)};
  const auto run = propose(steps);
  const auto named = leftOut(run);
  ASSERT_EQ(named.size(), 3U);
  EXPECT_EQ(named[0].why, Why::missing);
  EXPECT_EQ(named[1], (FolderLeftOut{tree.url("Elsewhere"), Why::notGranted}));
  EXPECT_EQ(named[2].why, Why::refused);
  // The step that was left out takes the file first all the same, and another one must not move it then.
  EXPECT_THAT(lockedRows(run, Lock::listedOnly), ElementsAre("Downloads/a.log"));

  const auto preview = propose(steps, PlanReach::everyFolder);
  EXPECT_EQ(leftOut(preview)[1].why, Why::listedOnly);
  EXPECT_THAT(lockedRows(preview, Lock::listedOnly), UnorderedElementsAre("Downloads/a.log", "Elsewhere/b.log"));
}

TEST_F(PlanTaskTest, countsAgesToItsMoment) {
  setAge(tree.file("Downloads/a.log"), 29.5 * 86400);
  const auto now = ReferenceClock::now();
  const std::vector steps{stepFor("~/Downloads", PlannedAction::trash, {.minimumAgeDays = 30})};
  EXPECT_TRUE(propose(steps, PlanReach::boundary, now).empty());
  const auto later = propose(steps, PlanReach::boundary, now + std::chrono::hours(24));
  EXPECT_EQ(later.size(), 1U);
  EXPECT_EQ(later.countedTo(), now + std::chrono::hours(24));
}

TEST_F(PlanTaskTest, looksAtDeveloperCachesWhereThePlanNamesThem) {
  tree.file("Downloads/Library/Developer/CoreSimulator/Caches/dyld/x");
  EXPECT_TRUE(propose({stepFor("~/Downloads", PlannedAction::trash)}).empty());
  const auto named = propose(
      {stepFor("~/Downloads", PlannedAction::trash,
               {.categories = std::vector{ScanCategory::logs, ScanCategory::developerCaches}, .minimumSizeBytes = 0})});
  EXPECT_THAT(rowsOf(named), ElementsAre("Downloads/Library/Developer/CoreSimulator/Caches"));
}

TEST_F(PlanTaskTest, logsMayGoWhereTheCachesBesideThemAreGranted) {
  tree.file("Library/Logs/app.log");
  const std::vector steps{stepFor("~/Library/Logs", PlannedAction::trash)};
  EXPECT_EQ(leftOut(propose(steps)).at(0).why, Why::notGranted);
  tree.folder("Library/Caches");
  folders.saveBookmark(tree.url("Library/Caches"));
  EXPECT_THAT(rowsOf(propose(steps)), ElementsAre("Library/Logs/app.log"));
}

TEST_F(PlanTaskTest, aPlanThatValidationRefusesHasNoRow) {
  tree.file("Downloads/a.log");
  const auto proposal = propose({moveTo("~/Downloads", "~/Downloads", {})});
  EXPECT_TRUE(proposal.empty());
  const auto* refused = firstNotice<PlanRefused>(proposal.notices());
  ASSERT_TRUE(refused);
  EXPECT_EQ(*refused, (PlanRefused{"Filter criteria must specify at least one filter attribute.", true}));
  EXPECT_FALSE(firstNotice<PlanRefused>(propose({stepFor("/usr", PlannedAction::trash)}).notices())->sortsWholeFolder);
}

TEST_F(PlanTaskTest, canBeProposedAgainFromItsSubject) {
  tree.file("Downloads/a.log");
  tree.file("Elsewhere/b.log");
  const auto first =
      propose({stepFor("~/Downloads", PlannedAction::trash), stepFor("~/Elsewhere", PlannedAction::trash)});
  const auto saved = parseJson(jsonText(first.subject()));
  const auto again = reproposePlan(taskServices(), saved, roots(), first.countedTo());
  ASSERT_TRUE(again);
  EXPECT_EQ(rowsOf(*again), rowsOf(first));
  EXPECT_EQ(again->countedTo(), first.countedTo());
  EXPECT_EQ(again->subject(), first.subject());

  const auto elsewhere = reproposePlan(taskServices(), saved, Boundary({tree.url("Elsewhere")}), first.countedTo());
  ASSERT_TRUE(elsewhere);
  EXPECT_THAT(rowsOf(*elsewhere), ElementsAre("Elsewhere/b.log"));
  for (const char* bad : {"{}", "[]", R"({"plan":7})", R"({"plan":{"steps":[]}})"}) {
    EXPECT_THROW(static_cast<void>(reproposePlan(taskServices(), parseJson(bad), roots(), first.countedTo())),
                 JsonError)
        << bad;
  }
}

TEST_F(PlanTaskTest, stopsWithoutAProposal) {
  tree.file("Downloads/a.log");
  plan.userGoal = "goal";
  plan.steps = {stepFor("~/Downloads", PlannedAction::trash)};
  EXPECT_FALSE(proposePlan(taskServices(), plan, PlanReach::boundary, ReferenceClock::now(), {stopped()}));
}

}  // namespace
}  // namespace orvane::test
