#include "core/safety/journal/UndoJournal.h"

#include "core/base/text/Json.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SafetyFixture.h"

#include <chrono>
#include <stop_token>
#include <thread>

namespace orvane::test {
namespace {

class UndoJournalTest : public SafetyFixture {
 protected:
  static JournalEntry entryOf(const Uuid& runId, std::int64_t size) {
    JournalEntry entry;
    entry.runId = runId;
    entry.originalURL = FileUrl("/home/u/\xff name");
    entry.trashedURL = FileUrl("/home/u/.local/share/Trash/files/name");
    entry.fileSize = size;
    return entry;
  }

  static MoveIntent intentFor(const std::string& path, const FileUrl& destination, const Uuid& run = Uuid::random()) {
    auto entry = entryOf(run, 5);
    entry.originalURL = FileUrl(path);
    entry.trashedURL = destination;
    return SafetyFixture::intentFor(entry, entry.originalURL, destination);
  }
  // The record that the Trash gets before its item.
  [[nodiscard]] std::string writeRecord(const std::string& path) const {
    tree.folder(".local/share/Trash/files");
    return tree.file(".local/share/Trash/info/a.txt.trashinfo", "[Trash Info]\nPath=" + path + "\n");
  }
  [[nodiscard]] FileUrl inTrash(const std::string& name) const { return FileUrl(trashPath() + "/files/" + name); }
  [[nodiscard]] JournalEntry onlyEntry() const { return journal->getEntries(lastRun).front(); }

