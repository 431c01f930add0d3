#include "core/safety/run/CleanupRun.h"

#include "tests/support/SafetyFixture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>

namespace orvane::test {
namespace {

class CleanupRunTest : public SafetyFixture {};

TEST_F(CleanupRunTest, movesEachItemWithItsRecordAndJournalsIt) {
  const auto report = tree.file("Downloads/report.pdf", "report");
  const auto folder = tree.folder("Downloads/old project");
  tree.file("Downloads/old project/main.c", "int main;");
  const auto link = tree.link("Downloads/shortcut", "report.pdf");

  const auto outcomes = clean({report, folder, link});

  const auto entries = journal->getEntries(lastRun);
  ASSERT_EQ(entries.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    ASSERT_EQ(outcomes[i].result, MoveResult::moved) << outcomes[i].error;
    EXPECT_FALSE(exists(outcomes[i].source.path()));
    EXPECT_TRUE(exists(outcomes[i].destination.path()));
    EXPECT_TRUE(contentOf(recordOf(outcomes[i].destination)).starts_with("[Trash Info]\nPath=/"));
    EXPECT_EQ(entries[i].originalURL, outcomes[i].source);
    EXPECT_EQ(entries[i].trashedURL, outcomes[i].destination);
    EXPECT_EQ(entries[i].action, JournalAction::trashed);
  }
  EXPECT_EQ(contentOf(outcomes[1].destination.path() + "/main.c"), "int main;");
  EXPECT_EQ(fs::read_symlink(outcomes[2].destination.path()), "report.pdf");
  const auto runs = journal->getRuns();
  ASSERT_EQ(runs.size(), 1U);
  EXPECT_EQ(runs[0].itemCount, 3);
  EXPECT_EQ(runs[0].totalBytes, 21);
}

TEST_F(CleanupRunTest, restoreGivesBackContentModeTimesAttributesAndLinks) {
  const auto file = tree.file("Downloads/deep/er/private.txt", "secret");
  ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
  ASSERT_EQ(::setxattr(file.c_str(), "user.note", "keep", 4, 0), 0);
  const auto folder = tree.folder("Downloads/linked");
  tree.file("Downloads/linked/a", "same inode");
  fs::create_hard_link(tree.path("Downloads/linked/a"), tree.path("Downloads/linked/b"));
  setAge(file, 86400.25);
  setAge(folder, 172800.5);
  struct stat fileBefore {};
  struct stat folderBefore {};
  ASSERT_EQ(::lstat(file.c_str(), &fileBefore), 0);
  ASSERT_EQ(::lstat(folder.c_str(), &folderBefore), 0);

  const auto outcomes = clean({file, folder});
  fs::remove_all(tree.path("Downloads/deep"));
  const auto result = journal->restoreRun(lastRun);

  EXPECT_EQ(result.restoredCount, 2);
  EXPECT_THAT(result.warnings, IsEmpty());
  struct stat after {};
  ASSERT_EQ(::lstat(file.c_str(), &after), 0);
  EXPECT_EQ(contentOf(file), "secret");
  EXPECT_EQ(after.st_mode, fileBefore.st_mode);
  EXPECT_EQ(after.st_ino, fileBefore.st_ino);
  EXPECT_EQ(after.st_mtim.tv_nsec, fileBefore.st_mtim.tv_nsec);
  std::array<char, 16> note{};
  EXPECT_EQ(::getxattr(file.c_str(), "user.note", note.data(), note.size()), 4);
  ASSERT_EQ(::lstat(folder.c_str(), &after), 0);
  EXPECT_EQ(after.st_mtim.tv_nsec, folderBefore.st_mtim.tv_nsec);
  EXPECT_EQ(fs::hard_link_count(tree.path("Downloads/linked/a")), 2U);
  for (const auto& outcome : outcomes) EXPECT_FALSE(exists(recordOf(outcome.destination)));
  for (const auto& entry : journal->getEntries(lastRun)) EXPECT_EQ(entry.action, JournalAction::restored);
  EXPECT_TRUE(journal->getRuns()[0].isRestored);
}

TEST_F(CleanupRunTest, failingItemsAreReportedAndTheRestGoesOn) {
  const auto good = tree.file("Downloads/good.txt");
  const auto outside = tree.file("Documents/outside.txt");
  const auto escaping = tree.link("Downloads/escape", tree.path("Documents/outside.txt"));
  const auto missing = tree.path("Downloads/vanished");
  const auto last = tree.file("Downloads/last.txt");

  const auto outcomes = clean({good, outside, escaping, missing, last});

  EXPECT_EQ(outcomes[0].result, MoveResult::moved);
  EXPECT_EQ(outcomes[1].result, MoveResult::refused);
  EXPECT_EQ(outcomes[1].error, "Safety validation failed: Operation denied: '" + outside +
                                   "' is a protected system or personal identity path.");
  EXPECT_EQ(outcomes[2].result, MoveResult::refused);
  EXPECT_EQ(outcomes[3].result, MoveResult::missing);
  EXPECT_EQ(outcomes[3].error, "File not found at path: " + missing);
  EXPECT_EQ(outcomes[4].result, MoveResult::moved);
  EXPECT_TRUE(exists(outside));
  EXPECT_TRUE(exists(escaping));
  EXPECT_EQ(journal->getEntries(lastRun).size(), 2U);
}

TEST_F(CleanupRunTest, aLinkThatPointsInsideButLiesOutsideStays) {
  tree.file("Downloads/target.txt");
  const auto link = tree.link("Elsewhere/link", tree.path("Downloads/target.txt"));
  EXPECT_EQ(clean({link})[0].result, MoveResult::refused);
  EXPECT_TRUE(exists(link));
}

TEST_F(CleanupRunTest, thousandsOfItemsOfOneNameAllGetPlacesOfTheirOwn) {
  std::vector<std::string> paths;
  for (int i = 0; i < 600; ++i) paths.push_back(tree.file("Downloads/" + std::to_string(i) + "/index.js"));
  const auto outcomes = clean(paths);
  std::map<FileUrl, int> places;
  for (const auto& outcome : outcomes) {
    ASSERT_EQ(outcome.result, MoveResult::moved) << outcome.error;
    ++places[outcome.destination];
  }
  EXPECT_EQ(places.size(), paths.size());
  reopenJournal();
  EXPECT_EQ(journal->getEntries(lastRun).size(), paths.size());
}

TEST_F(CleanupRunTest, neitherTheTrashNorTheJournalCanBeMoved) {
  const auto first = clean({tree.file("Downloads/a")});
  CleanupRun run(mover, *journal, Boundary({FileUrl("/")}));
  const auto outcomes = run.carryOut(
      requests({first[0].destination.path(), tree.path(".local"), trashPath(), journalPath(), tree.path("State")}));
  for (const auto& outcome : outcomes) EXPECT_NE(outcome.result, MoveResult::moved) << outcome.source.path();
  EXPECT_TRUE(exists(first[0].destination.path()));
  EXPECT_TRUE(exists(journalPath()));
}

TEST_F(CleanupRunTest, anItemThatIsNoLongerWhatWasApprovedStays) {
  const auto path = tree.file("Downloads/a", "before");
  auto changed = request(path);
  changed.expectedIdentity = ItemIdentity::of(*readFileStatus(AT_FDCWD, path.c_str()));
  tree.file("Downloads/a", "written since");
  CleanupRun run(mover, *journal, roots());
  const auto outcomes = run.carryOut(std::vector{changed});
  EXPECT_EQ(outcomes[0].result, MoveResult::changed);
  EXPECT_EQ(contentOf(path), "written since");
}

TEST_F(CleanupRunTest, withoutAJournalNothingMoves) {
  const auto path = tree.file("Downloads/a");
  fs::remove_all(journalFolder());
  tree.file("State", "a file where the journal's folder should be");
  const auto outcomes = clean({path});
  EXPECT_EQ(outcomes[0].result, MoveResult::failed);
  EXPECT_THAT(outcomes[0].error, HasSubstr("undo journal"));
  EXPECT_TRUE(exists(path));
}

TEST_F(CleanupRunTest, aStoppedRunLeavesTheRestAndJournalsWhatMoved) {
  std::vector<std::string> paths;
  for (int i = 0; i < 1100; ++i) paths.push_back(tree.file("Downloads/" + std::to_string(i)));
  std::stop_source stop;
  CleanupRun run(mover, *journal, roots());
  const auto outcomes = run.carryOut(
      requests(paths), [&](std::size_t, std::size_t) { stop.request_stop(); }, stop.get_token());
  std::size_t moved = 0;
  for (const auto& outcome : outcomes) {
    const bool isMoved = outcome.result == MoveResult::moved;
    EXPECT_EQ(exists(outcome.source.path()), !isMoved);
    EXPECT_TRUE(isMoved || outcome.result == MoveResult::cancelled);
    moved += isMoved ? 1 : 0;
  }
  EXPECT_EQ(moved, 512U);
  EXPECT_EQ(journal->getEntries(run.id()).size(), moved);
}

TEST_F(CleanupRunTest, movesIntoAFolderNeverReplaceAndComeBack) {
  tree.file("Downloads/Sorted/x.pdf", "was there");
  const auto first = tree.file("Downloads/a/x.pdf", "first");
  const auto second = tree.file("Downloads/b/x.pdf", "second");
  auto wanted = requests({first, second});
  for (auto& one : wanted) one.destinationFolder = tree.url("Downloads/Sorted");
  CleanupRun run(mover, *journal, roots());
  const auto outcomes = run.carryOut(wanted);
  EXPECT_EQ(outcomes[0].destination, tree.url("Downloads/Sorted/x (1).pdf"));
  EXPECT_EQ(outcomes[1].destination, tree.url("Downloads/Sorted/x (2).pdf"));
  EXPECT_EQ(contentOf(tree.path("Downloads/Sorted/x.pdf")), "was there");
  EXPECT_EQ(journal->getEntries(run.id())[0].action, JournalAction::moved);

  EXPECT_EQ(journal->restoreRun(run.id()).restoredCount, 2);
  EXPECT_EQ(contentOf(first), "first");
  EXPECT_EQ(contentOf(second), "second");
}

TEST_F(CleanupRunTest, oddNamesMoveAndComeBack) {
  std::vector<std::string> names{"line\nbreak",
                                 "tab\tand \x1b[31m",
                                 "\xff\xfe not utf-8",
                                 std::string(255, 'n'),
                                 "\xe2\x80\xaegnp.exe",
                                 " leading",
                                 "trailing.",
                                 "%41%zz",
                                 "..."};
  std::vector<std::string> paths;
  for (const auto& name : names) paths.push_back(tree.file("Downloads/" + name, name));
  // Dots in a row are refused wherever they stand.
  const auto outcomes = clean(paths);
  for (std::size_t i = 0; i + 1 < outcomes.size(); ++i) {
    ASSERT_EQ(outcomes[i].result, MoveResult::moved) << outcomes[i].error;
  }
  EXPECT_EQ(outcomes.back().result, MoveResult::refused);
  reopenJournal();
  EXPECT_EQ(journal->restoreRun(lastRun).restoredCount, static_cast<std::int64_t>(names.size()) - 1);
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(contentOf(paths[i]), names[i]);
}

TEST_F(CleanupRunTest, treesDeeperThanOnePathMayBeMoveAndComeBack) {
  std::string deep = tree.path("Downloads");
  FileDescriptor folder(::open(deep.c_str(), O_RDONLY | O_DIRECTORY));
  const std::string name(200, 'd');
  for (int i = 0; i < 30; ++i) {
    ASSERT_EQ(::mkdirat(folder.get(), name.c_str(), 0755), 0);
    folder = FileDescriptor(::openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY));
    deep += "/" + name;
  }
  FileDescriptor(::openat(folder.get(), "file", O_WRONLY | O_CREAT, 0644));
  const auto outcomes = clean({deep + "/file"});
  ASSERT_EQ(outcomes[0].result, MoveResult::moved) << outcomes[0].error;
  EXPECT_FALSE(readFileStatus(folder.get(), "file"));
  const auto result = journal->restoreRun(lastRun);
  EXPECT_EQ(result.restoredCount, 1) << (result.warnings.empty() ? "" : result.warnings[0]);
  EXPECT_TRUE(readFileStatus(folder.get(), "file"));
}

}  // namespace
}  // namespace orvane::test
