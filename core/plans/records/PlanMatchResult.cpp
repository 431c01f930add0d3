#include "core/plans/records/PlanMatchResult.h"

#include "core/base/text/Json.h"
#include "core/plans/records/CleaningPlanStep.h"

#include <utility>

namespace orvane {

MatchStanding matchStanding(PlannedAction action, RiskLabel label) noexcept {
  if (action == PlannedAction::move) return {true, true};
  return {orvane::isSelectable(label), label == RiskLabel::safe};
}

PlanMatchResult::PlanMatchResult(Uuid resultId, FileItem file, PlannedAction plannedAction,
                                 std::optional<std::string> destination, std::string why, bool selected)
    : id(resultId),
      item(std::move(file)),
      action(plannedAction),
      destinationFolder(std::move(destination)),
      explanation(std::move(why)),
      isSelected(selected) {}

PlanMatchResult::PlanMatchResult(const CleaningPlanStep& step, FileItem file)
    : PlanMatchResult(Uuid::random(), std::move(file), step.action, step.destinationFolder, step.explanation, false) {
  const auto standing = matchStanding(action, item.riskLabel());
  isSelected = standing.isSelected;
  canExecute = standing.canExecute;
}

Json PlanMatchResult::toJson() const {
  Json json = Json::object();
  json["id"] = jsonFromUuid(id);
  json["item"] = item.toJson();
  json["action"] = rawValue(action);
  if (destinationFolder) json["destinationFolder"] = *destinationFolder;
  json["explanation"] = explanation;
  json["isSelected"] = isSelected;
  json["canExecute"] = canExecute;
  return json;
}

}  // namespace orvane