  [[nodiscard]] std::vector<std::string> filesInState() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(journalFolder())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }
};

TEST_F(UndoJournalTest, writesTheGivenForm) {
  auto entry = entryOf(*Uuid::parse("0a1b2c3d-0000-4000-8000-00000000000f"), 42);
  entry.id = *Uuid::parse("11111111-2222-4333-8444-555555555555");
  entry.timestamp = dateFromReferenceSeconds(785000000.125);
  journal->record(entry);
  EXPECT_EQ(contentOf(journalPath()),
            R"({"runs":[{"runId":"0A1B2C3D-0000-4000-8000-00000000000F","timestamp":785000000.125,"itemCount":1,)"
            R"("totalBytes":42,"isRestored":false}],"entries":{"0A1B2C3D-0000-4000-8000-00000000000F":[)"
            R"({"id":"11111111-2222-4333-8444-555555555555","runId":"0A1B2C3D-0000-4000-8000-00000000000F",)"
            R"("timestamp":785000000.125,"originalURL":"file:///home/u/%FF%20name",)"
            R"("trashedURL":"file:///home/u/.local/share/Trash/files/name","fileSize":42,"action":"trashed"}]}})");
}

TEST_F(UndoJournalTest, writesAnEntryOfAnyKindSoThatItReadsBackTheSame) {
  for (const double seconds : {0.0, -0.0, 785000000.0, 785000000.1, -3.5e-7, 4.1e18, 1e300}) {
    for (const auto& checksum : {std::optional<std::string>(), std::optional<std::string>("\"\\\u00e9")}) {
      auto entry = entryOf(Uuid::random(), INT64_MAX);
      entry.timestamp = dateFromReferenceSeconds(seconds);
      entry.checksum = checksum;
      entry.action = JournalAction::moved;
      std::string text;
      entry.appendJsonText(text);
      EXPECT_EQ(JournalEntry::fromJson(parseJson(text)), entry) << text;
      EXPECT_EQ(parseJson(text), entry.toJson()) << text;
    }
  }
}

TEST_F(UndoJournalTest, setsADamagedFileAsideAndStartsAnew) {
  for (const std::string damaged : {"{not json", "", R"({"foreign":true})", R"({"runs":[{}],"entries":{}})"}) {
    tree.file("State/undo_journal.json", damaged);
    reopenJournal();
    EXPECT_TRUE(journal->getRuns().empty());
    EXPECT_THAT(journal->takeNotices(), SizeIs(1)) << damaged;
    EXPECT_EQ(contentOf(journalPath()), damaged);
    journal->record(entryOf(Uuid::random(), 1));
    std::set<std::string> kept;
    for (const auto& name : filesInState()) {
      if (name.starts_with("undo_journal.damaged-")) kept.insert(contentOf(tree.path("State/" + name)));
    }
    EXPECT_TRUE(kept.contains(damaged)) << damaged;
    reopenJournal();
    EXPECT_EQ(journal->getRuns().size(), 1U);
    EXPECT_TRUE(journal->takeNotices().empty());
  }
}

// Another kind of file in the place of the journal or of a log: nothing waits for it, and nothing replaces it.
TEST_F(UndoJournalTest, movesNothingWhileTheJournalCannotBeRead) {
  const Rows<const char*, void (*)(const std::string&)> kinds{
      {"a folder", [](const std::string& path) { fs::create_directory(path); }},
      {"a pipe", [](const std::string& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); }},
      {"a device", [](const std::string& path) { fs::create_symlink("/dev/zero", path); }},
  };
  const auto item = tree.file("Downloads/a.txt");
  const Uuid dead = Uuid::random();
  for (const auto& [name, make] : kinds) {
    SCOPED_TRACE(name);
    clean({item});
    const auto run = lastRun;
    leaveLog({}, dead);
    fs::rename(journalPath(), tree.path("kept"));
    make(journalPath());
    reopenJournal();
    EXPECT_FALSE(journal->isReadable());
    EXPECT_THAT(journal->takeNotices(), ElementsAre(HasSubstr("cannot be read now")));
    EXPECT_THROW(journal->restoreRun(run), UndoError);
    const auto other = tree.file("Downloads/other.txt");
    EXPECT_THAT(clean({other}).front().error, HasSubstr("Nothing was moved"));
    journal->record(entryOf(Uuid::random(), 1));
    EXPECT_TRUE(exists(other));
    EXPECT_FALSE(fs::is_regular_file(journalPath()));
    fs::remove(journalPath());
    fs::rename(tree.path("kept"), journalPath());
    EXPECT_EQ(journal->restoreRun(run).restoredCount, 1);
    EXPECT_THAT(filesInState(), Not(Contains(HasSubstr("damaged"))));
    fs::remove(tree.path("State/" + RunLog::fileName(dead)));
  }
}

TEST_F(UndoJournalTest, passesOverWhatIsNoLog) {
  const auto path = tree.path("State/" + RunLog::fileName(Uuid::random()));
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  ASSERT_EQ(::mkfifo((path + ".new").c_str(), 0600), 0);
  reopenJournal();
  EXPECT_THAT(journal->takeNotices(), ElementsAre(HasSubstr("it is no regular file")));
  EXPECT_TRUE(exists(path));
}

TEST_F(UndoJournalTest, aTakenPlaceGetsTheNextFreeName) {
  const auto report = tree.file("Downloads/report.pdf", "old");
  const auto makefile = tree.file("Downloads/Makefile", "old");
  clean({report, makefile});
  tree.file("Downloads/report.pdf", "new");
  tree.file("Downloads/report (restored 1).pdf", "also new");
  tree.link("Downloads/Makefile", "dangling");
  EXPECT_EQ(journal->restoreRun(lastRun).restoredCount, 2);
  EXPECT_EQ(contentOf(report), "new");
  EXPECT_EQ(contentOf(tree.path("Downloads/report (restored 2).pdf")), "old");
  EXPECT_EQ(contentOf(tree.path("Downloads/Makefile (restored 1)")), "old");
}

TEST_F(UndoJournalTest, whatIsGoneBecomesAWarning) {
  const auto stays = tree.file("Downloads/stays.txt");
  fs::remove(clean({tree.file("Downloads/gone.txt"), stays})[0].destination.path());
  auto result = journal->restoreRun(lastRun);
  EXPECT_EQ(result.restoredCount, 1);
  EXPECT_THAT(result.warnings, ElementsAre("Item was emptied from Trash or moved: gone.txt"));
  EXPECT_EQ(journal->getEntries(lastRun)[0].action, JournalAction::trashed);
  EXPECT_EQ(journal->getEntries(lastRun)[1].action, JournalAction::restored);
  result = journal->restoreRun(lastRun);
  EXPECT_EQ(result.restoredCount, 0);
  EXPECT_EQ(result.warnings.size(), 1U);
  EXPECT_EQ(contentOf(stays), "content");
}

TEST_F(UndoJournalTest, aJournalOfATerabyteIsNotReadToItsEnd) {
  clean({tree.file("Downloads/a.txt")});
  fs::rename(journalPath(), tree.path("kept"));
  tree.sparseFile("State/undo_journal.json", std::int64_t{1} << 40);
  tree.sparseFile("State/undo_journal.8B0C9C1E-5E0B-4C8E-9B1E-4C2D1E3F4A5B.log", std::int64_t{1} << 40);
  reopenJournal();
  EXPECT_FALSE(journal->isReadable());
  EXPECT_EQ(clean({tree.file("Downloads/b.txt")}).front().result, MoveResult::failed);
  fs::rename(tree.path("kept"), journalPath());
  reopenJournal();
  EXPECT_EQ(journal->getRuns().size(), 1U);
  EXPECT_THAT(journal->takeNotices(), ElementsAre(HasSubstr("File too large")));
}

TEST_F(UndoJournalTest, countsWhatIsLeftToBringBack) {
  const auto back = tree.file("Downloads/back.txt");
  const auto away = tree.file("Downloads/away.txt");
  const auto outcomes = clean({back, away});
  EXPECT_EQ(journal->remainingCount(lastRun), 2);
  EXPECT_EQ(journal->remainingCount(Uuid::random()), 0);
  // As on a volume that is not mounted.
  fs::rename(trashPath(), tree.path("Unplugged"));
  EXPECT_EQ(journal->restoreRun(lastRun).warnings.size(), 2U);
  EXPECT_TRUE(journal->getRuns().front().isRestored);
  EXPECT_EQ(journal->remainingCount(lastRun), 2);
  fs::rename(tree.path("Unplugged"), trashPath());
  ASSERT_EQ(::unlink(outcomes[1].destination.path().c_str()), 0);
  EXPECT_EQ(journal->remainingCount(lastRun), 1);
  EXPECT_EQ(journal->restoreRun(lastRun).restoredCount, 1);
  EXPECT_EQ(journal->remainingCount(lastRun), 0);
}

TEST_F(UndoJournalTest, anItemThatTookTheNameInTheTrashStaysThere) {
  const auto path = tree.file("Downloads/a.txt", "first");
  const auto trashed = clean({path}).front().destination;
  const auto run = lastRun;
  ASSERT_EQ(::unlink(trashed.path().c_str()), 0);
  tree.file(".local/share/Trash/files/a.txt", "another's");
  tree.file(".local/share/Trash/info/a.txt.trashinfo",
            "[Trash Info]\nPath=/another/place/a.txt\nDeletionDate=2026-01-01T00:00:00\n");
  EXPECT_EQ(journal->restoreRun(run).restoredCount, 0);
  EXPECT_FALSE(exists(path));
  EXPECT_EQ(contentOf(trashed.path()), "another's");
  fs::remove(trashed.path());
  fs::remove(recordOf(trashed));
  // One of a run of its own, from the same place.
  tree.file("Downloads/a.txt", "second");
  ASSERT_EQ(clean({path}).front().destination, trashed);
  reopenJournal();
  EXPECT_EQ(journal->restoreRun(run).restoredCount, 0);
  EXPECT_EQ(contentOf(trashed.path()), "second");
  EXPECT_EQ(journal->restoreRun(lastRun).restoredCount, 1);
  EXPECT_EQ(contentOf(path), "second");
}

TEST_F(UndoJournalTest, followsNoLinkThatTookTheFoldersName) {
  const auto path = tree.file("Downloads/folder/a.txt", "mine");
  const auto trashed = clean({path}).front().destination;
  const auto elsewhere = tree.folder("Elsewhere");
  fs::remove(tree.path("Downloads/folder"));
  tree.link("Downloads/folder", elsewhere);
  for (const bool hasRecords : {true, false}) {
    if (!hasRecords) fs::remove(tree.path("State/undo_journal.items"));
    const auto result = journal->restoreRun(lastRun);
    EXPECT_THAT(result.warnings, ElementsAre(HasSubstr("now a link")));
    EXPECT_EQ(contentOf(trashed.path()), "mine");
    EXPECT_TRUE(fs::is_empty(elsewhere));
  }
  fs::remove(tree.path("Downloads/folder"));
  EXPECT_EQ(journal->restoreRun(lastRun).restoredCount, 1);
  EXPECT_EQ(contentOf(path), "mine");
}

TEST_F(UndoJournalTest, comesBackThroughTheLinkThatItWentThrough) {
  tree.file("Downloads/real/a.txt", "mine");
  tree.link("Downloads/link", tree.path("Downloads/real"));
  clean({tree.path("Downloads/link/a.txt")});
  EXPECT_EQ(journal->restoreRun(lastRun).restoredCount, 1);
  EXPECT_EQ(contentOf(tree.path("Downloads/real/a.txt")), "mine");
}

// The journal is a file that anybody may have changed.
TEST_F(UndoJournalTest, restoresNothingThatNoActionCouldHaveMoved) {
  const auto document = tree.file("Documents/letter.txt", "mine");
  const auto trashed = tree.file(".local/share/Trash/files/a.txt", "another's");
  struct Row {
    std::string original;
    std::string place;
    JournalAction action;
  };
  for (const auto& [original, place, action] : {
           Row{tree.path("Downloads/letter.txt"), document, JournalAction::trashed},
           Row{tree.path("Downloads/a.txt"), trashed, JournalAction::moved},
           Row{tree.path("Downloads/hostname"), "/etc/hostname", JournalAction::moved},
           Row{tree.path(".ssh/new/config"), trashed, JournalAction::trashed},
           Row{"/usr/bin/new/a.txt", trashed, JournalAction::trashed},
       }) {
    SCOPED_TRACE(original + " from " + place);
    auto entry = entryOf(Uuid::random(), 1);
    entry.originalURL = FileUrl(original);
    entry.trashedURL = FileUrl(place);
    entry.action = action;
    journal->record(entry);
    EXPECT_EQ(journal->restoreRun(entry.runId).warnings.size(), 1U);
    EXPECT_TRUE(exists(place));
    EXPECT_FALSE(exists(original));
  }
  EXPECT_FALSE(exists(tree.path(".ssh")));
  EXPECT_FALSE(exists("/usr/bin/new"));
}

TEST_F(UndoJournalTest, oneEntryComesBackByItself) {
  const auto first = tree.file("Downloads/first.txt", "1");
  const auto second = tree.file("Downloads/second.txt", "2");
  clean({first, second});
  const auto isRestored = [this] { return journal->getRuns().front().isRestored; };
  const auto restore = [this](std::size_t at) { return restoreOne(journal->getEntries(lastRun).at(at).id); };
  EXPECT_EQ(restore(1).restoredCount, 1);
  EXPECT_EQ(contentOf(second), "2");
  EXPECT_FALSE(exists(first));
  EXPECT_FALSE(isRestored());
  EXPECT_EQ(restore(1).restoredCount, 0) << "it is back already";
  EXPECT_EQ(restore(0).restoredCount, 1);
  EXPECT_EQ(contentOf(first), "1");
  EXPECT_TRUE(isRestored());
  EXPECT_THAT(journal->restoreRun(lastRun).warnings, IsEmpty());
  EXPECT_EQ(filesBelow(trashPath()), std::vector<std::string>{});
  EXPECT_THROW(restoreOne(Uuid::random()), UndoError);
  lastRun = Uuid::random();
  EXPECT_EQ(messageOf<UndoError>([&] { return restoreOne(Uuid::random()); }),
            "No recorded cleanup run found for ID: " + lastRun.toString());
  EXPECT_THROW(journal->restoreRun(lastRun), UndoError);
}

TEST_F(UndoJournalTest, twoJournalsOfOneFolderSeeAndKeepEachOthersRuns) {
  UndoJournal other(trash, fileMover, validator, FileUrl(journalFolder()));
  const Uuid mine = Uuid::random();
  const Uuid theirs = Uuid::random();
  journal->record(entryOf(mine, 1));
  other.record(entryOf(theirs, 2));
  journal->record(entryOf(mine, 3));
  for (auto* each : {journal.get(), &other}) {
    const auto runs = each->getRuns();
    ASSERT_EQ(runs.size(), 2U);
    EXPECT_EQ(runs[0].runId, theirs) << "the newest comes first";
    EXPECT_EQ(runs[1].itemCount, 2);
    EXPECT_EQ(runs[1].totalBytes, 4);
    EXPECT_EQ(each->getEntries(mine).size(), 2U);
    EXPECT_EQ(each->getEntries(theirs).size(), 1U);
  }
}

TEST_F(UndoJournalTest, processesCleaningAtOnceLoseNoEntryAndListNoRunTwice) {
  constexpr int processes = 4;
  constexpr int runsOfEach = 10;
  constexpr int items = 6;  // of each run
  const auto pathsOf = [&](int process, int part) {
    std::vector<std::string> paths;
    for (int i = 0; i < items; ++i) {
      paths.push_back(tree.path("Downloads/" + std::to_string(process) + "/" + std::to_string(part * items + i)));
    }
    return paths;
  };
  for (int at = 0; at < processes * runsOfEach; ++at) {
    for (const auto& path : pathsOf(at / runsOfEach, at % runsOfEach)) tree.file(path.substr(tree.path().size() + 1));
  }
  EXPECT_TRUE(inProcesses(processes, [&](int process) {
    UndoJournal own(trash, fileMover, validator, FileUrl(journalFolder()));
    for (int part = 0; part < runsOfEach; ++part) {
      CleanupRun run(mover, own, roots());
      for (const auto& outcome : run.carryOut(requests(pathsOf(process, part)))) {
        if (outcome.result != MoveResult::moved) throw std::runtime_error(outcome.error);
      }
    }
    return true;
  }));
  reopenJournal();
  std::set<Uuid> runs;
  std::size_t entries = 0;
  for (const auto& run : journal->getRuns()) {
    EXPECT_TRUE(runs.insert(run.runId).second);
    entries += journal->getEntries(run.runId).size();
  }
  EXPECT_EQ(runs.size(), std::size_t{processes} * runsOfEach);
  EXPECT_EQ(entries, std::size_t{processes} * runsOfEach * items);
}

TEST_F(UndoJournalTest, settlesWhatADeadRunLeftBehind) {
  const auto stayed = tree.file("Downloads/stayed.txt");
  const auto moved = tree.file("Downloads/moved.txt", "moved");
  const auto gone = tree.file("Downloads/gone.txt");
  const Uuid runId = Uuid::random();
  {
    RunLog log(journalFolder(), runId);
    for (const auto& path : {stayed, moved, gone}) {
      log.appendIntent(intentFor(path, inTrash(std::string(FileUrl(path).lastPathComponent())), runId));
    }
    log.sync();
    tree.folder(".local/share/Trash/files");
    for (const std::string name : {"stayed.txt", "moved.txt"}) {
      tree.file(".local/share/Trash/info/" + name + ".trashinfo", "[Trash Info]\n");
    }
    fs::rename(moved, inTrash("moved.txt").path());
    fs::remove(gone);
    // A run that lives is left alone.
    reopenJournal();
    EXPECT_TRUE(journal->getEntries(runId).empty());
  }
  reopenJournal();
  const auto entries = journal->getEntries(runId);
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].originalURL.path(), moved);
  EXPECT_TRUE(exists(stayed));
  EXPECT_FALSE(exists(trashPath() + "/info/stayed.txt.trashinfo"));
  EXPECT_THAT(journal->takeNotices(), Contains(HasSubstr("gone.txt")));
  EXPECT_THAT(filesInState(), Contains(EndsWith(".log.unclear")));
  reopenJournal();
  EXPECT_TRUE(journal->takeNotices().empty());
  EXPECT_EQ(journal->restoreRun(runId).restoredCount, 1);
  EXPECT_EQ(contentOf(moved), "moved");
}

