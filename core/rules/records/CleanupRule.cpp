#include "core/rules/records/CleanupRule.h"

#include "core/base/text/Json.h"

namespace orvane {

Json CleanupRule::toJson() const {
  Json json = Json::object();
  json["id"] = jsonFromUuid(id);
  json["name"] = name;
  json["description"] = description;
  json["trigger"] = trigger.toJson();
  json["action"] = action.toJson();
  json["isEnabled"] = isEnabled;
  json["isBuiltIn"] = isBuiltIn;
  json["createdAt"] = jsonFromDate(createdAt);
  return json;
}

CleanupRule CleanupRule::fromJson(const Json& json) {
  return {
      .id = uuidAt(json, "id"),
      .name = stringAt(json, "name"),
      .description = stringAt(json, "description"),
      .trigger = RuleTrigger::fromJson(requiredKey(json, "trigger")),
      .action = RuleAction::fromJson(requiredKey(json, "action")),
      .isEnabled = booleanAt(json, "isEnabled"),
      .isBuiltIn = booleanAt(json, "isBuiltIn"),
      .createdAt = dateAt(json, "createdAt"),
  };
}

}  // namespace orvane
