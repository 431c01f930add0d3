#include "core/plans/records/CleaningPlan.h"

#include "core/base/text/Json.h"

namespace orvane {
namespace {

// A plan is five levels deep and has six keys; a language model may add some of its own.
constexpr JsonLimits planLimits{.bytes = CleaningPlan::maxDocumentBytes, .depth = 32, .keysPerObject = 256};

}  // namespace

Json CleaningPlan::toJson() const {
  Json json = Json::object();
  json["id"] = jsonFromUuid(id);
  json["userGoal"] = userGoal;
  auto& array = json["steps"] = Json::array();
  for (const auto& step : steps) array.push_back(step.toJson());
  json["summary"] = summary;
  json["isDryRun"] = isDryRun;
  json["createdAt"] = jsonFromDate(createdAt);
  return json;
}

CleaningPlan CleaningPlan::fromJson(const Json& json) {
  CleaningPlan plan;
  plan.id = uuidAt(json, "id");
  plan.userGoal = stringAt(json, "userGoal");
  const auto& steps = requiredKey(json, "steps");
  if (!steps.is_array()) throw JsonError("\"steps\" must be an array of objects");
  plan.steps.reserve(steps.size());
  for (const auto& step : steps) plan.steps.push_back(CleaningPlanStep::fromJson(step));
  plan.summary = stringAt(json, "summary");
  plan.isDryRun = booleanAt(json, "isDryRun");
  plan.createdAt = dateAt(json, "createdAt");
  return plan;
}

CleaningPlan CleaningPlan::decode(std::string_view text) {
  return fromJson(parseJson(text, planLimits));
}

}  // namespace orvane
