#include "core/tasks/PlanConditions.h"

#include "core/base/files/HomeFolder.h"
#include "core/base/text/Json.h"
#include "core/localization/LocalizedStrings.h"
#include "core/plans/OfflineHeuristicParser.h"
#include "core/tasks/AskTask.h"
#include "core/tasks/Folders.h"
#include "core/tasks/PlanTask.h"
#include "core/tasks/RequestPresets.h"
#include "core/tasks/RuleFromPlan.h"
#include "core/tasks/RulesTask.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {
namespace {

const RuleTrigger earlier{.folderPath = "/home/user/Downloads",
                          .fileExtensions = {{"png", "jpg"}},
                          .categories = {{ScanCategory::screenshots}},
                          .minimumAgeDays = 30};

TEST(ChangedConditions, areWiderWhereOneFileMoreCouldFit) {
  const Rows<const char*, void (*)(RuleTrigger&), bool> rows{
      {"older", [](RuleTrigger& later) { later.minimumAgeDays = 60; }, true},
      {"younger", [](RuleTrigger& later) { later.minimumAgeDays = 29; }, false},
      {"any age", [](RuleTrigger& later) { later.minimumAgeDays.reset(); }, false},
      {"a size as well", [](RuleTrigger& later) { later.minimumSizeBytes = 1; }, true},
      {"fewer extensions", [](RuleTrigger& later) { later.fileExtensions = {{"png"}}; }, true},
      {"another extension", [](RuleTrigger& later) { later.fileExtensions->back() = "pdf"; }, false},
      {"any extension", [](RuleTrigger& later) { later.fileExtensions.reset(); }, false},
      {"an empty list", [](RuleTrigger& later) { later.fileExtensions->clear(); }, false},
      {"any category", [](RuleTrigger& later) { later.categories.reset(); }, false},
      {"another folder", [](RuleTrigger& later) { later.folderPath = "/home/user/Desktop"; }, false},
      {"a name as well", [](RuleTrigger& later) { later.namePattern = "Screen"; }, true},
  };
  for (const auto& [name, change, narrows] : rows) {
    auto later = earlier;
    change(later);
    EXPECT_EQ(onlyNarrows(earlier, later), narrows) << name;
  }
}

class PlanConditionsTask : public TaskFixture {
 public:
  static constexpr double day = 86400;

  std::string aged(const std::string& name, double days) const {
    auto path = tree.file("Downloads/" + name, "1234567");
    setAge(path, days * day);
    return path;
  }
  PlannedAnswer asked(const std::string& request) { return askPlanner(taskServices(), request, AIProvider::heuristic); }
  Proposal proposed(const PlannedAnswer& answer) {
    return proposeAnswer(taskServices(), answer, PlanReach::boundary, ReferenceClock::now()).value();
  }

