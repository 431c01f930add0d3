#include "core/plans/PlanMatchResult.h"

#include "core/base/Json.h"

#include <utility>

namespace orvane {

PlanMatchResult::PlanMatchResult(Uuid resultId, FileItem file, PlannedAction plannedAction,
                                 std::optional<std::string> destination, std::string why, bool selected)
    : id(resultId),
      item(std::move(file)),
      action(plannedAction),
      destinationFolder(std::move(destination)),
      explanation(std::move(why)),
      isSelected(selected) {}

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
