#include "core/assistant/LocalModelClient.h"

#include "core/assistant/RemoteExchange.h"
#include "core/assistant/records/PlannerError.h"
#include "core/base/text/EnclosedObject.h"
#include "core/base/text/UnicodeText.h"
#include "core/plans/CleaningPlanSchema.h"
#include "core/platform/TopicModel.h"

#include <fmt/format.h>

namespace orvane {
namespace {

constexpr std::string_view localLeadIn =
    "You are Orvane's cleanup planner. Turn the user's goal into valid JSON conforming to the CleaningPlan schema:";
constexpr std::string_view localClosing =
    "Copy \"id\", \"isDryRun\" and \"createdAt\" as they stand here. Write folders with ~ for the home folder, as in "
    "\"~/Downloads\", extensions without a dot, sizes in bytes. Every filter needs at least one criterion; leave the "
    "others out. \"destinationFolder\" is for \"move\" alone. Use as few steps as the goal needs. Return ONLY valid "
    "JSON.";

}  // namespace

std::string LocalModelClient::instructions() {
  return fmt::format("{}\n{}\n{}", localLeadIn, CleaningPlanSchema::completePromptBlock(), localClosing);
}

CleaningPlan LocalModelClient::planFromReply(std::string_view text, std::string_view prompt) {
  auto plan = validPlanFrom(enclosedObject(text));
  if (plan.steps.size() > maxSteps) throw PlannerError(PlannerError::TooManySteps{maxSteps});
  plan.id = Uuid::random();
  for (auto& step : plan.steps) step.id = Uuid::random();
  plan.userGoal = trimmed(prompt);
  plan.isDryRun = true;
  plan.createdAt = ReferenceClock::now();
  return plan;
}

LocalModelClient::Prompt LocalModelClient::promptFor(const MetadataOnlyRequest& request) {
  return {.instructions = instructions(), .message = request.userMessage()};
}

CleaningPlan LocalModelClient::generatePlan(const MetadataOnlyRequest& request, const std::stop_token& stop) const {
  const auto prompt = promptFor(request);
  return planFromReply(m_model.respond(prompt.instructions, prompt.message, stop), request.userPrompt);
}

}  // namespace orvane