// A run that died before it moved its item, whose record in the Trash is written already.
TEST_F(UndoJournalTest, keepsTheLogOfADeadRunUntilEverythingIsTakenBack) {
  const auto path = tree.file("Downloads/a.txt");
  const auto record = writeRecord(path);
  const auto partial = tree.file("Volume/Sorted/.orvane-1.partial");
  auto copy = intentFor(path, tree.url("Volume/Sorted/a.txt"));
  copy.partial = FileUrl(partial);
  copy.entry.action = JournalAction::moved;
  const Uuid runId = Uuid::random();
  const auto log = tree.path("State/" + RunLog::fileName(runId));
  leaveLog({intentFor(path, inTrash("a.txt")), copy}, runId);
  // A folder where the record should be: it can be no more removed than on a disk that fails.
  fs::remove(record);
  fs::create_directory(record);
  fs::rename(tree.path("Volume"), tree.path("Unplugged"));
  reopenJournal();
  EXPECT_TRUE(exists(log));
  fs::rename(tree.path("Unplugged"), tree.path("Volume"));
  reopenJournal();
  EXPECT_FALSE(exists(partial));
  EXPECT_TRUE(exists(log));
  fs::remove(record);
  EXPECT_EQ(writeRecord(path), record);
  reopenJournal();
  EXPECT_FALSE(exists(record) || exists(log));
}

