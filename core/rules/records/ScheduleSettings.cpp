#include "core/rules/records/ScheduleSettings.h"

#include "core/base/text/Json.h"
#include "core/base/values/Calendar.h"

#include <limits>

namespace orvane {
namespace {

constexpr std::int64_t gibibyte = std::int64_t{1} << 30;

// Whether `bytes` < `threshold` gibibytes, whatever the figures are.
bool isBelow(std::int64_t bytes, std::int64_t threshold) {
  if (threshold > std::numeric_limits<std::int64_t>::max() / gibibyte) return true;
  if (threshold < std::numeric_limits<std::int64_t>::min() / gibibyte) return false;
  return bytes < threshold * gibibyte;
}

}  // namespace

bool ScheduleSettings::isRunDue(std::optional<std::int64_t> currentFreeBytes, Date now) const {
  if (!isEnabled) return false;
  const auto* low = std::get_if<OnLowDiskSpace>(&frequency);
  if (low != nullptr && currentFreeBytes) return isBelow(*currentFreeBytes, low->thresholdGB);
  // A first run is never withheld.
  if (!lastRunDate) return true;
  if (low != nullptr) return false;
  const auto days = wholeDaysBetween(*lastRunDate, now);
  if (std::holds_alternative<Daily>(frequency)) return days >= 1;
  return days >= (std::holds_alternative<Weekly>(frequency) ? 7 : 30);
}

Json ScheduleSettings::toJson() const {
  Json json = Json::object();
  json["isEnabled"] = isEnabled;
  json["frequency"] = jsonFromFrequency(frequency);
  json["runApprovedRulesOnly"] = runApprovedRulesOnly;
  if (lastRunDate) json["lastRunDate"] = jsonFromDate(*lastRunDate);
  return json;
}

ScheduleSettings ScheduleSettings::fromJson(const Json& json) {
  ScheduleSettings settings;
  settings.isEnabled = booleanAt(json, "isEnabled");
  settings.frequency = frequencyFromJson(requiredKey(json, "frequency"));
  settings.runApprovedRulesOnly = booleanAt(json, "runApprovedRulesOnly");
  if (const auto* date = optionalKey(json, "lastRunDate")) settings.lastRunDate = dateFrom(*date, "lastRunDate");
  return settings;
}

}  // namespace orvane
