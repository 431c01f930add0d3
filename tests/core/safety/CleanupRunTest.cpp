#include "core/safety/run/CleanupRun.h"

#include "platform/linux/LinuxProfile.h"
#include "tests/support/KeptPlaces.h"
#include "tests/support/SafetyFixture.h"

#include <sys/xattr.h>

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
  const auto fileBefore = statusOf(file);
  const auto folderBefore = statusOf(folder);

  const auto outcomes = clean({file, folder});
  fs::remove_all(tree.path("Downloads/deep"));
  const auto result = journal->restoreRun(lastRun);

  EXPECT_EQ(result.restoredCount, 2);
  EXPECT_THAT(result.warnings, IsEmpty());
  const auto after = statusOf(file);
  EXPECT_EQ(contentOf(file), "secret");
  EXPECT_EQ(after.st_mode, fileBefore.st_mode);
  EXPECT_EQ(after.st_ino, fileBefore.st_ino);
  EXPECT_EQ(after.st_mtim.tv_nsec, fileBefore.st_mtim.tv_nsec);
  std::array<char, 16> note{};
  EXPECT_EQ(::getxattr(file.c_str(), "user.note", note.data(), note.size()), 4);
  EXPECT_EQ(statusOf(folder).st_mtim.tv_nsec, folderBefore.st_mtim.tv_nsec);
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
  const auto elsewhere = tree.link("Elsewhere/link", last);

  const auto outcomes = clean({good, outside, escaping, missing, last, elsewhere});

  EXPECT_EQ(outcomes[0].result, MoveResult::moved);
  EXPECT_EQ(outcomes[1].result, MoveResult::refused);
  EXPECT_EQ(outcomes[1].error, "Safety validation failed: Operation denied: '" + outside +
                                   "' is a protected system or personal identity path.");
  EXPECT_EQ(outcomes[2].result, MoveResult::refused);
  EXPECT_EQ(outcomes[3].result, MoveResult::missing);
  EXPECT_EQ(outcomes[3].error, "File not found at path: " + missing);
  EXPECT_EQ(outcomes[4].result, MoveResult::moved);
  EXPECT_EQ(outcomes[5].result, MoveResult::refused) << "a link that points inside but lies outside";
  for (const auto& left : {outside, escaping, elsewhere}) EXPECT_TRUE(exists(left)) << left;
  EXPECT_EQ(journal->getEntries(lastRun).size(), 2U);
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

TEST_F(CleanupRunTest, treesDeeperThanOnePathMayBeMoveAndComeBack) {
  const std::string name(200, 'd');
  const auto folder = nestedFolders(tree.path("Downloads"), name, 30);
  std::string deep = tree.path("Downloads");
  for (int i = 0; i < 30; ++i) deep += "/" + name;
  FileDescriptor(::openat(folder.get(), "file", O_WRONLY | O_CREAT, 0644));
  const auto outcomes = clean({deep + "/file"});
  ASSERT_EQ(outcomes[0].result, MoveResult::moved) << outcomes[0].error;
  EXPECT_FALSE(readFileStatus(folder.get(), "file"));
  const auto result = journal->restoreRun(lastRun);
  EXPECT_EQ(result.restoredCount, 1) << (result.warnings.empty() ? "" : result.warnings[0]);
  EXPECT_TRUE(readFileStatus(folder.get(), "file"));
}

// The protected places of a Linux home, in the run that all moves go through, with nothing in front of it.
class ProtectedRun : public SafetyFixture {
 public:
  ProtectedRun() {
    for (const auto& place : keptPlaces) tree.file(place.path);
    for (const auto* program : {"org.mozilla.firefox", "org.example.App"}) {
      tree.folder(".local/share/flatpak/app/" + std::string(program));
    }
  }

  // Each place and each folder that holds it, up to the home.
  [[nodiscard]] std::vector<std::string> places() const {
    std::vector<std::string> result{tree.path()};
    for (const auto& place : keptPlaces) {
      for (auto path = fs::path(place.path); !path.empty(); path = path.parent_path()) {
        // Nothing in it tells that a folder of its name could hold such a place.
        if (path != "Games") result.push_back(tree.path(path.string()));
      }
    }
    return result;
  }

  const LinuxProfile profile{XdgFolders::below(tree.path())};
  const PathValidator withProfile{tree.path(), profile};
  TrashMover profileMover{trash, fileMover, withProfile};
};

TEST_F(ProtectedRun, refusesEveryPlaceWhateverTheBoundaryAndDestination) {
  const auto box = tree.url("Downloads/box");
  for (const auto& destination : {std::optional<FileUrl>(), std::optional(box)}) {
    auto all = requests(places());
    for (auto& one : all) one.destinationFolder = destination;
    CleanupRun run(profileMover, *journal, Boundary({tree.url(), FileUrl("/")}));
    for (const auto& outcome : run.carryOut(all)) {
      EXPECT_NE(outcome.result, MoveResult::moved) << outcome.source.path();
      EXPECT_FALSE(outcome.error.empty()) << outcome.source.path();
    }
    EXPECT_TRUE(journal->getEntries(run.id()).empty());
  }
  for (const auto& place : keptPlaces) EXPECT_TRUE(exists(tree.path(place.path))) << place.path;
}

TEST_F(ProtectedRun, movesWhatLiesBesideThem) {
  const auto beside = tree.file(".cargo/config.toml");
  CleanupRun run(profileMover, *journal, Boundary({tree.url()}));
  EXPECT_EQ(run.carryOut(requests({beside})).at(0).result, MoveResult::moved);
}

}  // namespace
}  // namespace orvane::test
