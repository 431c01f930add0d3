#include "core/plans/records/CleaningPlanStep.h"

#include "core/base/files/PathText.h"
#include "core/base/text/Json.h"

#include <fmt/format.h>

namespace orvane {
namespace {

constexpr std::size_t quotedBytes = 100;

// The system would cut a path off at a NUL, so that another folder is meant than the one that is shown.
std::string pathFrom(const Json& value, std::string_view key) {
  auto text = stringFrom(value, key);
  if (text.find('\0') != std::string::npos) {
    throw JsonError(fmt::format("\"{}\" must not hold a NUL character", key));
  }
  return text;
}

}  // namespace

Json CleaningPlanStep::toJson() const {
  Json json = Json::object();
  json["id"] = jsonFromUuid(id);
  json["targetFolder"] = targetFolder;
  json["filter"] = filter.toJson();
  json["action"] = rawValue(action);
  if (destinationFolder) json["destinationFolder"] = *destinationFolder;
  json["explanation"] = explanation;
  return json;
}

CleaningPlanStep CleaningPlanStep::fromJson(const Json& json) {
  CleaningPlanStep step;
  step.id = uuidAt(json, "id");
  step.targetFolder = pathFrom(requiredKey(json, "targetFolder"), "targetFolder");
  step.filter = CleaningFilter::fromJson(requiredKey(json, "filter"));
  const auto action = stringAt(json, "action");
  const auto known = plannedActionFromRawValue(action);
  if (!known) throw JsonError(fmt::format("unknown \"action\" \"{}\"", shortenedToBytes(action, quotedBytes)));
  step.action = *known;
  if (const auto* destination = optionalKey(json, "destinationFolder")) {
    step.destinationFolder = pathFrom(*destination, "destinationFolder");
  }
  step.explanation = stringAt(json, "explanation");
  return step;
}

}  // namespace orvane
