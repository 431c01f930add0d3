#include "core/tasks/History.h"

#include "tests/support/TaskFixture.h"
#include "tests/support/TimeZone.h"

#include <gmock/gmock.h>
#include <unicode/locid.h>

#include <ctime>
#include <ostream>

namespace orvane::test {
namespace {

// As the clock on the wall shows it.
struct LocalTime {
  int year, month, day, hour, minute;

  [[nodiscard]] Date date() const {
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_isdst = -1;
    return dateFromUnix(std::mktime(&parts));
  }
};

class ScopedLocale {
 public:
  explicit ScopedLocale(const char* name) { set(icu::Locale(name)); }
  ~ScopedLocale() { set(m_before); }
  ScopedLocale(const ScopedLocale&) = delete;
  ScopedLocale& operator=(const ScopedLocale&) = delete;

 private:
  static void set(const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(locale, status);
  }
  icu::Locale m_before = icu::Locale::getDefault();
};

class HistoryTotalsTest : public TaskFixture {
 public:
  [[nodiscard]] HistoryTotals totals() { return historyTotals(taskServices()); }
  [[nodiscard]] std::string trashed(const std::string& name) const { return trashPath() + "/files/" + name; }
};

TEST_F(HistoryTotalsTest, countInTheTrashOnlyItemsThatAreStillThere) {
  clean({tree.file("Downloads/back"), tree.file("Downloads/stays"), tree.file("Downloads/emptied"),
         tree.file("Downloads/replaced")});
  restoreOne(journal->getEntries(lastRun).front().id);
  ASSERT_EQ(::unlink(trashed("emptied").c_str()), 0);
  ASSERT_EQ(::unlink(trashed("replaced").c_str()), 0);
  tree.file(".local/share/Trash/files/replaced", "of another program");
  const auto sums = totals();
  EXPECT_EQ(sums.moved, (RowSum{4, 28}));
  EXPECT_EQ(sums.restored, (RowSum{1, 7}));
  EXPECT_EQ(sums.inTrash, (RowSum{1, 7}));
  EXPECT_EQ(sums.weeks.back().moved, sums.moved);
}

constexpr int inNoWeek = -1;
struct WeekCase {
  const char* name;
  const char* zone;
  const char* locale;
  LocalTime now;
  LocalTime moved;
  int week;  // the last one is that of now
};
void PrintTo(const WeekCase& row, std::ostream* out) {
  *out << row.name;
}
class HistoryWeeks : public HistoryTotalsTest, public testing::WithParamInterface<WeekCase> {};

TEST_P(HistoryWeeks, followTheUsersCalendar) {
  const auto& row = GetParam();
  const ScopedLocale locale(row.locale);
  inTimeZone(row.zone, [&] {
    JournalEntry entry;
    entry.timestamp = row.moved.date();
    entry.originalURL = tree.url("Downloads/a");
    entry.trashedURL = FileUrl(trashed("a"));
    entry.fileSize = 7;
    journal->record(entry);
    const auto weeks = historyTotals(taskServices(), row.now.date()).weeks;
    ASSERT_EQ(weeks.size(), 12U);
    for (int week = 0; week < 12; ++week) {
      EXPECT_EQ(weeks[static_cast<std::size_t>(week)].moved.bytes, week == row.week ? 7 : 0) << week;
    }
  });
}
INSTANTIATE_TEST_SUITE_P(
    Moments, HistoryWeeks,
    testing::Values(
        WeekCase{"they begin on Sunday", "America/New_York", "en_US", {2026, 3, 11, 12, 0}, {2026, 3, 8, 0, 30}, 11},
        WeekCase{"the night before", "America/New_York", "en_US", {2026, 3, 11, 12, 0}, {2026, 3, 7, 23, 59}, 10},
        WeekCase{"they begin on Monday", "Europe/Berlin", "de_DE", {2026, 3, 11, 12, 0}, {2026, 3, 8, 23, 59}, 10},
        WeekCase{"clocks went forward", "Europe/Berlin", "de_DE", {2026, 4, 1, 12, 0}, {2026, 3, 23, 0, 0}, 10},
        WeekCase{"a year's end", "Europe/Berlin", "de_DE", {2026, 1, 2, 12, 0}, {2025, 12, 29, 0, 0}, 11},
        WeekCase{"before that week", "Europe/Berlin", "de_DE", {2026, 1, 2, 12, 0}, {2025, 12, 28, 23, 59}, 10},
        WeekCase{"the first, clocks went back", "Europe/Berlin", "de_DE", {2026, 1, 2, 12, 0}, {2025, 10, 13, 0, 0}, 0},
        WeekCase{"too long ago", "Europe/Berlin", "de_DE", {2026, 1, 2, 12, 0}, {2025, 10, 12, 23, 59}, inNoWeek},
        WeekCase{"a clock that was ahead", "Europe/Berlin", "de_DE", {2026, 1, 2, 12, 0}, {2027, 1, 1, 0, 0}, 11}));

}  // namespace
}  // namespace orvane::test
