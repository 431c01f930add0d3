#include "core/rules/records/ScheduleFrequency.h"

#include "core/base/text/Json.h"

#include <fmt/format.h>

namespace orvane {

std::string displayName(const ScheduleFrequency& frequency) {
  if (const auto* low = std::get_if<OnLowDiskSpace>(&frequency)) {
    return fmt::format("When Free Space < {} GB", low->thresholdGB);
  }
  if (std::holds_alternative<Daily>(frequency)) return "Daily";
  return std::holds_alternative<Weekly>(frequency) ? "Weekly" : "Monthly";
}

Json jsonFromFrequency(const ScheduleFrequency& frequency) {
  Json json = Json::object();
  if (const auto* low = std::get_if<OnLowDiskSpace>(&frequency)) {
    json["onLowDiskSpace"]["thresholdGB"] = low->thresholdGB;
  } else if (std::holds_alternative<Daily>(frequency)) {
    json["daily"] = Json::object();
  } else {
    json[std::holds_alternative<Weekly>(frequency) ? "weekly" : "monthly"] = Json::object();
  }
  return json;
}

ScheduleFrequency frequencyFromJson(const Json& json) {
  if (!json.is_object()) throw JsonError("\"frequency\" must be an object");
  if (json.size() != 1) throw JsonError("Invalid number of keys found, expected one.");
  const auto& name = json.begin().key();
  const auto& payload = json.begin().value();
  if (!payload.is_object()) throw JsonError(fmt::format("\"{}\" must be an object", name));
  if (name == "onLowDiskSpace") return OnLowDiskSpace{integerAt(payload, "thresholdGB")};
  if (name == "daily") return Daily{};
  if (name == "weekly") return Weekly{};
  if (name == "monthly") return Monthly{};
  throw JsonError("Invalid number of keys found, expected one.");
}

}  // namespace orvane
