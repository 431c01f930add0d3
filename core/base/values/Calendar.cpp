#include "core/base/values/Calendar.h"

#include "core/base/values/FatalError.h"

#include <unicode/calendar.h>
#include <unicode/smpdtfmt.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <memory>

namespace orvane {
namespace {

// Whole milliseconds: with a fraction ICU gets the time of day wrong where it adds to a date.
UDate icuDate(Date date) {
  return std::round(unixSeconds(date) * 1000.0);
}

std::string formatted(const icu::DateFormat* format, Date date) {
  if (format == nullptr) return {};
  icu::UnicodeString text;
  format->format(icuDate(date), text);
  std::string result;
  text.toUTF8String(result);
  return result;
}

std::unique_ptr<icu::Calendar> makeCalendar() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(status));
  if (!calendar) fatalError("ICU gives no calendar: its data is missing");
  return calendar;
}

// Made once a thread: creating a calendar costs far more than asking it.
icu::Calendar& threadCalendar() {
  thread_local const auto calendar = makeCalendar();
  return *calendar;
}

Date timeOf(const icu::Calendar& calendar) {
  UErrorCode status = U_ZERO_ERROR;
  return dateFromReferenceSeconds(calendar.getTime(status) / 1000.0 - referenceDateUnixSeconds);
}

}  // namespace

std::int64_t wholeDaysBetween(Date from, Date to) {
  UErrorCode status = U_ZERO_ERROR;
  auto& calendar = threadCalendar();
  calendar.setTime(icuDate(from), status);
  return calendar.fieldDifference(icuDate(to), UCAL_DATE, status);
}

Date addingDays(Date date, std::int64_t days) {
  UErrorCode status = U_ZERO_ERROR;
  auto& calendar = threadCalendar();
  calendar.setTime(icuDate(date), status);
  calendar.add(UCAL_DATE, static_cast<int32_t>(std::clamp<std::int64_t>(days, INT32_MIN, INT32_MAX)), status);
  return timeOf(calendar);
}

std::vector<Date> weekStarts(Date date, std::size_t count) {
  constexpr int32_t daysOfWeek = 7;
  UErrorCode status = U_ZERO_ERROR;
  // Its own: that of the thread keeps the locale that it was made in, which says on which day a week begins.
  const auto calendar = makeCalendar();
  calendar->setTime(icuDate(date), status);
  const int32_t first = calendar->getFirstDayOfWeek(status);
  const int32_t day = calendar->get(UCAL_DAY_OF_WEEK, status);
  calendar->add(UCAL_DATE, -((day - first + daysOfWeek) % daysOfWeek), status);
  std::vector<Date> starts(count);
  for (auto start = starts.rbegin(); start != starts.rend(); ++start) {
    // Anew for each: a day may begin later than at midnight.
    for (const auto field : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND}) calendar->set(field, 0);
    *start = timeOf(*calendar);
    calendar->add(UCAL_DATE, -daysOfWeek, status);
  }
  return starts;
}

std::string formatDate(Date date, std::string_view pattern) {
  UErrorCode status = U_ZERO_ERROR;
  const auto text = icu::UnicodeString::fromUTF8({pattern.data(), static_cast<int32_t>(pattern.size())});
  const icu::SimpleDateFormat format(text, icu::Locale::getDefault(), status);
  return U_SUCCESS(status) ? formatted(&format, date) : std::string();
}

std::string formatDateTime(Date date) {
  const std::unique_ptr<icu::DateFormat> format(
      icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium, icu::DateFormat::kShort));
  return formatted(format.get(), date);
}

std::string localTimestamp(Date date) {
  const auto seconds = static_cast<std::time_t>(std::floor(unixSeconds(date)));
  std::tm local{};
  ::localtime_r(&seconds, &local);
  std::array<char, 32> text{};
  const auto length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &local);
  return {text.data(), length};
}

}  // namespace orvane
