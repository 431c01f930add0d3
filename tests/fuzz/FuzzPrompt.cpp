// Any request yields a plan of one step that is acceptable, or rejected for no other reason than that it names nothing;
// its words are told by parts of the request, in order.

#include "core/base/text/Json.h"
#include "core/base/text/RegularExpression.h"
#include "core/base/text/UnicodeText.h"
#include "core/plans/CleaningPlanSchema.h"
#include "core/plans/OfflineHeuristicParser.h"
#include "core/plans/PromptReading.h"
#include "core/plans/RequestUnderstanding.h"
#include "tests/fuzz/FuzzCheck.h"

#include <array>
#include <string_view>
#include <variant>

namespace orvane::fuzz {
namespace {

// An age or a size beyond 64 bits ends the process, as it has to.
bool mayOverflow(std::string_view prompt) {
  static const auto longNumber = RegularExpression::compile(R"(\d{9})");
  return longNumber->firstMatch(lowercased(prompt)).has_value();
}

}  // namespace

void run(std::string_view prompt) {
  if (mayOverflow(prompt)) return;
  const auto reading = PromptReading::of(prompt);
  const auto plan = OfflineHeuristicParser().parse(prompt, reading);
  const std::array names{ProgramName{"pip", {.name = "pip"}}, ProgramName{"visual studio code", {.name = "Code"}}};
  const auto understanding = understand({prompt, prompt}, reading, plan, PlanMaker::tables, names);
  std::size_t end = 0;
  for (const auto& word : understanding.words) {
    check(word.span.start + word.span.length <= prompt.size() && word.span.end() >= end, "words stand in their order");
    end = word.span.end();
  }
  check(plan.steps.size() == 1, "a plan has one step");
  check(plan.userGoal == trimmed(prompt), "the goal is the request");
  if (const auto fault = CleaningPlanSchema::firstFault(plan)) {
    const bool isEmpty = std::holds_alternative<PlanValidationError::EmptyGoal>(fault->which());
    const bool isBare = std::holds_alternative<PlanValidationError::InvalidFilterCriteria>(fault->which());
    check(isEmpty || (isBare && plan.steps[0].action == PlannedAction::move), "only a bare request is rejected");
  }
  if (isValidUtf8(prompt)) {
    check(CleaningPlan::decode(jsonText(plan.toJson())) == plan, "a plan reads back as it was");
  }
}

}  // namespace orvane::fuzz
