#include "core/base/values/Calendar.h"
#include "tests/cli/OrvanectlFixture.h"

#include <algorithm>

namespace orvane::test {
namespace {

using testing::MatchesRegex;

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
  EXPECT_TRUE(
      tells(entries[0],
            {{"runId", id}, {"originalURL", home.url("Downloads/a\nb").absoluteString()}, {"action", "trashed"}}));
  EXPECT_THAT(run({"history", "show", id}), Says(R"(trashed  3 bytes  ~/Downloads/a\nb)"));
}

TEST_F(HistoryCommand, refusesRunsThatDoNotExist) {
  runOf("a", "1");
  EXPECT_THAT(run({"history", "show", "00000000-0000-0000-0000-00000000abcd"}),
              Fails(1, "orvanectl: No recorded cleanup run found for ID: 00000000-0000-0000-0000-00000000ABCD\n"));
  // No identifier of this version begins so: its thirteenth digit tells the version.
  EXPECT_THAT(run({"restore", "--yes", "00000000-0000-0"}), Fails(1, "no recorded run begins with"));
}

TEST_F(HistoryCommand, restoresRunsOneByOneFromTheNewest) {
  runOf("a", "1");
  runOf("b", "2");
  EXPECT_EQ(json({"restore", "--last", "--yes"}).dump(), R"({"restoredCount":1,"warnings":[]})");
  EXPECT_TRUE(holds({"Downloads/b"}, {"Downloads/a"}));
  EXPECT_EQ(run({"restore", "--last", "--yes"}).output, "Brought back 1 item.\n");
  EXPECT_TRUE(holds({"Downloads/a"}));
  EXPECT_THAT(run({"restore", "--last", "--yes"}), Fails(1, "orvanectl: there is no run left to restore\n"));
  for (const auto& run : json({"history"})) EXPECT_EQ(run["isRestored"], true);
}

TEST_F(HistoryCommand, offersARunAgainThatCouldNotComeBack) {
  const auto id = runOf("a", "1");
  std::filesystem::rename(home.path(".local/share/Trash"), home.path("Unplugged"));
  EXPECT_EQ(run({"restore", "--last", "--yes"}).exitStatus, 1);
  EXPECT_THAT(run({"history"}), Says("1 can still be restored"));
  std::filesystem::rename(home.path("Unplugged"), home.path(".local/share/Trash"));
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], 1);
  EXPECT_THAT(run({"restore", id, "--yes"}), Says("Nothing of this run is left to bring back.\n"));
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
               [this] { EXPECT_TRUE(holds({}, {"Downloads/pip/wheel"})) << "nothing moves before it"; });
  EXPECT_THAT(result,
              Says("~/Downloads/pip (5 bytes) stands in the place of what comes back", "Brought back 2 items."));
  EXPECT_EQ(contentOf(home.path("Downloads/pip/wheel")), "old");
  EXPECT_TRUE(holds({"Downloads/free"}, {"Downloads/pip/new"}));

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
  EXPECT_EQ(result.output, R"({"restoredCount":0,"warnings":["Item was emptied from Trash or moved: gone"]})"
                           "\n");
  EXPECT_THAT(result, Fails(1, "orvanectl: Item was emptied from Trash or moved: gone\n"));
}

TEST_F(HistoryCommand, namesWhatCannotComeBackAndBringsBackTheRest) {
  const auto replace = [this] {
    std::filesystem::remove(trashed("a"));
    home.file(".local/share/Trash/files/a", "another");
  };
  using Case = std::tuple<const char*, std::function<void()>, std::function<void()>>;
  for (const auto& [question, before, meanwhile] : {Case{"Bring back the 1 item (2 bytes) left of", replace, [] {}},
                                                    Case{"Bring back the 2 items (3 bytes)", [] {}, replace}}) {
    SCOPED_TRACE(question);
    home.file("Downloads/a", "1");
    home.file("Downloads/b", "22");
    const std::string id = json({"trash", "--yes", "Downloads/a", "Downloads/b"})["runId"];
    before();
    const auto result = answered({"restore", id}, question, "y\n", meanwhile);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.output,
                AllOf(HasSubstr("Item was emptied from Trash or moved: a"), HasSubstr("Brought back 1 item.")));
    EXPECT_TRUE(holds({}, {"Downloads/a"}));
    EXPECT_EQ(contentOf(trashed("a")), "another");
    EXPECT_THAT(run({"restore", id, "--yes"}), Says("Nothing of this run is left to bring back."));
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
  EXPECT_THAT(listed, Says("[]\n"));
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
    EXPECT_THAT(runUnder(strace, {"history"}), Fails(1, "cannot be read now"));
    EXPECT_THAT(runUnder(strace, {"trash", "--yes", "Downloads/b"}), Fails(1, "Nothing was moved"));
    EXPECT_TRUE(exists(file));
    EXPECT_EQ(contentOf(journal()), recorded);
  }
  EXPECT_EQ(json({"restore", id, "--yes"})["restoredCount"], 1);
}

TEST_F(HistoryCommand, movesNothingWhereTheJournalCannotBeWritten) {
  home.file("Library/Application Support", "a file where the folder should be");
  const auto file = home.file("Downloads/a");
  EXPECT_THAT(run({"trash", "--yes", "Downloads/a"}), Fails(1, "Nothing was moved"));
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
  EXPECT_TRUE(tells(summary, {{"lifetimeReclaimedBytes", 1}, {"reclaimableBytes", 0}}));
  EXPECT_EQ(summary["categoryBreakdown"], Json::object());
  EXPECT_EQ(summary["usedDiskBytes"].get<std::int64_t>(),
            summary["totalDiskBytes"].get<std::int64_t>() - summary["freeDiskBytes"].get<std::int64_t>());
  EXPECT_THAT(run({"summary"}), Says("Moved to the Trash so far: 1 byte."));
}

TEST_F(HistoryCommand, summaryTellsWhatLiesInTheTrashWhoeverPutItThere) {
  EXPECT_THAT(run({"summary"}), Says("\nThe Trash is empty.\n"));
  runOf("mine", "123");
  home.file(".local/share/Trash/files/somebody's/file", "1234567");
  home.file(".local/share/Trash/info/somebody's.trashinfo",
            "[Trash Info]\nPath=/gone\nDeletionDate=" + localTimestamp(ReferenceClock::now() - std::chrono::hours(49)) +
                "\n");
  EXPECT_THAT(run({"summary"}), Says("\nIn the Trash: 2 items (10 bytes), the oldest for 2 days. Only "));
}

}  // namespace
}  // namespace orvane::test
