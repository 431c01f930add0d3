#include "core/plans/CleaningPlanSchema.h"

#include "core/plans/records/CleaningPlan.h"
#include "tests/support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace orvane {
namespace {

using Error = CleaningPlanSchema::ValidationError;

CleaningPlanStep goodStep() {
  CleaningPlanStep step;
  step.targetFolder = "/home/ann/Downloads";
  step.filter.minimumAgeDays = 0;
  step.action = PlannedAction::trash;
  return step;
}

CleaningPlan planOf(std::vector<CleaningPlanStep> steps, std::string goal = "tidy") {
  CleaningPlan plan;
  plan.userGoal = std::move(goal);
  plan.steps = std::move(steps);
  return plan;
}

CleaningPlanStep withTarget(std::string folder) {
  auto step = goodStep();
  step.targetFolder = std::move(folder);
  return step;
}

CleaningPlanStep withDestination(PlannedAction action, std::optional<std::string> folder) {
  auto step = goodStep();
  step.action = action;
  step.destinationFolder = std::move(folder);
  return step;
}

CleaningPlanStep withFilter(CleaningFilter filter) {
  auto step = goodStep();
  step.filter = std::move(filter);
  return step;
}

struct Verdict {
  const char* name;
  CleaningPlan plan;
  std::optional<Error::Case> fault;
};
void PrintTo(const Verdict& verdict, std::ostream* out) {
  *out << verdict.name;
}
class PlanValidation : public testing::TestWithParam<Verdict> {};

TEST_P(PlanValidation, findsTheFirstFault) {
  const auto& verdict = GetParam();
  const auto fault = CleaningPlanSchema::firstFault(verdict.plan);
  EXPECT_EQ(fault ? std::optional(fault->which()) : std::nullopt, verdict.fault);
  if (verdict.fault) {
    EXPECT_THROW(CleaningPlanSchema::validate(verdict.plan), Error);
  } else {
    EXPECT_NO_THROW(CleaningPlanSchema::validate(verdict.plan));
  }
}

CleaningFilter emptyLists() {
  CleaningFilter filter;
  filter.categories.emplace();
  filter.extensions.emplace();
  filter.nameContains.emplace();
  return filter;
}

INSTANTIATE_TEST_SUITE_P(
    InOrder, PlanValidation,
    testing::Values(Verdict{"a good plan", planOf({goodStep()}), {}},
                    Verdict{"goal before steps", planOf({}, " \n\t\r\n "), Error::EmptyGoal{}},
                    Verdict{"goal of wide spaces", planOf({goodStep()}, "\u3000\u00a0\u2028"), Error::EmptyGoal{}},
                    Verdict{"steps before their content", planOf({}), Error::EmptySteps{}},
                    Verdict{"first bad step alone", planOf({goodStep(), withTarget(" "), withTarget("/")}),
                            Error::MissingTargetFolder{}},
                    Verdict{"target before destination and filter", planOf({[] {
                              auto step = withDestination(PlannedAction::move, {});
                              step.targetFolder = "/usr";
                              step.filter = {};
                              return step;
                            }()}),
                            Error::ProtectedTargetFolder{"/usr"}},
                    Verdict{"destination before filter", planOf({[] {
                              auto step = withDestination(PlannedAction::move, "");
                              step.filter = {};
                              return step;
                            }()}),
                            Error::InvalidDestinationFolder{}}));

INSTANTIATE_TEST_SUITE_P(
    Targets, PlanValidation,
    testing::Values(
        Verdict{"trimmed", planOf({withTarget("  /usr  ")}), Error::ProtectedTargetFolder{"/usr"}},
        Verdict{"root", planOf({withTarget("/")}), Error::ProtectedTargetFolder{"/"}},
        Verdict{"root by a detour", planOf({withTarget("/usr/..")}), Error::ProtectedTargetFolder{"/usr/.."}},
        Verdict{"trailing slash", planOf({withTarget("/System/")}), Error::ProtectedTargetFolder{"/System/"}},
        Verdict{"Library", planOf({withTarget("/Library")}), Error::ProtectedTargetFolder{"/Library"}},
        Verdict{"bin, link or not", planOf({withTarget("/bin")}), Error::ProtectedTargetFolder{"/bin"}},
        Verdict{"private", planOf({withTarget("/private")}), Error::ProtectedTargetFolder{"/private"}},
        Verdict{"below is not judged here", planOf({withTarget("/usr/local")}), {}},
        Verdict{"nor is this", planOf({withTarget("/System/Library")}), {}},
        Verdict{"longer name", planOf({withTarget("/Library2")}), {}},
        Verdict{"case counts", planOf({withTarget("/library")}), {}},
        Verdict{"home folder by its sign", planOf({withTarget("~")}), {}}));

INSTANTIATE_TEST_SUITE_P(
    Destinations, PlanValidation,
    testing::Values(Verdict{"none to trash", planOf({withDestination(PlannedAction::trash, {})}), {}},
                    Verdict{"none to review", planOf({withDestination(PlannedAction::review, {})}), {}},
                    Verdict{"none to move", planOf({withDestination(PlannedAction::move, {})}),
                            Error::InvalidDestinationFolder{}},
                    Verdict{"blank to move", planOf({withDestination(PlannedAction::move, "   ")}),
                            Error::InvalidDestinationFolder{}},
                    Verdict{"any to move", planOf({withDestination(PlannedAction::move, "Sorted")}), {}}));

INSTANTIATE_TEST_SUITE_P(
    Filters, PlanValidation,
    testing::Values(Verdict{"no criterion", planOf({withFilter({})}), Error::InvalidFilterCriteria{}},
                    Verdict{"empty criteria", planOf({withFilter(emptyLists())}), Error::InvalidFilterCriteria{}},
                    Verdict{"empty criteria and an age of 0",
                            planOf({withFilter([] {
                              auto filter = emptyLists();
                              filter.minimumAgeDays = 0;
                              return filter;
                            }())}),
                            {}},
                    Verdict{"negative size", planOf({withFilter({.minimumSizeBytes = -1})}), {}},
                    Verdict{"single space as name", planOf({withFilter({.nameContains = " "})}), {}},
                    Verdict{"category", planOf({withFilter({.categories = std::vector{ScanCategory::logs}})}), {}},
                    Verdict{"extension", planOf({withFilter({.extensions = std::vector<std::string>{"pdf"}})}), {}}));

TEST(CleaningPlanSchema, resolvesLinksBeforeItCompares) {
  const test::TemporaryTree tree;
  const auto link = tree.link("looks harmless", "/usr");
  const auto fault = CleaningPlanSchema::firstFault(planOf({withTarget(link)}));
  ASSERT_TRUE(fault);
  EXPECT_EQ(*fault, Error(Error::ProtectedTargetFolder{link}));
  EXPECT_FALSE(CleaningPlanSchema::firstFault(planOf({withTarget(tree.link("library", "/usr/lib"))})));
}

TEST(PlanValidationError, saysWhatIsWrong) {
  EXPECT_STREQ(Error(Error::ProtectedTargetFolder{"/usr"}).what(), "Target folder is protected and prohibited: /usr");
  EXPECT_STREQ(Error(Error::EmptyGoal{}).what(), "The plan user goal cannot be empty.");
  EXPECT_STREQ(Error(Error::EmptySteps{}).what(), "The cleaning plan must contain at least one step.");
  EXPECT_STREQ(Error(Error::MissingTargetFolder{}).what(), "Every plan step must declare a target folder.");
  EXPECT_STREQ(Error(Error::InvalidDestinationFolder{}).what(),
               "Move actions must declare a valid non-empty destination folder.");
  EXPECT_STREQ(Error(Error::InvalidFilterCriteria{}).what(),
               "Filter criteria must specify at least one filter attribute.");
  EXPECT_NE(Error(Error::ProtectedTargetFolder{"/usr"}), Error(Error::ProtectedTargetFolder{"/bin"}));
}

TEST(CleaningPlanSchema, promptBlockHasNineteenLinesAsGiven) {
  const std::vector<std::pair<std::size_t, std::string>> lines{
      {0, "{"},
      {2, R"("userGoal": string,)"},
      {2, R"("summary": string,)"},
      {2, R"("steps": [)"},
      {4, "{"},
      {6, R"("targetFolder": string,)"},
      {6, R"("filter": {)"},
      {8, R"("categories": ["caches", "logs", "oldDownloads", "screenshots", "largeFiles", "trash", "appLeftovers"],)"},
      {8, R"("extensions": ["string"],)"},
      {8, R"("minimumAgeDays": int,)"},
      {8, R"("minimumSizeBytes": int,)"},
      {8, R"("nameContains": string)"},
      {6, "},"},
      {6, R"("action": "trash" | "review" | "move",)"},
      {6, R"("destinationFolder": string | null,)"},
      {6, R"("explanation": string)"},
      {4, "}"},
      {2, "]"},
      {0, "}"},
  };
  std::string expected;
  for (const auto& [spaces, text] : lines) {
    if (!expected.empty()) expected += '\n';
    expected += std::string(spaces, ' ') + text;
  }
  EXPECT_EQ(CleaningPlanSchema::promptBlock(), expected);
}

}  // namespace
}  // namespace orvane
