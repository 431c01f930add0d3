#include "core/base/values/MinimumAge.h"

#include "core/base/values/Calendar.h"
#include "tests/support/Testing.h"
#include "tests/support/TimeZone.h"

#include <limits>

namespace orvane::test {
namespace {

// A moment and a number of days so that a change of the clocks lies close to one or both ends.
struct Moment {
  const char* name;
  const char* zone;
  std::int64_t now;  // since 1970-01-01T00:00:00Z
  std::int64_t days;
};

// Held against the calendar's own answer every few minutes around the threshold.
TEST(MinimumAge, agreesWithTheCalendar) {
  const std::vector<Moment> moments{
      {"no change of the clocks", "UTC", 1'750'000'000, 30},
      {"Berlin, day after spring", "Europe/Berlin", 1'743'379'200, 1},
      {"Berlin, month over spring", "Europe/Berlin", 1'745'000'000, 30},
      {"Berlin, ends in the repeated hour", "Europe/Berlin", 1'761'437'400, 30},
      {"Berlin, begins in the repeated hour", "Europe/Berlin", 1'762'133'400, 8},
      {"New York, begins in the missing hour", "America/New_York", 1'743'574'800, 24},
      {"New York, year to the missing hour", "America/New_York", 1'741'503'600, 364},
      {"Lord Howe, half an hour", "Australia/Lord_Howe", 1'743'865'200, 7},
      {"Apia, a day that never was", "Pacific/Apia", 1'325'500'000, 3},
      {"today", "Europe/Berlin", 1'745'000'000, 0},
      {"in the future", "Europe/Berlin", 1'745'000'000, -2},
      {"before 1970", "Europe/Berlin", 1'745'000'000, 30'000},
  };
  for (const auto& moment : moments) {
    inTimeZone(moment.zone, [&] {
      const Date now = dateFromUnix(moment.now, 250'000'000);
      MinimumAge age(moment.days, now);
      for (std::int64_t seconds = -3 * 86400; seconds <= 3 * 86400; seconds += 619) {
        for (const std::int64_t nanoseconds : {0, 250'000'000, 251'000'000, 999'000'000}) {
          const Date date = dateFromUnix(moment.now - moment.days * 86400 + seconds, nanoseconds);
          const auto days = wholeDaysBetween(date, now);
          ASSERT_EQ(age.isReachedBy(date), days >= moment.days) << moment.name << ": " << seconds << " s off";
        }
      }
    });
  }
}

TEST(MinimumAge, countsWholeDays) {
  const Date now = dateFromUnix(1'750'000'000);
  MinimumAge month(30, now);
  EXPECT_FALSE(month.isReachedBy(now - std::chrono::hours(29 * 24 + 20)));
  EXPECT_TRUE(month.isReachedBy(now - std::chrono::hours(30 * 24 + 2)));
  EXPECT_FALSE(month.isReachedBy(now));
  EXPECT_FALSE(month.isReachedBy(now + std::chrono::hours(24 * 365)));
}

TEST(MinimumAge, standsAnyNumber) {
  const Date now = ReferenceClock::now();
  const Date unknown = dateFromReferenceSeconds(std::numeric_limits<double>::quiet_NaN());
  EXPECT_FALSE(MinimumAge(INT64_MAX, now).isReachedBy(dateFromReferenceSeconds(-1e12)));
  EXPECT_TRUE(MinimumAge(INT64_MIN, now).isReachedBy(now));
  EXPECT_TRUE(MinimumAge(INT64_MIN, now).isReachedBy(dateFromReferenceSeconds(1e12)));
  EXPECT_FALSE(MinimumAge(1, now).isReachedBy(unknown));
  EXPECT_TRUE(MinimumAge(0, now).isReachedBy(unknown));
}

}  // namespace
}  // namespace orvane::test
