#include "core/plans/CleaningPlanSchema.h"

#include "core/plans/records/CleaningPlan.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

using Error = CleaningPlanSchema::ValidationError;

CleaningPlan planOf(std::vector<CleaningPlanStep> steps, std::string goal = "tidy") {
  CleaningPlan plan;
  plan.userGoal = std::move(goal);
  plan.steps = std::move(steps);
  return plan;
}

CleaningPlanStep withTarget(std::string folder, CleaningFilter filter = {.minimumAgeDays = 0}) {
  CleaningPlanStep step;
  step.targetFolder = std::move(folder);
  step.filter = std::move(filter);
  step.action = PlannedAction::trash;
  return step;
}
CleaningPlanStep goodStep() {
  return withTarget("/home/ann/Downloads");
}
CleaningPlanStep withFilter(CleaningFilter filter) {
  return withTarget("/home/ann/Downloads", std::move(filter));
}

CleaningPlanStep withDestination(PlannedAction action, std::optional<std::string> folder) {
  auto step = goodStep();
  step.action = action;
  step.destinationFolder = std::move(folder);
  return step;
}

struct Verdict {
  const char* name;
  CleaningPlan plan;
  std::optional<Error::Case> fault;
};

CleaningFilter emptyLists() {
  CleaningFilter filter;
  filter.categories.emplace();
  filter.extensions.emplace();
  filter.nameContains.emplace();
  return filter;
}

TEST(CleaningPlanSchema, findsTheFirstFault) {
  auto protectedMove = withDestination(PlannedAction::move, {});
  protectedMove.targetFolder = "/usr";
  protectedMove.filter = {};
  auto bareMove = withDestination(PlannedAction::move, "");
  bareMove.filter = {};
  auto aged = emptyLists();
  aged.minimumAgeDays = 0;
  std::vector<Verdict> rows{
      {"a good plan", planOf({goodStep()}), {}},
      {"goal before steps", planOf({}, " \n\t\r\n "), Error::EmptyGoal{}},
      {"goal of wide spaces", planOf({goodStep()}, "\u3000\u00a0\u2028"), Error::EmptyGoal{}},
      {"steps before their content", planOf({}), Error::EmptySteps{}},
      {"first bad step", planOf({goodStep(), withTarget(" "), withTarget("/")}), Error::MissingTargetFolder{}},
      {"target before destination and filter", planOf({protectedMove}), Error::ProtectedTargetFolder{"/usr"}},
      {"destination before filter", planOf({bareMove}), Error::InvalidDestinationFolder{}},
      {"trimmed", planOf({withTarget("  /usr  ")}), Error::ProtectedTargetFolder{"/usr"}},
      {"no destination to trash", planOf({withDestination(PlannedAction::trash, {})}), {}},
      {"none to review", planOf({withDestination(PlannedAction::review, {})}), {}},
      {"none to move", planOf({withDestination(PlannedAction::move, {})}), Error::InvalidDestinationFolder{}},
      {"blank to move", planOf({withDestination(PlannedAction::move, "   ")}), Error::InvalidDestinationFolder{}},
      {"any to move", planOf({withDestination(PlannedAction::move, "Sorted")}), {}},
      {"no criterion", planOf({withFilter({})}), Error::InvalidFilterCriteria{}},
      {"empty criteria", planOf({withFilter(emptyLists())}), Error::InvalidFilterCriteria{}},
      {"empty criteria and an age of 0", planOf({withFilter(aged)}), {}},
      {"negative size", planOf({withFilter({.minimumSizeBytes = -1})}), {}},
      {"single space as name", planOf({withFilter({.nameContains = " "})}), {}},
      {"category", planOf({withFilter({.categories = std::vector{ScanCategory::logs}})}), {}},
      {"extension", planOf({withFilter({.extensions = std::vector<std::string>{"pdf"}})}), {}},
  };
  for (const auto* folder : {"/", "/usr/..", "/System/", "/Library", "/bin", "/private"}) {
    rows.push_back({folder, planOf({withTarget(folder)}), Error::ProtectedTargetFolder{folder}});
  }
  // Not judged here: a folder below one, a longer name, another case and the home folder.
  for (const auto* folder : {"/usr/local", "/System/Library", "/Library2", "/library", "~"}) {
    rows.push_back({folder, planOf({withTarget(folder)}), {}});
  }
  for (const auto& [name, plan, expected] : rows) {
    SCOPED_TRACE(name);
    const auto fault = CleaningPlanSchema::firstFault(plan);
    EXPECT_EQ(fault ? std::optional(fault->which()) : std::nullopt, expected);
    if (expected) {
      EXPECT_THROW(CleaningPlanSchema::validate(plan), Error);
    } else {
      EXPECT_NO_THROW(CleaningPlanSchema::validate(plan));
    }
  }
}

TEST(CleaningPlanSchema, resolvesLinksBeforeItCompares) {
  const TemporaryTree tree;
  const auto link = tree.link("looks harmless", "/usr");
  const auto fault = CleaningPlanSchema::firstFault(planOf({withTarget(link)}));
  ASSERT_TRUE(fault);
  EXPECT_EQ(*fault, Error(Error::ProtectedTargetFolder{link}));
  EXPECT_FALSE(CleaningPlanSchema::firstFault(planOf({withTarget(tree.link("library", "/usr/lib"))})));
}

TEST(PlanValidationError, saysWhatIsWrong) {
  const Rows<Error::Case, const char*> rows{
      {Error::ProtectedTargetFolder{"/usr"}, "Target folder is protected and prohibited: /usr"},
      {Error::EmptyGoal{}, "The plan user goal cannot be empty."},
      {Error::EmptySteps{}, "The cleaning plan must contain at least one step."},
      {Error::MissingTargetFolder{}, "Every plan step must declare a target folder."},
      {Error::InvalidDestinationFolder{}, "Move actions must declare a valid non-empty destination folder."},
      {Error::InvalidFilterCriteria{}, "Filter criteria must specify at least one filter attribute."},
  };
  for (const auto& [which, text] : rows) EXPECT_STREQ(Error(which).what(), text);
  EXPECT_NE(Error(Error::ProtectedTargetFolder{"/usr"}), Error(Error::ProtectedTargetFolder{"/bin"}));
}

TEST(CleaningPlanSchema, promptBlockHasNineteenLinesAsGiven) {
  EXPECT_EQ(CleaningPlanSchema::promptBlock(), R"({
  "userGoal": string,
  "summary": string,
  "steps": [
    {
      "targetFolder": string,
      "filter": {
        "categories": ["caches", "logs", "oldDownloads", "screenshots", "largeFiles", "trash", "appLeftovers"],
        "extensions": ["string"],
        "minimumAgeDays": int,
        "minimumSizeBytes": int,
        "nameContains": string
      },
      "action": "trash" | "review" | "move",
      "destinationFolder": string | null,
      "explanation": string
    }
  ]
})");
}

}  // namespace
}  // namespace orvane::test