TEST_F(UndoJournalTest, settlesADeadRunWhoseItemALivingOneHasOrWants) {
  for (const auto* place : {"a.2.txt", "a.txt"}) {
    SCOPED_TRACE(place);
    const bool hasMoved = place == std::string("a.2.txt");
    fs::remove_all(tree.path("State"));
    fs::remove_all(trashPath());
    tree.folder("State");
    const auto path = tree.file("Downloads/a.txt");
    const auto record = writeRecord(path);
    const Uuid dead = Uuid::random();
    leaveLog({intentFor(path, inTrash("a.txt"))}, dead);
    RunLog living(journalFolder(), Uuid::random());
    living.appendIntent(intentFor(path, inTrash(place)));
    living.sync();
    if (hasMoved) fs::rename(path, inTrash(place).path());
    reopenJournal();
    EXPECT_EQ(exists(record), !hasMoved) << "a living run has the record that it wants";
    EXPECT_THAT(journal->takeNotices(), IsEmpty());
    EXPECT_TRUE(journal->getRuns().empty());
    if (hasMoved) {
      EXPECT_THAT(filesInState(), Not(Contains(HasSubstr(dead.toString()))));
    }
  }
}

// A log may be settled long after its run died: the process that began to may have died too.
TEST_F(UndoJournalTest, leavesAnItemToTheRunThatTookItSince) {
  const auto path = tree.file("Downloads/a.txt");
  const auto dead = intentFor(path, inTrash("a.txt"));
  ASSERT_EQ(clean({path}).front().destination, dead.destination);
  leaveLog({dead});
  reopenJournal();
  EXPECT_THAT(journal->takeNotices(), IsEmpty());
  ASSERT_EQ(journal->getRuns().size(), 1U) << "one item is in the history once";
  EXPECT_EQ(journal->restoreRun(lastRun).restoredCount, 1);
}

