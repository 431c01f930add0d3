#include "core/rules/records/ScheduleSettings.h"

#include "core/base/text/Json.h"
#include "core/base/values/Calendar.h"

#include <chrono>
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
  return wholeDaysBetween(*lastRunDate, now) >= *periodDays();
}

bool ScheduleSettings::isTimerStartDue(std::optional<std::int64_t> currentFreeBytes, Date now) const {
  if (isRunDue(currentFreeBytes, now)) return true;
  const auto period = periodDays();
  return isEnabled && period && lastRunDate && now - *lastRunDate >= std::chrono::days(*period);
}

std::optional<std::int64_t> ScheduleSettings::periodDays() const noexcept {
  if (std::holds_alternative<Daily>(frequency)) return 1;
  if (std::holds_alternative<Weekly>(frequency)) return 7;
  if (std::holds_alternative<Monthly>(frequency)) return 30;
  return std::nullopt;
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
