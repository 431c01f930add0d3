#include "core/base/values/MinimumAge.h"

#include "core/base/values/Calendar.h"

#include <algorithm>
#include <cmath>

namespace orvane {
namespace {

constexpr double hourMilliseconds = 3'600'000;
constexpr double dayMilliseconds = 24 * hourMilliseconds;

// Whole ones, as the calendar counts them.
double milliseconds(Date date) {
  return std::round(unixSeconds(date) * 1000);
}

}  // namespace

MinimumAge::MinimumAge(std::int64_t days, Date now)
    : m_days(days),
      m_now(now),
      m_surelyReached(static_cast<double>(days) * dayMilliseconds + marginHours * hourMilliseconds),
      m_surelyNotReached(static_cast<double>(days) * dayMilliseconds - marginHours * hourMilliseconds) {}

bool MinimumAge::isReachedBy(Date date) {
  const double elapsed = milliseconds(m_now) - milliseconds(date);
  if (m_days <= 0) return elapsed >= 0 || wholeDaysBetween(date, m_now) >= m_days;
  if (elapsed >= m_surelyReached) return true;
  if (elapsed <= m_surelyNotReached) return false;
  if (std::isnan(elapsed)) return wholeDaysBetween(date, m_now) >= m_days;
  const auto added = hourOf(elapsed).added;
  if (!added) return wholeDaysBetween(date, m_now) >= m_days;
  return milliseconds(date) + *added <= milliseconds(m_now);
}

MinimumAge::Hour& MinimumAge::hourOf(double elapsedMilliseconds) {
  const auto index = static_cast<std::int64_t>((elapsedMilliseconds - m_surelyNotReached) / hourMilliseconds);
  const auto bounded = std::clamp<std::int64_t>(index, 0, 2 * marginHours - 1);
  auto& hour = m_hours[static_cast<std::size_t>(bounded)];
  if (hour.isKnown) return hour;
  hour.isKnown = true;
  // Time zones change at whole seconds, which a date holds exactly.
  const auto addedTo = [&](double elapsed) {
    const Date start = dateFromReferenceSeconds(std::floor(referenceSeconds(m_now) - elapsed / 1000));
    return (addingDays(start, m_days) - start).count() * 1000;
  };
  const double end = m_surelyNotReached + static_cast<double>(bounded) * hourMilliseconds;
  const double atEnd = addedTo(end);
  if (addedTo(end + hourMilliseconds) == atEnd) hour.added = atEnd;
  return hour;
}

}  // namespace orvane