// Two runs died before either could say that it moved the item.
TEST_F(UndoJournalTest, recordsAnItemOnceThatTwoDeadRunsWanted) {
  const auto path = tree.file("Downloads/a.txt");
  tree.folder(".local/share/Trash/files");
  for (const auto& run : {Uuid::random(), Uuid::random()}) leaveLog({intentFor(path, inTrash("a.txt"), run)}, run);
  fs::rename(path, inTrash("a.txt").path());
  reopenJournal();
  EXPECT_EQ(journal->getRuns().size(), 1U);
  EXPECT_THAT(journal->takeNotices(), IsEmpty());
}

// A restore died when the item was home, and another run took it from there before anybody read the log. It had removed
// the item's record in the Trash or not; in its place there may be another item.
TEST_F(UndoJournalTest, anItemThatLeftAgainAfterARestoreIsAwayOnce) {
  enum class Left { nothing, another, record };
  for (const auto left : {Left::nothing, Left::another, Left::record}) {
    SCOPED_TRACE(static_cast<int>(left));
    const auto path = tree.file("Downloads/a.txt");
    const auto trashed = clean({path}).front().destination;
    const auto first = lastRun;
    leaveLog({intentToRestore(onlyEntry())});
    fs::rename(trashed.path(), path);
    if (left != Left::record) fs::remove(recordOf(trashed));
    if (left == Left::another) tree.file(".local/share/Trash/files/a.txt", "another's");
    const auto again = clean({path}).front().destination;
    EXPECT_EQ(again.lastPathComponent(), left == Left::nothing ? "a.txt" : "a.2.txt");
    reopenJournal();
    EXPECT_THAT(journal->takeNotices(), IsEmpty());
    EXPECT_EQ(exists(recordOf(trashed)), left == Left::nothing);
    EXPECT_EQ(journal->remainingCount(first), 0);
    EXPECT_EQ(journal->restoreRun(lastRun).restoredCount, 1);
    EXPECT_EQ(contentOf(path), "content");
    fs::remove_all(trashPath());
  }
}

