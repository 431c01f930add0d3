#include "core/tasks/History.h"

#include "core/base/files/PathText.h"
#include "core/tasks/RulesTask.h"
#include "core/tasks/RunOrigins.h"
#include "core/tasks/TrashTask.h"
#include "tests/support/CleanupRules.h"
#include "tests/support/TaskFixture.h"
#include "tests/support/TimeZone.h"

#include <unicode/locid.h>

#include <ctime>

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

TEST_F(HistoryTotalsTest, weeksFollowTheUsersCalendar) {
  constexpr int inNoWeek = -1;
  // what is told, where, now, when an item was moved, and in which week that is; the last one is that of now
  const Rows<const char*, const char*, const char*, LocalTime, LocalTime, int> rows{
      {"they begin on Sunday", "America/New_York", "en_US", {2026, 3, 11, 12, 0}, {2026, 3, 8, 0, 30}, 11},
      {"the night before", "America/New_York", "en_US", {2026, 3, 11, 12, 0}, {2026, 3, 7, 23, 59}, 10},
      {"they begin on Monday", "Europe/Berlin", "de_DE", {2026, 3, 11, 12, 0}, {2026, 3, 8, 23, 59}, 10},
      {"clocks went forward", "Europe/Berlin", "de_DE", {2026, 4, 1, 12, 0}, {2026, 3, 23, 0, 0}, 10},
      {"a year's end", "Europe/Berlin", "de_DE", {2026, 1, 2, 12, 0}, {2025, 12, 29, 0, 0}, 11},
      {"before that week", "Europe/Berlin", "de_DE", {2026, 1, 2, 12, 0}, {2025, 12, 28, 23, 59}, 10},
      {"the first, clocks went back", "Europe/Berlin", "de_DE", {2026, 1, 2, 12, 0}, {2025, 10, 13, 0, 0}, 0},
      {"too long ago", "Europe/Berlin", "de_DE", {2026, 1, 2, 12, 0}, {2025, 10, 12, 23, 59}, inNoWeek},
      {"a clock that was ahead", "Europe/Berlin", "de_DE", {2026, 1, 2, 12, 0}, {2027, 1, 1, 0, 0}, 11},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::get<0>(row));
    const ScopedLocale locale(std::get<2>(row));
    inTimeZone(std::get<1>(row), [&] {
      fs::remove_all(journalFolder());
      reopenJournal();
      JournalEntry entry;
      entry.timestamp = std::get<4>(row).date();
      entry.originalURL = tree.url("Downloads/a");
      entry.trashedURL = FileUrl(trashed("a"));
      entry.fileSize = 7;
      journal->record(entry);
      const auto weeks = historyTotals(taskServices(), std::get<3>(row).date()).weeks;
      ASSERT_EQ(weeks.size(), 12U);
      for (int week = 0; week < 12; ++week) {
        EXPECT_EQ(weeks[static_cast<std::size_t>(week)].moved.bytes, week == std::get<5>(row) ? 7 : 0) << week;
      }
    });
  }
}

using testing::Optional;

class RunOriginsTest : public TaskFixture {
 public:
  void runRules(const std::vector<std::string>& names, RunOrigin::Start start) {
    RulesOptions options;
    options.boundary = roots();
    for (const auto& name : names) {
      tree.file("Downloads/" + name + ".log", name);
      options.rules.push_back(ruleFor(name, {.fileExtensions = {{"log"}}, .namePattern = name}));
    }
    const auto proposal = proposeRules(taskServices(), options);
    ASSERT_TRUE(proposal);
    ASSERT_EQ(carryOut(taskServices(), proposal->approve(), {}, {}, start).moved(),
              static_cast<std::int64_t>(names.size()));
  }
  [[nodiscard]] std::vector<std::optional<RunOrigin>> origins() {
    std::vector<std::optional<RunOrigin>> result;
    for (const auto& run : readHistory(taskServices()).runs) result.push_back(run.origin);
    return result;
  }
  [[nodiscard]] std::string file() const { return joinPath(journal->storageFolder(), "undo_journal.origins"); }
};

TEST_F(RunOriginsTest, tellWhoHadEachRunDoneNewestFirst) {
  const std::vector place{FileUrl(tree.file("Downloads/by hand.txt"))};
  ASSERT_EQ(carryOut(taskServices(), proposeTrash(taskServices(), place, roots()).approve()).moved(), 1);
  runRules({"Old \"logs\"\n", "Ärger"}, RunOrigin::Start::byHand);
  runRules({"nightly"}, RunOrigin::Start::scheduled);
  // As their items come in the folder.
  const auto ofRules = [](std::string names) {
    return Optional(RunOrigin{TaskKind::rules, RunOrigin::Start::byHand, std::move(names)});
  };
  EXPECT_THAT(origins(), ElementsAre(Optional(RunOrigin{TaskKind::rules, RunOrigin::Start::scheduled, "nightly"}),
                                     AnyOf(ofRules("Old \"logs\"\n, Ärger"), ofRules("Ärger, Old \"logs\"\n")),
                                     Optional(RunOrigin{TaskKind::trash})));
}

TEST_F(RunOriginsTest, areThereBeforeTheFirstMove) {
  const std::vector place{FileUrl(tree.file("Downloads/a.txt"))};
  const auto approval = proposeTrash(taskServices(), place, roots()).approve();
  bool wasThere = false;
  const auto look = [&](std::size_t, std::size_t) { wasThere = exists(file()); };
  ASSERT_EQ(carryOut(taskServices(), approval, look).moved(), 1);
  EXPECT_TRUE(wasThere);
}

TEST_F(RunOriginsTest, passOverLinesThatAreNone) {
  runRules({"first"}, RunOrigin::Start::byHand);
  std::ofstream(file(), std::ios::app) << "{\"runId\":3}\nnoise\n{\"kind\":\"rules\"";
  runRules({"second"}, RunOrigin::Start::byHand);
  EXPECT_THAT(origins(),
              ElementsAre(Optional(Field(&RunOrigin::detail, "second")), Optional(Field(&RunOrigin::detail, "first"))));
}

TEST_F(RunOriginsTest, holdUpNoRunWhereTheyCannotBeWritten) {
  tree.folder(file().substr(tree.path().size() + 1));
  runRules({"first"}, RunOrigin::Start::byHand);
  EXPECT_THAT(origins(), ElementsAre(std::nullopt));
}

}  // namespace
}  // namespace orvane::test
