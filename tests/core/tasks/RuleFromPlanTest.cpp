#include "core/tasks/RuleFromPlan.h"

#include "core/base/files/HomeFolder.h"
#include "core/base/text/Json.h"
#include "core/plans/OfflineHeuristicParser.h"
#include "core/tasks/Folders.h"
#include "core/tasks/PlanTask.h"
#include "core/tasks/RulesTask.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {
namespace {

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