// A restore and a run that took the item again both died, and the journal tells of neither.
TEST_F(UndoJournalTest, anItemThatCameBackAndWentInRunsThatDiedIsAwayOnce) {
  // Logs are settled in no order that can be chosen.
  for (int round = 0; round < 8; ++round) {
    const auto path = tree.file("Downloads/a.txt");
    const auto trashed = clean({path}).front().destination;
    const auto first = lastRun;
    const auto back = intentToRestore(onlyEntry());
    {
      RunLog log(journalFolder(), Uuid::random());
      log.appendIntent(back);
      log.appendDone(std::vector{back.entry.id});
      log.sync();
    }
    const auto second = Uuid::random();
    fs::rename(trashed.path(), path);
    leaveLog({intentFor(path, trashed, second)}, second);
    fs::rename(path, trashed.path());
    reopenJournal();
    EXPECT_THAT(journal->takeNotices(), IsEmpty());
    EXPECT_EQ(journal->remainingCount(first), 0);
    ASSERT_EQ(journal->remainingCount(second), 1) << "round " << round;
    EXPECT_EQ(journal->restoreRun(second).restoredCount, 1);
  }
}

// A run writes the record of an item before the item comes.
TEST_F(UndoJournalTest, aRestoreThatDiedLeavesTheRecordOfARunThatTakesTheName) {
  const auto path = tree.file("Downloads/a.txt");
  const auto trashed = clean({path}).front().destination;
  leaveLog({intentToRestore(onlyEntry())});
  fs::rename(trashed.path(), path);
  const auto other = tree.file("Documents/a.txt", "another's");
  EXPECT_EQ(writeRecord(other), recordOf(trashed));
  {
    RunLog living(journalFolder(), Uuid::random());
    living.appendIntent(intentFor(other, trashed));
    living.sync();
    reopenJournal();
    EXPECT_TRUE(exists(recordOf(trashed)));
    EXPECT_EQ(onlyEntry().action, JournalAction::restored);
  }
  reopenJournal();
  EXPECT_FALSE(exists(recordOf(trashed))) << "the other run died as well";
  EXPECT_THAT(journal->takeNotices(), IsEmpty());
}

