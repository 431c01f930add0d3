#pragma once

#include "core/base/text/JsonFwd.h"

#include <cstdint>
#include <string>
#include <variant>

namespace orvane {

struct OnLowDiskSpace {
  std::int64_t thresholdGB = 0;  // units of 2 to the power 30 bytes
  bool operator==(const OnLowDiskSpace&) const = default;
};
struct Daily {
  bool operator==(const Daily&) const = default;
};
struct Weekly {
  bool operator==(const Weekly&) const = default;
};
struct Monthly {
  bool operator==(const Monthly&) const = default;
};

// When automatic runs are due.
using ScheduleFrequency = std::variant<OnLowDiskSpace, Daily, Weekly, Monthly>;

// English title.
[[nodiscard]] std::string displayName(const ScheduleFrequency& frequency);
// An object with one key, the name of the case, whose value holds what belongs to it.
[[nodiscard]] Json jsonFromFrequency(const ScheduleFrequency& frequency);
// Throws JsonError.
[[nodiscard]] ScheduleFrequency frequencyFromJson(const Json& json);

}  // namespace orvane
