#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/rules/records/ScheduleFrequency.h"

#include <cstdint>
#include <optional>

namespace orvane {

// The user's settings of automatic runs.
struct ScheduleSettings {
  bool isEnabled = false;
  ScheduleFrequency frequency = Weekly{};
  bool runApprovedRulesOnly = true;
  std::optional<Date> lastRunDate;  // when the last automatic run ended

  bool operator==(const ScheduleSettings&) const = default;

  // Whether a run is due at `now`; the free bytes of the start-up volume are absent where they are not known.
  [[nodiscard]] bool isRunDue(std::optional<std::int64_t> currentFreeBytes, Date now) const;
  // The same for the start that a timer makes. It comes in steps of 24 hours, so when summer time ends it comes an hour
  // before the calendar's day is full: that start counts by either.
  [[nodiscard]] bool isTimerStartDue(std::optional<std::int64_t> currentFreeBytes, Date now) const;

  // Keys in field order; an absent date is left out.
  [[nodiscard]] Json toJson() const;
  // Throws JsonError.
  static ScheduleSettings fromJson(const Json& json);

 private:
  // The days since the last run that are enough; absent where days play no part.
  [[nodiscard]] std::optional<std::int64_t> periodDays() const noexcept;
};

}  // namespace orvane