// Where its item is and what the Trash has of it fit together only between moves.
TEST_F(UndoJournalTest, settlesADeadRunOnlyWhileNothingMoves) {
  const auto path = tree.file("Downloads/a.txt");
  const auto record = writeRecord(path);
  leaveLog({intentFor(path, inTrash("a.txt"))});
  const RunLog living(journalFolder(), Uuid::random());
  {
    const auto moving = living.lockMoves();
    reopenJournal();
    EXPECT_TRUE(exists(record));
  }
  reopenJournal();
  EXPECT_FALSE(exists(record));
}

TEST_F(UndoJournalTest, aStartHoldsUpNoRunWhereNothingIsToBeSettled) {
  const RunLog living(journalFolder(), Uuid::random());
  reopenJournal();
  EXPECT_EQ(contentOf(journalFolder() + "/undo_journal.moves.lock"), "") << "names who had it alone";
  leaveLog({});
  reopenJournal();
  EXPECT_NE(contentOf(journalFolder() + "/undo_journal.moves.lock"), "");
}

// A process that has been running meanwhile brings the same run back.
TEST_F(UndoJournalTest, aRestoreKnowsWhatOneThatDiedHasBroughtBack) {
  const auto path = tree.file("Downloads/a.txt");
  const auto trashed = clean({path}).front().destination;
  const auto first = lastRun;
  UndoJournal other(trash, fileMover, validator, FileUrl(journalFolder()));
  leaveLog({intentToRestore(onlyEntry())});
  fs::rename(trashed.path(), path);
  fs::remove(recordOf(trashed));
  ASSERT_EQ(clean({path}).front().destination, trashed);
  EXPECT_EQ(other.restoreRun(first).restoredCount, 0);
  EXPECT_TRUE(exists(trashed.path()));
  EXPECT_EQ(other.remainingCount(lastRun), 1);
}

