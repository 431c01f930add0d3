#pragma once

#include "core/base/values/Date.h"

#include <array>
#include <cstdint>
#include <optional>

namespace orvane {

// Tells of many dates whether at least a number of whole calendar days have passed since: the answer of
// wholeDaysBetween(date, now) >= days, at the price of a comparison. For one thread.
class MinimumAge {
 public:
  MinimumAge(std::int64_t days, Date now);

  [[nodiscard]] bool isReachedBy(Date date);

 private:
  // Days by the calendar and by 24 hours differ by less than this many hours, whatever the time zone does.
  static constexpr std::int64_t marginHours = 48;

  // The length that the calendar adds for the days, in milliseconds, when it adds the same to every date within an
  // hour.
  struct Hour {
    bool isKnown = false;
    std::optional<double> added;
  };
  Hour& hourOf(double elapsedMilliseconds);

  std::int64_t m_days;
  Date m_now;
  double m_surelyReached;     // milliseconds of 24-hour days from which on the answer is yes
  double m_surelyNotReached;  // and up to which it is no
  std::array<Hour, 2 * marginHours> m_hours;
};

}  // namespace orvane
