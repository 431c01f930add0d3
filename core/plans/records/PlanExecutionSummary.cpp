#include "core/plans/records/PlanExecutionSummary.h"

#include "core/base/text/Json.h"

namespace orvane {

Json PlanExecutionSummary::toJson() const {
  Json json = Json::object();
  json["batchId"] = jsonFromUuid(batchId);
  json["itemsProcessed"] = itemsProcessed;
  json["bytesReclaimed"] = bytesReclaimed;
  json["timestamp"] = jsonFromDate(timestamp);
  return json;
}

}  // namespace orvane
