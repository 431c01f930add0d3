#include "core/base/values/Calendar.h"
#include "tests/cli/OrvanectlFixture.h"

#include <algorithm>

namespace orvane::test {
namespace {

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

TEST_F(HistoryCommand, isEmptyBeforeTheFirstRun) {
  EXPECT_EQ(run({"history", "--json"}).output, "[]\n");
  EXPECT_EQ(run({"history"}).output, "0 runs recorded.\n");
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
  LiveProgram program(terminalSetup({"restore", id, "--swap"}));
  program.waitForOutput("~/Downloads/pip (5 bytes) stands in the place of what comes back");
  program.waitForOutput("and move 1 item (5 bytes) from their places to the Trash?");
  EXPECT_FALSE(exists(home.path("Downloads/pip/wheel"))) << "nothing moves before the answer";
  program.send("y\n");
  const auto result = program.finish();
  EXPECT_EQ(result.exitStatus, 0) << result.output;
  EXPECT_THAT(result.output, HasSubstr("Brought back 2 items."));
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
  LiveProgram program(terminalSetup({"restore", id, "--swap"}));
  program.waitForOutput("Bring back the 1 item (3 bytes)");
  // Another item stands there when the answer comes.
  std::filesystem::rename(home.path("Downloads/report.pdf"), home.path("Downloads/before"));
  home.file("Downloads/report.pdf", "somebody's");
  program.send("y\n");
  const auto result = program.finish();
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

TEST_F(HistoryCommand, namesWhatCannotComeBackBeforeItAsks) {
  home.file("Downloads/a", "1");
  home.file("Downloads/b", "22");
  const std::string id = json({"trash", "--yes", "Downloads/a", "Downloads/b"})["runId"];
  std::filesystem::remove(trashed("a"));
  home.file(".local/share/Trash/files/a", "another");
  LiveProgram program(terminalSetup({"restore", id}));
  program.waitForOutput("Item was emptied from Trash or moved: a");
  program.waitForOutput("Bring back the 1 item (2 bytes) left of");
  program.send("y\n");
  EXPECT_THAT(program.finish().output, HasSubstr("Brought back 1 item."));
  EXPECT_EQ(contentOf(trashed("a")), "another");
}

TEST_F(HistoryCommand, asksForWhatIsLeftOfARunAndBringsBackOnlyThat) {
  home.file("Downloads/a", "1");
  home.file("Downloads/b", "22");
  const std::string id = json({"trash", "--yes", "Downloads/a", "Downloads/b"})["runId"];
  LiveProgram program(terminalSetup({"restore", id}));
  program.waitForOutput("Bring back the 2 items (3 bytes)");
  // Another file takes its place in the Trash while the question stands.
  std::filesystem::remove(trashed("a"));
  home.file(".local/share/Trash/files/a", "another");
  program.send("y\n");
  const auto result = program.finish();
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.output, HasSubstr("Item was emptied from Trash or moved: a"));
  EXPECT_THAT(result.output, HasSubstr("Brought back 1 item."));
  EXPECT_FALSE(exists(home.path("Downloads/a")));
  EXPECT_THAT(run({"restore", id, "--yes"}).output, HasSubstr("Nothing of this run is left to bring back."));
}

TEST_F(HistoryCommand, restoresNothingWithoutAYes) {
  runOf("a", "1");
  for (const auto& [answer, status] : {std::pair{"n\n", 0}, std::pair{"\x03", 130}}) {
    LiveProgram program(terminalSetup({"restore", "--last"}));
    program.waitForOutput("Bring back the 1 item (1 byte)");
    program.send(answer);
    EXPECT_EQ(program.finish().exitStatus, status);
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
    const auto disturbed = [&](const Words& words) {
      auto program = setup(words);
      const Words strace{
          "/usr/bin/strace", "-f", "-o", "/dev/null", "-P", journal(), "-e", std::string("inject=") + call};
      program.arguments.insert(program.arguments.begin(), strace.begin(), strace.end());
      program.environment["ASAN_OPTIONS"] = "detect_leaks=0";
      return LiveProgram(program).finish();
    };
    const auto listed = disturbed({"history"});
    EXPECT_EQ(listed.exitStatus, 1);
    EXPECT_THAT(listed.errors, HasSubstr("cannot be read now"));
    const auto moved = disturbed({"trash", "--yes", "Downloads/b"});
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
  std::vector<std::string> keys;
  for (const auto& [key, value] : summary.items()) keys.push_back(key);
  EXPECT_THAT(keys, ElementsAre("totalDiskBytes", "freeDiskBytes", "usedDiskBytes", "reclaimableBytes",
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
