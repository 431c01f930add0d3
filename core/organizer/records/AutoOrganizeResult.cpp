#include "core/organizer/records/AutoOrganizeResult.h"

#include "core/base/text/Json.h"
#include "core/base/values/CheckedArithmetic.h"

namespace orvane {

std::int64_t AutoOrganizeResult::totalMoved() const {
  return checkedAdd(movedToRecents, sorted);
}

Json AutoOrganizeResult::toJson() const {
  Json json = Json::object();
  json["movedToRecents"] = movedToRecents;
  json["sorted"] = sorted;
  json["batchIDs"] = Json::array();
  for (const auto& id : batchIDs) json["batchIDs"].push_back(jsonFromUuid(id));
  return json;
}

}  // namespace orvane
