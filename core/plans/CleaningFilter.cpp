#include "core/plans/CleaningFilter.h"

#include "core/base/Json.h"
#include "core/base/PathText.h"

#include <fmt/format.h>

namespace orvane {
namespace {

constexpr std::size_t quotedBytes = 100;

const Json& arrayFrom(const Json& value, std::string_view key) {
  if (!value.is_array()) throw JsonError(fmt::format("\"{}\" must be an array of strings", key));
  return value;
}

ScanCategory categoryFrom(const Json& value) {
  const auto text = stringFrom(value, "categories");
  const auto category = scanCategoryFromRawValue(text);
  if (!category) {
    throw JsonError(fmt::format("unknown category \"{}\" in \"categories\"", shortenedToBytes(text, quotedBytes)));
  }
  return *category;
}

}  // namespace

bool CleaningFilter::hasCriteria() const noexcept {
  return (categories && !categories->empty()) || (extensions && !extensions->empty()) || minimumAgeDays ||
         minimumSizeBytes || (nameContains && !nameContains->empty());
}

Json CleaningFilter::toJson() const {
  Json json = Json::object();
  if (categories) {
    auto& array = json["categories"] = Json::array();
    for (const auto category : *categories) array.push_back(rawValue(category));
  }
  if (extensions) json["extensions"] = *extensions;
  if (minimumAgeDays) json["minimumAgeDays"] = *minimumAgeDays;
  if (minimumSizeBytes) json["minimumSizeBytes"] = *minimumSizeBytes;
  if (nameContains) json["nameContains"] = *nameContains;
  return json;
}

CleaningFilter CleaningFilter::fromJson(const Json& json) {
  CleaningFilter filter;
  if (const auto* value = optionalKey(json, "categories")) {
    auto& categories = filter.categories.emplace();
    for (const auto& element : arrayFrom(*value, "categories")) categories.push_back(categoryFrom(element));
  }
  if (const auto* value = optionalKey(json, "extensions")) {
    auto& extensions = filter.extensions.emplace();
    for (const auto& element : arrayFrom(*value, "extensions")) extensions.push_back(stringFrom(element, "extensions"));
  }
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
