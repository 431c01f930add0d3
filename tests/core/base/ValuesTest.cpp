#include "core/base/text/Json.h"
#include "core/base/values/Calendar.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/base/values/MinimumAge.h"
#include "tests/support/Testing.h"
#include "tests/support/TimeZone.h"

#include <cmath>

namespace orvane::test {
namespace {

TEST(Json, refusesHostileText) {
  const Rows<std::string, const char*> texts{
      {std::string(100'000, '['), "deeper than 64"},
      {R"({"a":1,"b":{"a":2},"a":3})", "\"a\" stands twice"},
      {"{\"a\":1", "not valid JSON"},
      {"NaN", "not valid JSON"},
      {"\"\xff\"", "not valid JSON"},
      {"1e999", "not valid JSON"},
  };
  for (const auto& row : texts) {
    EXPECT_THAT(messageOf<JsonError>([&] { return parseJson(std::get<0>(row)); }), HasSubstr(std::get<1>(row)));
  }
  EXPECT_THAT(messageOf<JsonError>([] { return parseJson("[1,2]", {.bytes = 4}); }), HasSubstr("longer than 4 bytes"));
  EXPECT_NO_THROW(static_cast<void>(parseJson(R"([{"a":1},{"a":2}])")));
}

TEST(Json, namesTheKeyThatIsWrong) {
  const auto json =
      parseJson(R"({"text":1,"number":1.5,"large":9223372036854775808,"id":"x","url":"http://a","no":null})");
  using Read = void (*)(const Json&);
  const Rows<Read, const char*> rows{
      {[](const Json& from) { (void)stringAt(from, "text"); }, "\"text\" must be a string"},
      {[](const Json& from) { (void)integerAt(from, "number"); }, "\"number\" must be an integer of at most 64 bits"},
      {[](const Json& from) { (void)integerAt(from, "large"); }, "\"large\" must be an integer of at most 64 bits"},
      {[](const Json& from) { (void)uuidAt(from, "id"); }, "\"id\" must be a UUID"},
      {[](const Json& from) { (void)urlAt(from, "url"); }, "\"url\" must be a file URL with an absolute path"},
      {[](const Json& from) { (void)stringAt(from, "no"); }, "\"no\" must not be null"},
      {[](const Json& from) { (void)stringAt(from, "absent"); }, "key \"absent\" is missing"},
  };
  for (const auto& [read, message] : rows) {
    EXPECT_EQ(messageOf<JsonError>([&, call = read] { call(json); }), message);
  }
  EXPECT_EQ(optionalKey(json, "no"), nullptr);
}

TEST(Json, datesReadBackToTheSameBits) {
  for (const double seconds : {0.0, -1.0, 785000000.125, 785432100.1234567, 1e-300, 9007199254740993.0, -0.0}) {
    const auto text = jsonText(jsonFromDate(dateFromReferenceSeconds(seconds)));
    const auto back = referenceSeconds(dateFrom(parseJson(text), "date"));
    EXPECT_EQ(std::signbit(back), std::signbit(seconds)) << text;
    EXPECT_EQ(back, seconds) << text;
  }
  EXPECT_EQ(jsonText(jsonFromDate(dateFromReferenceSeconds(700000000))), "700000000");
}

TEST(CheckedArithmeticDeathTest, anOverflowEndsTheProcess) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(checkedAdd<std::int64_t>(most, 0), most);
  EXPECT_DEATH((void)checkedAdd<std::int64_t>(most, 1), "overflow");
  EXPECT_DEATH((void)checkedMultiply<std::int64_t>(most, 2), "overflow");
}

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
