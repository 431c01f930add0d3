#include "core/rules/RuleTrigger.h"

#include "core/base/Json.h"

namespace orvane {

Json RuleTrigger::toJson() const {
  Json json = Json::object();
  if (folderPath) json["folderPath"] = *folderPath;
  if (fileExtensions) json["fileExtensions"] = *fileExtensions;
  if (categories) json["categories"] = scanCategoriesToJson(*categories);
  if (minimumAgeDays) json["minimumAgeDays"] = *minimumAgeDays;
  if (minimumSizeBytes) json["minimumSizeBytes"] = *minimumSizeBytes;
  if (namePattern) json["namePattern"] = *namePattern;
  return json;
}

RuleTrigger RuleTrigger::fromJson(const Json& json) {
  RuleTrigger trigger;
  if (const auto* value = optionalKey(json, "folderPath")) trigger.folderPath = stringFrom(*value, "folderPath");
  if (const auto* value = optionalKey(json, "fileExtensions")) {
    trigger.fileExtensions = stringsFrom(*value, "fileExtensions");
  }
  if (const auto* value = optionalKey(json, "categories")) {
    trigger.categories = scanCategoriesFrom(*value, "categories");
  }
  if (const auto* value = optionalKey(json, "minimumAgeDays")) {
    trigger.minimumAgeDays = integerFrom(*value, "minimumAgeDays");
  }
  if (const auto* value = optionalKey(json, "minimumSizeBytes")) {
    trigger.minimumSizeBytes = integerFrom(*value, "minimumSizeBytes");
  }
  if (const auto* value = optionalKey(json, "namePattern")) trigger.namePattern = stringFrom(*value, "namePattern");
  return trigger;
}

}  // namespace orvane
