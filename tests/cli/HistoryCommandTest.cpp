#include "core/base/values/Calendar.h"
#include "tests/cli/OrvanectlFixture.h"

#include <algorithm>

namespace orvane::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

class HistoryCommand : public Orvanectl {
 public:
  // Trashes a new file and returns the run's identifier.
  std::string runOf(const std::string& name, const std::string& content) const {
    home.file("Downloads/" + name, content);
    return json({"trash", "--yes", "Downloads/" + name})["runId"];
  }
  [[nodiscard]] std::string journal() const {
    return home.path("Library/Application Support/Orvane/undo_journal.json");
  }
};

TEST_F(HistoryCommand, listsRunsNewestFirst) {
  EXPECT_EQ(run({"history", "--json"}).output, "[]\n");
  EXPECT_EQ(run({"history"}).output, "0 runs recorded.\n");
  const auto first = runOf("a", "1");
  const auto second = runOf("b", "22");
  const auto runs = json({"history"});
  ASSERT_EQ(runs.size(), 2);
  EXPECT_EQ(runs[0]["runId"], second);
  EXPECT_EQ(runs[1].dump(), R"({"runId":")" + first + R"(","timestamp":)" + runs[1]["timestamp"].dump() +
                                R"(,"itemCount":1,"totalBytes":1,"isRestored":false})");
  const auto text = run({"history"}).output;
  EXPECT_THAT(text,
              MatchesRegex("Run +When +Items +Size +State\n" + second.substr(0, 8) +
                           "[^\n]* 1 +2 bytes +can be restored\n" + first.substr(0, 8) +
                           "[^\n]*\n2 runs recorded: 3 bytes moved, Zero KB brought back, 3 bytes still[^\n]*\n"));
}

TEST_F(HistoryCommand, showsTheEntriesOfARun) {
  const auto id = runOf("a\nb", "123");
  auto lower = id.substr(0, 6);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
  const auto entries = json({"history", "show", lower});
  ASSERT_EQ(entries.size(), 1);
  EXPECT_EQ(entries[0]["runId"], id);
  EXPECT_EQ(entries[0]["originalURL"], home.url("Downloads/a\nb").absoluteString());
  EXPECT_EQ(entries[0]["action"], "trashed");
  EXPECT_THAT(run({"history", "show", id}).output, HasSubstr(R"(trashed  3 bytes  ~/Downloads/a\nb)"));
}

TEST_F(HistoryCommand, refusesRunsThatDoNotExist) {
  runOf("a", "1");
  const auto unknown = run({"history", "show", "00000000-0000-0000-0000-00000000abcd"});
  EXPECT_EQ(unknown.exitStatus, 1);
  EXPECT_EQ(unknown.errors, "orvanectl: No recorded cleanup run found for ID: 00000000-0000-0000-0000-00000000ABCD\n");
  // No identifier of this version begins so: its thirteenth digit tells the version.
  const auto prefix = run({"restore", "--yes", "00000000-0000-0"});
  EXPECT_EQ(prefix.exitStatus, 1);
  EXPECT_THAT(prefix.errors, HasSubstr("no recorded run begins with"));
}

TEST_F(HistoryCommand, asksForMoreOfANameThatSeveralRunsBeginWith) {
  // Seventeen runs: two of them begin with the same of sixteen digits.
  std::map<char, int> count;
  char shared = 0;
  for (int i = 0; i < 17; ++i) {
    const char first = runOf("a", "1")[0];
    if (++count[first] == 2) shared = first;
  }
  const auto result = run({"restore", "--yes", std::string(1, shared)});
  EXPECT_EQ(result.exitStatus, 2);
  EXPECT_THAT(result.errors, HasSubstr("several runs begin with"));
  EXPECT_FALSE(exists(home.path("Downloads/a")));
}

