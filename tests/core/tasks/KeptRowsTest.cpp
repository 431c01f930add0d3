#include "core/base/text/Json.h"
#include "core/tasks/CleanTask.h"
#include "core/tasks/DuplicatesTask.h"
#include "core/tasks/KeepTask.h"
#include "core/tasks/OrganizeTask.h"
#include "core/tasks/PlanTask.h"
#include "core/tasks/RulesTask.h"
#include "core/tasks/ScanTask.h"
#include "core/tasks/TidyTask.h"
#include "core/tasks/TrashTask.h"
#include "core/tasks/UninstallTask.h"
#include "tests/core/uninstaller/UninstallerFixture.h"
#include "tests/support/CleanupRules.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {
namespace {

constexpr double tenDays = 864000;

// Two logs alike in ~/Downloads, and an application; "kept" names what is on the list.
class KeptTaskTest : public TaskFixture {
 public:
  KeptTaskTest() {
    for (const char* log : {"Downloads/kept.log", "Downloads/free.log"}) setAge(tree.file(log, "1234567"), tenDays);
    tree.file("Applications/A.app/Contents/Info.plist",
              xmlList({{"CFBundleName", "A"}, {"CFBundleIdentifier", "org.example.a"}}));
    tree.file("Library/Application Support/org.example.a/data", "data");
    tree.file("Library/Preferences/org.example.a.plist", "settings");
  }
  void keep(const std::string& pattern) { keepPatterns(taskServices(), std::vector{pattern}); }

 private:
  const ScopedEnvironment m_home{"HOME", tree.path().c_str()};
};

TEST_F(KeptTaskTest, keptRowsAreInNoProposalAndCounted) {
  keep("~/Downloads/kept.*");
  const auto services = taskServices();
  const auto folder = tree.url("Downloads");
  RulesOptions rulesOptions{.rules = {ruleFor("Logs", {.fileExtensions = {{"log"}}})}, .boundary = roots()};
  auto scheduledOptions = rulesOptions;
  scheduledOptions.files = RuleFiles::scheduled;
  CleaningPlanStep step;
  step.targetFolder = "~/Downloads";
  step.filter = {.extensions = std::vector<std::string>{"log"}};
  step.action = PlannedAction::trash;
  CleaningPlan plan;
  plan.userGoal = "goal";
  plan.steps = {step};
  const auto now = ReferenceClock::now();
  const Rows<const char*, std::optional<Proposal>> proposals{
      {"clean", proposeClean(services, {.folders = {folder}})},
      {"rules", proposeRules(services, rulesOptions)},
      {"scheduled rules", proposeRules(services, scheduledOptions)},
      {"plan", proposePlan(services, plan, PlanReach::boundary, now)},
      {"organize", proposeOrganize(services, {.folder = folder}, now)},
      {"tidy", proposeTidy(services, {.folders = {folder}}, now)},
  };
  for (const auto& [task, proposal] : proposals) {
    SCOPED_TRACE(task);
    ASSERT_TRUE(proposal);
    EXPECT_THAT(rowsOf(*proposal), UnorderedElementsAre("Downloads/free.log"));
    const auto* notice = firstNotice<RowsKept>(proposal->notices());
    ASSERT_NE(notice, nullptr);
    EXPECT_EQ(notice->rows, (RowSum{1, 7}));
  }
}

TEST_F(KeptTaskTest, aScanCountsWhatIsHeldBack) {
  keep("kept.log");
  RowSum kept;
  ScanCompleted end;
  std::vector<std::string> found;
  const TaskMonitor monitor{.keptBack = [&](const RowSum& sum) { kept = sum; }};
  scanFolders(taskServices(), {tree.url("Downloads")}, DeveloperCaches::leaveOut, monitor,
              [&](std::vector<ScanEvent>& batch) {
                for (const auto& event : batch) {
                  if (const auto* item = std::get_if<FileItem>(&event)) found.emplace_back(item->relativePath());
                  if (const auto* completed = std::get_if<ScanCompleted>(&event)) end = *completed;
                }
              });
  EXPECT_THAT(found, UnorderedElementsAre("free.log"));
  EXPECT_EQ(kept, (RowSum{1, 7}));
  EXPECT_EQ(end, (ScanCompleted{1, 7}));
}

TEST_F(KeptTaskTest, aKeptCopyStaysAndTheOthersGo) {
  keep("~/Downloads/kept.log");
  const auto proposal = proposeDuplicates(taskServices(), {.folders = {tree.url("Downloads")}});
  ASSERT_EQ(proposal->size(), 2U);
  EXPECT_THAT(rowsOf(*proposal, [](const ProposedRow& row) { return row.choice == Choice::selected; }),
              UnorderedElementsAre("Downloads/free.log"));
  EXPECT_THAT(rowsOf(*proposal, [](const ProposedRow& row) { return row.lock == Lock::kept; }),
              UnorderedElementsAre("Downloads/kept.log"));
  auto selection = proposal->selection();
  applyKeepStrategy(*proposal, DuplicateKeepStrategy::keepShortestPath, selection);
  EXPECT_EQ(carryOut(taskServices(), proposal->approve(selection)).moved(), 1);
  EXPECT_TRUE(exists(tree.path("Downloads/kept.log")));
  keep("~/Downloads");
  tree.file("Downloads/free.log", "1234567");
  EXPECT_TRUE(proposeDuplicates(taskServices(), {.folders = {tree.url("Downloads")}})->empty());
}

TEST_F(KeptTaskTest, leftoversAndApplicationsStay) {
  keep("~/Library/Preferences/*");
  const UninstallOptions options{tree.url("Applications/A.app"), Leftovers::take};
  EXPECT_THAT(rowsOf(proposeUninstall(taskServices(), options)),
              UnorderedElementsAre("Applications/A.app", "Library/Application Support/org.example.a"));
  keep("Info.plist");
  const auto proposal = proposeUninstall(taskServices(), options);
  EXPECT_EQ(proposal.row(0).lock, Lock::refused) << "something in it is kept";
}

TEST_F(KeptTaskTest, whatIsNamedOutrightIsRefusedWithTheWayOut) {
  keep("~/Downloads/kept.log");
  const auto places = std::vector{tree.url("Downloads/kept.log"), tree.url("Downloads/free.log")};
  const auto proposal = proposeTrash(taskServices(), places, roots());
  ASSERT_EQ(proposal.row(0).lock, Lock::refused);
  EXPECT_THAT(proposal.row(0).group->refusal, HasSubstr("orvanectl keep remove '~/Downloads/kept.log'"));
  EXPECT_EQ(proposal.approve().rows().size(), 1U);
}

TEST_F(KeptTaskTest, whatIsKeptAfterItWasShownStays) {
  const auto proposal = proposeClean(taskServices(), {.folders = {tree.url("Downloads")}});
  const auto saved = savedText(proposal->approve());
  keep("~/Downloads/kept.log");
  const auto applied = proposeSaved(taskServices(), SavedProposal::decode(saved), roots());
  EXPECT_THAT(rowsOf(*applied, [](const ProposedRow& row) { return row.lock == Lock::refused; }),
              UnorderedElementsAre("Downloads/kept.log"));
  const auto report = carryOut(taskServices(), proposal->approve());
  EXPECT_EQ(report.moved(), 1);
  EXPECT_EQ(report.failed, 1);
  EXPECT_TRUE(exists(tree.path("Downloads/kept.log")));
}

}  // namespace
}  // namespace orvane::test
