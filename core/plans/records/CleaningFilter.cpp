#include "core/plans/records/CleaningFilter.h"

#include "core/base/text/Json.h"

namespace orvane {
bool CleaningFilter::hasCriteria() const noexcept {
  return (categories && !categories->empty()) || (extensions && !extensions->empty()) || minimumAgeDays ||
         minimumSizeBytes || (nameContains && !nameContains->empty());
}

Json CleaningFilter::toJson() const {
  Json json = Json::object();
  if (categories) json["categories"] = *categories;
  if (extensions) json["extensions"] = *extensions;
  if (minimumAgeDays) json["minimumAgeDays"] = *minimumAgeDays;
  if (minimumSizeBytes) json["minimumSizeBytes"] = *minimumSizeBytes;
  if (nameContains) json["nameContains"] = *nameContains;
  return json;
}

CleaningFilter CleaningFilter::fromJson(const Json& json) {
  CleaningFilter filter;
  if (const auto* value = optionalKey(json, "categories")) filter.categories = scanCategoriesFrom(*value, "categories");
  if (const auto* value = optionalKey(json, "extensions")) filter.extensions = stringsFrom(*value, "extensions");
  if (const auto* value = optionalKey(json, "minimumAgeDays")) {
    filter.minimumAgeDays = integerFrom(*value, "minimumAgeDays");
  }
  if (const auto* value = optionalKey(json, "minimumSizeBytes")) {
    filter.minimumSizeBytes = integerFrom(*value, "minimumSizeBytes");
  }
  if (const auto* value = optionalKey(json, "nameContains")) filter.nameContains = stringFrom(*value, "nameContains");
  return filter;
}

}  // namespace orvane