 private:
  const ScopedEnvironment m_home{"HOME", tree.path().c_str()};
};

TEST_F(PlanConditionsTask, keepOnlyWhatWasChosenAndIsStillTheSame) {
  aged("a.pdf", 90);
  aged("b.pdf", 90);
  const auto replaced = aged("c.pdf", 90);
  aged("d.pdf", 40);
  const auto answer = asked("organize files older than 30 days in downloads");
  const auto before = proposed(answer);
  const auto chosen = without(before, "a.pdf");
  fs::remove(replaced);
  tree.file("Downloads/c.pdf", "another");
  setAge(replaced, 91 * day);
  aged("new.pdf", 90);

  auto conditions = conditionsOf(answer).value();
  conditions.minimumAgeDays = 60;
  const auto changed = withConditions(answer, conditions, "goal");
  const auto after = proposed(changed);
  const auto kept = keptSelection(before, chosen, after);
  EXPECT_EQ(rowsOf(after).size(), 4U);
  std::set<std::string> selected;
  for (const auto index : kept.selected()) selected.emplace(after.row(index).item.url().lastPathComponent());
  EXPECT_THAT(selected, UnorderedElementsAre("b.pdf"));
}

TEST_F(PlanConditionsTask, moveADestinationThatIsThePlansOwnFolder) {
  setAge(tree.file("Desktop/report.pdf"), 60 * day);
  folders.saveBookmark(tree.url("Desktop"));
  const auto answer = asked("organize files older than 30 days in downloads");
  auto conditions = conditionsOf(answer).value();
  conditions.folderPath = tree.path("Desktop");
  const auto proposal = proposed(withConditions(answer, conditions, "goal"));
  ASSERT_EQ(proposal.size(), 1U);
  EXPECT_EQ(proposal.row(0).destinationFolder()->path(), tree.path("Desktop/Documents/PDFs"));
}

TEST_F(PlanConditionsTask, holdInEveryFolderOfAPlanForSeveral) {
  setAge(tree.file("Desktop/report.pdf"), 60 * day);
  folders.saveBookmark(tree.url("Desktop"));
  aged("a.pdf", 60);
  aged("b.pdf", 40);
  const auto answer = asked("organize files older than 30 days in downloads and desktop");
  ASSERT_EQ(answer.plan.steps.size(), 2U);
  auto conditions = conditionsOf(answer).value();
  EXPECT_FALSE(conditions.folderPath);
  conditions.minimumAgeDays = 50;
  const auto changed = withConditions(answer, conditions, "goal");
  EXPECT_EQ(changed.plan.summary, answer.plan.summary);
  EXPECT_EQ(rowsOf(proposed(changed)).size(), 2U);

  auto mixed = answer;
  mixed.plan.steps.back().filter.minimumAgeDays = 7;
  EXPECT_FALSE(conditionsOf(mixed)) << "no one value stands for both";
}

TEST_F(PlanConditionsTask, thatSelectNothingByAreRefused) {
  const auto answer = asked("delete files older than 30 days");
  auto conditions = conditionsOf(answer).value();
  conditions.minimumAgeDays.reset();
  const auto proposal = proposed(withConditions(answer, conditions, "goal"));
  EXPECT_NE(firstNotice<PlanRefused>(proposal.notices()), nullptr);
  EXPECT_TRUE(proposal.empty());
}

class RequestPresetsTask : public PlanConditionsTask {};

TEST_F(RequestPresetsTask, areUnderstoodInEveryLanguageAsInEnglish) {
  for (const auto key : requestPresets()) {
    const auto english = asked(std::string(LocalizedStrings::lookup(AppLanguage::en, key)));
    for (const auto language : allAppLanguages) {
      const std::string text(LocalizedStrings::lookup(language, key));
      SCOPED_TRACE(text);
      const auto answer = asked(text);
      const bool isForOrganizer = answer.understanding.room && answer.understanding.room->room == Room::organize;
      EXPECT_TRUE(answer.understanding.isSure() || isForOrganizer) << rawValue(answer.understanding.doubt);
      ASSERT_EQ(answer.plan.steps.size(), 1U);
      EXPECT_EQ(answer.plan.steps[0].targetFolder, english.plan.steps[0].targetFolder);
      EXPECT_EQ(answer.plan.steps[0].action, english.plan.steps[0].action);
      EXPECT_EQ(answer.plan.steps[0].filter.toJson(), english.plan.steps[0].filter.toJson());
    }
  }
}

TEST_F(RequestPresetsTask, areOfferedOnlyWhereTheyTakeSomething) {
  const auto services = taskServices();
  EXPECT_THAT(usefulPresets(services, {}), ElementsAre());
  aged("new.pdf", 0);
  EXPECT_THAT(usefulPresets(services, {}), ElementsAre("agent.preset_sort"));
  aged("Screenshot 2026-01-01 at 10.00.00.png", 60);
  setAge(tree.file("Desktop/Screenshot 2026-01-01 at 10.00.00.png"), 60 * day);
  EXPECT_THAT(usefulPresets(services, {}), ElementsAre("agent.preset_screenshots", "agent.preset_sort"))
      << "the desktop is not granted";
  folders.saveBookmark(tree.url("Desktop"));
  EXPECT_THAT(usefulPresets(services, {}),
              ElementsAre("agent.preset_screenshots", "agent.preset_sort", "agent.preset_desktop_screenshots"));
}

CleaningPlan planned(const char* prompt) {
  return OfflineHeuristicParser().parse(prompt);
}

TEST(RuleOfPlan, hasTheFilterOfThePlan) {
  const Rows<const char*, const char*, const char*> rows{
      {"clean screenshots on my desktop",
       R"({"folderPath":"~/Desktop/","fileExtensions":["png","jpg","jpeg"],"categories":["screenshots"],)"
       R"("minimumAgeDays":30})",
       "moveToTrash"},
      {"delete logs older than a week", R"({"folderPath":"~/Library/Logs/","categories":["logs"],"minimumAgeDays":7})",
       "moveToTrash"},
      {"find files over 2 gb in documents",
       R"({"folderPath":"~/Documents/","categories":["largeFiles"],"minimumSizeBytes":2147483648})", "reviewOnly"},
  };
  for (const auto& [prompt, trigger, action] : rows) {
    SCOPED_TRACE(prompt);
    const auto rule = std::get<CleanupRule>(ruleFromPlan(planned(prompt), "Mine"));
    EXPECT_EQ(jsonText(rule.trigger.toJson()), trigger);
    EXPECT_EQ(rawValue(rule.action.type()), action);
    EXPECT_EQ(rule.name, "Mine");
    EXPECT_TRUE(rule.isEnabled);
    EXPECT_FALSE(rule.isBuiltIn);
    EXPECT_TRUE(problemsWith(rule).empty());
  }
}

TEST(RuleOfPlan, saysWhyThereIsNone) {
  const auto reason = [](const CleaningPlan& plan) { return std::get<RuleProblem>(ruleFromPlan(plan, "Mine")).text; };
  EXPECT_THAT(reason(planned("sort screenshots")), HasSubstr("a folder for each kind"));
  EXPECT_THAT(reason(planned("sort my downloads")), HasSubstr("at least one filter attribute"));
  auto plan = planned("clean logs");
  plan.steps.push_back(plan.steps.front());
  EXPECT_THAT(reason(plan), HasSubstr("several steps"));
  plan.steps.resize(1);
  plan.steps.front().filter = {.extensions = {{".log"}}};
  EXPECT_THAT(reason(plan), HasSubstr("fileExtensions")) << "it would never match";
  plan = planned("clean logs");
  plan.steps.front().targetFolder = homeFolder();
  plan.steps.front().filter = {.minimumAgeDays = 0};
  EXPECT_THAT(reason(plan), HasSubstr("narrows nothing"));
}

class RuleFromPlanTask : public TaskFixture {};

TEST_F(RuleFromPlanTask, takesWhatThePlanTakesAndNothingOfANeighbour) {
  constexpr double day = 86400;
  for (const auto* folder : {"Downloads", "Downloads2", "Documents"}) {
    setAge(tree.file(std::string(folder) + "/setup.dmg"), 60 * day);
    setAge(tree.file(std::string(folder) + "/new.dmg"), 2 * day);
    folders.saveBookmark(tree.url(folder));
  }
  auto plan = planned("delete installers");
  plan.steps.front().targetFolder = tree.path("Downloads");
  const auto made = ruleFromPlan(plan, "Mine");
  const auto services = taskServices();
  const auto byPlan = proposePlan(services, plan, PlanReach::boundary, ReferenceClock::now());
  const auto byRule =
      proposeRules(services, {.rules = {std::get<CleanupRule>(made)}, .boundary = Boundary(grantedFolders(services))});
  EXPECT_THAT(rowsOf(*byPlan), UnorderedElementsAre("Downloads/setup.dmg"));
  EXPECT_EQ(rowsOf(*byRule), rowsOf(*byPlan));
}

}  // namespace
}  // namespace orvane::test