TEST_F(UndoJournalTest, processesRestoreOneAfterTheOther) {
  const auto path = tree.file("Downloads/a.txt");
  clean({path});
  const auto others = FileLock::acquire(journalFolder() + "/undo_journal.restore.lock");
  std::stop_source stop;
  const std::jthread impatient([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    stop.request_stop();
  });
  EXPECT_EQ(journal->restoreRun(lastRun, {}, stop.get_token()).restoredCount, 0);
  EXPECT_FALSE(exists(path));
}

TEST_F(UndoJournalTest, anOldLogTakesNothingBackThatWasRestoredSince) {
  const auto path = tree.file("Downloads/a.txt");
  clean({path});
  auto intent = intentToRestore(onlyEntry());
  std::swap(intent.source, intent.destination);
  intent.entry.action = JournalAction::trashed;
  EXPECT_EQ(journal->restoreRun(lastRun).restoredCount, 1);
  {
    RunLog log(journalFolder(), lastRun);
    log.appendIntent(intent);
    log.appendDone(std::vector{intent.entry.id});
    log.sync();
  }
  reopenJournal();
  EXPECT_EQ(onlyEntry().action, JournalAction::restored);
}

TEST_F(UndoJournalTest, whatCameBackStaysBackWhenTheClockWasSetBack) {
  const auto path = tree.file("Downloads/a.txt");
  const auto trashed = clean({path}).front().destination;
  auto intent = intentToRestore(onlyEntry());
  intent.entry.timestamp -= ReferenceClock::duration(3600);
  leaveLog({intent});
  fs::rename(trashed.path(), path);
  for (int start = 0; start < 2; ++start) {
    reopenJournal();
    EXPECT_EQ(onlyEntry().action, JournalAction::restored);
  }
}

TEST_F(UndoJournalTest, aLogThatEndsInTheMiddleOfALineIsReadAsFarAsItGoes) {
  const auto intent = intentFor(tree.file("a"), FileUrl("/b"));
  const Uuid runId = Uuid::random();
  RunLog log(journalFolder(), runId);
  log.appendIntent(intent);
  log.appendDone(std::vector{intent.entry.id});
  log.sync();
  const auto whole = contentOf(tree.path("State/" + RunLog::fileName(runId)));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const auto read = readRunLog(std::string_view(whole).substr(0, length));
    ASSERT_LE(read.size(), 1U);
    if (!read.empty()) {
      EXPECT_EQ(read[0].intent.entry, intent.entry);
      EXPECT_FALSE(read[0].done);
    }
  }
  EXPECT_TRUE(readRunLog(whole)[0].done);
}

}  // namespace
}  // namespace orvane::test
