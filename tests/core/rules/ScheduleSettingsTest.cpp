#include "core/base/text/Json.h"
#include "core/rules/records/ScheduleSettings.h"
#include "tests/support/Testing.h"
#include "tests/support/TimeZone.h"

namespace orvane::test {
namespace {

TEST(ScheduleSettingsTest, knowsWhenARunIsDue) {
  using Optional = std::optional<std::int64_t>;
  // switched on, how often, days since the last run, free bytes, due
  const Rows<const char*, bool, ScheduleFrequency, Optional, Optional, bool> rows{
      {"switched off", false, Weekly{}, {}, {}, false},
      {"never run", true, Weekly{}, {}, {}, true},
      {"daily, today", true, Daily{}, 0, {}, false},
      {"daily, yesterday", true, Daily{}, 1, {}, true},
      {"weekly, 6 days", true, Weekly{}, 6, {}, false},
      {"weekly, 7 days", true, Weekly{}, 7, {}, true},
      {"monthly, 29 days", true, Monthly{}, 29, {}, false},
      {"monthly, 30 days", true, Monthly{}, 30, {}, true},
      {"low, a byte less", true, OnLowDiskSpace{10}, 0, 10737418239, true},
      {"low, just enough", true, OnLowDiskSpace{10}, {}, 10737418240, false},
      {"low, unknown, never run", true, OnLowDiskSpace{10}, {}, {}, true},
      {"low, unknown, run before", true, OnLowDiskSpace{10}, 99, {}, false},
      {"low, more than any disk", true, OnLowDiskSpace{INT64_MAX}, 0, INT64_MAX, true},
  };
  const auto now = dateFromUnix(1700000000);
  inTimeZone("UTC", [&] {
    for (const auto& [name, isEnabled, frequency, daysAgo, freeBytes, isDue] : rows) {
      ScheduleSettings settings;
      settings.isEnabled = isEnabled;
      settings.frequency = frequency;
      if (daysAgo) settings.lastRunDate = dateFromUnix(1700000000 - *daysAgo * 86400);
      EXPECT_EQ(settings.isRunDue(freeBytes, now), isDue) << name;
    }
  });
}

TEST(ScheduleSettingsTest, countsTheDayOfAClockChangeAsOne) {
  inTimeZone("Europe/Berlin", [] {
    ScheduleSettings settings;
    settings.isEnabled = true;
    settings.frequency = Daily{};
    // Noon before clocks go forward; the next noon comes after 23 hours.
    settings.lastRunDate = dateFromUnix(1711796400);
    EXPECT_FALSE(settings.isRunDue({}, dateFromUnix(1711796400 + 23 * 3600 - 1)));
    EXPECT_TRUE(settings.isRunDue({}, dateFromUnix(1711796400 + 23 * 3600)));
  });
}

TEST(ScheduleSettingsTest, hasItsJsonForm) {
  ScheduleSettings settings;
  EXPECT_EQ(jsonText(settings.toJson()),
            R"({"isEnabled":false,"frequency":{"weekly":{}},"runApprovedRulesOnly":true})");
  settings.frequency = OnLowDiskSpace{25};
  settings.lastRunDate = dateFromReferenceSeconds(1.5);
  EXPECT_EQ(ScheduleSettings::fromJson(parseJson(jsonText(settings.toJson()))), settings);
  EXPECT_EQ(displayName(settings.frequency), "When Free Space < 25 GB");
}

TEST(ScheduleSettingsTest, wantsOneFrequency) {
  for (const char* text : {"{}", R"({"daily":{},"weekly":{}})"}) {
    try {
      static_cast<void>(frequencyFromJson(parseJson(text)));
      ADD_FAILURE() << text;
    } catch (const JsonError& error) {
      EXPECT_STREQ(error.what(), "Invalid number of keys found, expected one.");
    }
  }
}

}  // namespace
}  // namespace orvane::test
