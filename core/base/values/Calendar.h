#pragma once

#include "core/base/values/Date.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Whole days from `from` to `to` by the user's calendar and time zone: a day counts once the same time of day is
// reached again, also across a change of daylight-saving time. Negative when `to` is earlier.
[[nodiscard]] std::int64_t wholeDaysBetween(Date from, Date to);

// The same time of day that many days later by the user's calendar and time zone.
[[nodiscard]] Date addingDays(Date date, std::int64_t days);

// The beginnings of the week of `date` and of those before it, `count` in all, the oldest first: weeks of the user's
// locale, calendar and time zone.
[[nodiscard]] std::vector<Date> weekStarts(Date date, std::size_t count);

// `pattern` is a date pattern of Unicode Technical Standard 35, such as "yyyy-MM (MMMM)", in the user's locale and
// time zone.
[[nodiscard]] std::string formatDate(Date date, std::string_view pattern);
// Medium date and short time in the user's locale and time zone.
[[nodiscard]] std::string formatDateTime(Date date);

// Local time as YYYY-MM-DDThh:mm:ss, without a zone.
[[nodiscard]] std::string localTimestamp(Date date);

}  // namespace orvane