TEST_F(HistoryCommand, restoresRunsOneByOneFromTheNewest) {
  runOf("a", "1");
  runOf("b", "2");
  EXPECT_EQ(json({"restore", "--last", "--yes"}).dump(), R"({"restoredCount":1,"warnings":[]})");
  EXPECT_TRUE(exists(home.path("Downloads/b")) && !exists(home.path("Downloads/a")));
  EXPECT_EQ(run({"restore", "--last", "--yes"}).output, "Brought back 1 item.\n");
  EXPECT_TRUE(exists(home.path("Downloads/a")));
  const auto none = run({"restore", "--last", "--yes"});
  EXPECT_EQ(none.exitStatus, 1);
  EXPECT_EQ(none.errors, "orvanectl: there is no run left to restore\n");
  for (const auto& run : json({"history"})) EXPECT_EQ(run["isRestored"], true);
}

TEST_F(HistoryCommand, offersARunAgainThatCouldNotComeBack) {
  const auto id = runOf("a", "1");
  std::filesystem::rename(home.path(".local/share/Trash"), home.path("Unplugged"));
  EXPECT_EQ(run({"restore", "--last", "--yes"}).exitStatus, 1);
  EXPECT_THAT(run({"history"}).output, HasSubstr("1 can still be restored"));
  std::filesystem::rename(home.path("Unplugged"), home.path(".local/share/Trash"));
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], 1);
  const auto again = run({"restore", id, "--yes"});
  EXPECT_EQ(again.exitStatus, 0);
  EXPECT_EQ(again.output, "Nothing of this run is left to bring back.\n");
  EXPECT_EQ(again.errors, "");
}

TEST_F(HistoryCommand, tellsApartWhatIsBackWhatIsThereAndWhatIsAway) {
  runOf("a", "1");
  runOf("b", "22");
  runOf("emptied", "4444");
  std::filesystem::remove(trashed("emptied"));
  EXPECT_EQ(run({"restore", json({"history"})[1]["runId"].get<std::string>(), "--yes"}).exitStatus, 0);
  home.file("Stuff/c.pdf", "333");
  EXPECT_EQ(run({"organize", "Stuff", "--destination", "Drive/Box", "--apply", "--yes"}).exitStatus, 0);
  std::filesystem::rename(home.path("Drive"), home.path("unplugged"));
  EXPECT_THAT(
      run({"history"}).output,
      HasSubstr("4 runs recorded: 10 bytes moved, 2 bytes brought back, 1 byte still in the Trash. To bring one "
                "back: orvanectl restore RUN\nNot there now: ~/Drive, with 1 item (3 bytes).\n"));
}

TEST_F(HistoryCommand, restoresUnderAnotherNameWhereThePlaceIsTakenAndSaysSo) {
  const auto id = runOf("report.pdf", "old");
  home.file("Downloads/report.pdf", "new");
  const auto result = run({"restore", id, "--yes", "--json"});
  EXPECT_EQ(result.output, R"({"restoredCount":1,"warnings":[]})"
                           "\n");
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.errors, "report.pdf came back as report (restored 1).pdf: something stands in its place\n");
  EXPECT_EQ(contentOf(home.path("Downloads/report.pdf")), "new");
  EXPECT_EQ(contentOf(home.path("Downloads/report (restored 1).pdf")), "old");
}

TEST_F(HistoryCommand, swapsPlacesWithWhatStandsThere) {
  home.file("Downloads/pip/wheel", "old");
  home.file("Downloads/free", "1");
  const std::string id = json({"trash", "--yes", "Downloads/pip", "Downloads/free"})["runId"];
  home.file("Downloads/pip/new", "newer");
  const auto result =
      answered({"restore", id, "--swap"}, "and move 1 item (5 bytes) from their places to the Trash?", "y\n",
               [this] { EXPECT_FALSE(exists(home.path("Downloads/pip/wheel"))) << "nothing moves before it"; });
  EXPECT_EQ(result.exitStatus, 0) << result.output;
  EXPECT_THAT(result.output, AllOf(HasSubstr("~/Downloads/pip (5 bytes) stands in the place of what comes back"),
                                   HasSubstr("Brought back 2 items.")));
  EXPECT_EQ(contentOf(home.path("Downloads/pip/wheel")), "old");
  EXPECT_TRUE(exists(home.path("Downloads/free")) && !exists(home.path("Downloads/pip/new")));

  // The run that made room is one like any other, and swaps back.
  EXPECT_EQ(run({"trash", "--yes", "Downloads/pip"}).exitStatus, 0);
  const auto runs = json({"history"});
  ASSERT_EQ(runs.size(), 3);
  EXPECT_EQ(json({"restore", runs[1]["runId"].get<std::string>(), "--yes", "--swap"})["restoredCount"], 1);
  EXPECT_EQ(contentOf(home.path("Downloads/pip/new")), "newer");
}

TEST_F(HistoryCommand, leavesBothWhereTheyAreWhenNoRoomCanBeMade) {
  const auto id = runOf("report.pdf", "old");
  home.file("Downloads/report.pdf/.git/HEAD", "a repository took its place");
  const auto result = answered({"restore", id, "--swap"}, "Bring back the 1 item (3 bytes)", "y\n", [this] {
    std::filesystem::rename(home.path("Downloads/report.pdf"), home.path("Downloads/before"));
    home.file("Downloads/report.pdf", "somebody's");
  });
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.output, HasSubstr("Failed to restore report.pdf: what stands in its place stays"));
  EXPECT_EQ(contentOf(home.path("Downloads/report.pdf")), "somebody's");
  EXPECT_TRUE(exists(trashed("report.pdf")));
}

TEST_F(HistoryCommand, warnsOfItemsThatAreGone) {
  const auto id = runOf("gone", "1");
  std::filesystem::remove(trashed("gone"));
  const auto result = run({"restore", id, "--yes", "--json"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(result.output, R"({"restoredCount":0,"warnings":["Item was emptied from Trash or moved: gone"]})"
                           "\n");
  EXPECT_EQ(result.errors, "orvanectl: Item was emptied from Trash or moved: gone\n");
}

TEST_F(HistoryCommand, namesWhatCannotComeBackAndBringsBackTheRest) {
  const auto replace = [this] {
    std::filesystem::remove(trashed("a"));
    home.file(".local/share/Trash/files/a", "another");
  };
  struct Case {
    const char* name;
    const char* question;
    std::function<void()> before;
    std::function<void()> meanwhile;
  };
  for (const auto& [name, question, before, meanwhile] :
       {Case{"known before it asks", "Bring back the 1 item (2 bytes) left of", replace, [] {}},
        Case{"while the question stands", "Bring back the 2 items (3 bytes)", [] {}, replace}}) {
    SCOPED_TRACE(name);
    home.file("Downloads/a", "1");
    home.file("Downloads/b", "22");
    const std::string id = json({"trash", "--yes", "Downloads/a", "Downloads/b"})["runId"];
    before();
    const auto result = answered({"restore", id}, question, "y\n", meanwhile);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.output,
                AllOf(HasSubstr("Item was emptied from Trash or moved: a"), HasSubstr("Brought back 1 item.")));
    EXPECT_FALSE(exists(home.path("Downloads/a")));
    EXPECT_EQ(contentOf(trashed("a")), "another");
    EXPECT_THAT(run({"restore", id, "--yes"}).output, HasSubstr("Nothing of this run is left to bring back."));
    std::filesystem::remove_all(home.path(".local/share/Trash"));
  }
}

TEST_F(HistoryCommand, restoresNothingWithoutAYes) {
  runOf("a", "1");
  for (const auto& [answer, status] : {std::pair{"n\n", 0}, std::pair{"\x03", 130}}) {
    EXPECT_EQ(answered({"restore", "--last"}, "Bring back the 1 item (1 byte)", answer).exitStatus, status);
    EXPECT_FALSE(exists(home.path("Downloads/a")));
  }
}

TEST_F(HistoryCommand, saysThatTheJournalIsDamagedAndKeepsIt) {
  home.file("Library/Application Support/Orvane/undo_journal.json", "{\"runs\":");
  const auto listed = run({"history", "--json"});
  EXPECT_EQ(listed.exitStatus, 0);
  EXPECT_EQ(listed.output, "[]\n");
  EXPECT_THAT(listed.errors, StartsWith("orvanectl: The undo journal"));
  EXPECT_EQ(contentOf(journal()), "{\"runs\":");

  runOf("a", "1");
  EXPECT_EQ(json({"history"}).size(), 1);
  bool isKept = false;
  for (const auto& entry : std::filesystem::directory_iterator(home.path("Library/Application Support/Orvane"))) {
    if (entry.path().filename().string().starts_with("undo_journal.damaged-")) {
      isKept = contentOf(entry.path().string()) == "{\"runs\":";
    }
  }
  EXPECT_TRUE(isKept);
}

TEST_F(HistoryCommand, keepsAJournalThatCannotBeReadForAMoment) {
  const auto id = runOf("a", "1");
  const auto recorded = contentOf(journal());
  const auto file = home.file("Downloads/b");
  for (const auto* call : {"read:error=EIO", "openat:error=EMFILE", "openat:error=ENOMEM", "openat:error=EACCES"}) {
    SCOPED_TRACE(call);
    const Words strace{
        "/usr/bin/strace", "-f", "-o", "/dev/null", "-P", journal(), "-e", std::string("inject=") + call};
    const auto listed = runUnder(strace, {"history"});
    EXPECT_EQ(listed.exitStatus, 1);
    EXPECT_THAT(listed.errors, HasSubstr("cannot be read now"));
    const auto moved = runUnder(strace, {"trash", "--yes", "Downloads/b"});
    EXPECT_EQ(moved.exitStatus, 1);
    EXPECT_THAT(moved.errors, HasSubstr("Nothing was moved"));
    EXPECT_TRUE(exists(file));
    EXPECT_EQ(contentOf(journal()), recorded);
  }
  EXPECT_EQ(json({"restore", id, "--yes"})["restoredCount"], 1);
}

TEST_F(HistoryCommand, movesNothingWhereTheJournalCannotBeWritten) {
  home.file("Library/Application Support", "a file where the folder should be");
  const auto file = home.file("Downloads/a");
  const auto result = run({"trash", "--yes", "Downloads/a"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.errors, HasSubstr("Nothing was moved"));
  EXPECT_TRUE(exists(file));
}

TEST_F(HistoryCommand, summaryCountsWhatIsStillInTheTrash) {
  runOf("a", "1");
  runOf("b", "22");
  EXPECT_EQ(json({"summary"})["lifetimeReclaimedBytes"], 3);
  json({"restore", "--last", "--yes"});
  const auto summary = json({"summary"});
  EXPECT_THAT(keysOf(summary), ElementsAre("totalDiskBytes", "freeDiskBytes", "usedDiskBytes", "reclaimableBytes",
                                           "lifetimeReclaimedBytes", "categoryBreakdown"));
  EXPECT_EQ(summary["lifetimeReclaimedBytes"], 1);
  EXPECT_EQ(summary["reclaimableBytes"], 0);
  EXPECT_EQ(summary["categoryBreakdown"], Json::object());
  EXPECT_EQ(summary["usedDiskBytes"].get<std::int64_t>(),
            summary["totalDiskBytes"].get<std::int64_t>() - summary["freeDiskBytes"].get<std::int64_t>());
  EXPECT_THAT(run({"summary"}).output, HasSubstr("Moved to the Trash so far: 1 byte."));
}

TEST_F(HistoryCommand, summaryTellsWhatLiesInTheTrashWhoeverPutItThere) {
  EXPECT_THAT(run({"summary"}).output, HasSubstr("\nThe Trash is empty.\n"));
  runOf("mine", "123");
  home.file(".local/share/Trash/files/somebody's/file", "1234567");
  home.file(".local/share/Trash/info/somebody's.trashinfo",
            "[Trash Info]\nPath=/gone\nDeletionDate=" + localTimestamp(ReferenceClock::now() - std::chrono::hours(49)) +
                "\n");
  EXPECT_THAT(run({"summary"}).output, HasSubstr("\nIn the Trash: 2 items (10 bytes), the oldest for 2 days. Only "));
}

}  // namespace
}  // namespace orvane::test
