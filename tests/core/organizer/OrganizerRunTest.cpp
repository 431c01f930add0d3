#include "core/base/files/PathAccess.h"
#include "tests/support/OrganizerFixture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane::test {
namespace {

class OrganizerRun : public OrganizerFixture {
 protected:
  // Everything about an item that a move has to leave as it was.
  struct Snapshot {
    std::string content;
    std::uint32_t mode;
    FileTime modified;
    std::uint64_t inode;
    bool operator==(const Snapshot&) const = default;
  };
  [[nodiscard]] std::map<std::string, Snapshot> snapshot() const {
    std::map<std::string, Snapshot> result;
    for (const auto& entry : fs::recursive_directory_iterator(tree.path("Downloads"))) {
      const auto status = readPathStatus(entry.path());
      const bool isFile = status->type == FileType::regular;
      result[entry.path()] = {isFile ? contentOf(entry.path()) : "", status->mode, status->modified, status->inode};
    }
    return result;
  }
};

TEST_F(OrganizerRun, aRoundTripLeavesEveryItemAsItWas) {
  tree.file("Downloads/a.pdf", "one");
  tree.file("Downloads/Sub/a.pdf", "two");
  tree.file("Downloads/Sub/deep/run.sh", "three");
  tree.file("Downloads/project/package.json", "{}");
  tree.file("Downloads/project/src/a.js", "four");
  ASSERT_EQ(::chmod(tree.path("Downloads/Sub/deep/run.sh").c_str(), 0751), 0);
  ASSERT_EQ(::chmod(tree.path("Downloads/project").c_str(), 0700), 0);
  setAge(tree.path("Downloads/a.pdf"), 1e6);
  setAge(tree.path("Downloads/project"), 2e6);
  auto before = snapshot();

  const auto summary = engine.applyMoves(analyze(Subfolders::include), *journal, roots());
  EXPECT_EQ(summary.itemsProcessed, 4);
  EXPECT_EQ(summary.bytesReclaimed, 0);
  EXPECT_EQ(contentOf(tree.path("Downloads/Organized/Documents/PDFs/a.pdf")), "one");
  EXPECT_EQ(contentOf(tree.path("Downloads/Organized/Documents/PDFs/a (1).pdf")), "two");
  EXPECT_EQ(contentOf(tree.path("Downloads/Organized/Development/Projects/project/src/a.js")), "four");

  const auto entries = journal->getEntries(summary.batchId);
  ASSERT_THAT(entries, SizeIs(4));
  for (const auto& entry : entries) {
    EXPECT_EQ(entry.action, JournalAction::moved);
    EXPECT_EQ(entry.timestamp, summary.timestamp);
    EXPECT_TRUE(exists(entry.trashedURL.path()));
  }
  EXPECT_EQ(entries[0].originalURL, tree.url("Downloads/project"));
  EXPECT_EQ(entries[0].fileSize, 6);

  const auto restored = journal->restoreRun(summary.batchId);
  EXPECT_EQ(restored.restoredCount, 4);
  EXPECT_THAT(restored.warnings, IsEmpty());
  auto after = snapshot();
  // Category folders may stay behind, empty; and the folders that held what moved are younger.
  std::erase_if(after, [&](const auto& item) {
    return item.first.starts_with(tree.path("Downloads/Organized")) && fs::is_directory(item.first);
  });
  for (auto* items : {&before, &after}) {
    for (const auto* folder : {"Downloads/Sub", "Downloads/Sub/deep"}) items->at(tree.path(folder)).modified = {};
  }
  EXPECT_EQ(after, before);
}

TEST_F(OrganizerRun, movesTheRestWhenSomeCannotMove) {
  tree.files({"Downloads/a.pdf", "Downloads/b.pdf", "Downloads/c.pdf", "Downloads/d.pdf"});
  auto groups = analyze();
  auto& moves = groups[0].moves;
  moves[0].originalURL = FileUrl(tree.file("Elsewhere/a.pdf"));
  fs::remove(tree.path("Downloads/b.pdf"));
  moves[3].isSelected = false;

  const auto execution = engine.carryOut(groups, *journal, roots());
  EXPECT_EQ(execution.summary.itemsProcessed, 1);
  ASSERT_THAT(execution.outcomes, SizeIs(3));
  EXPECT_EQ(execution.outcomes[0].result, MoveResult::refused);
  EXPECT_EQ(execution.outcomes[1].result, MoveResult::missing);
  EXPECT_EQ(execution.outcomes[2].result, MoveResult::moved);
  EXPECT_TRUE(exists(tree.path("Elsewhere/a.pdf")));
  EXPECT_TRUE(exists(tree.path("Downloads/d.pdf")));
  EXPECT_THAT(journal->getEntries(execution.summary.batchId), SizeIs(1));
}

TEST_F(OrganizerRun, failsWhenSafetyAloneStandsAgainstEverything) {
  const auto outside = tree.file("Elsewhere/a.pdf");
  tree.file("Downloads/gone.pdf");
  auto groups = engine.analyzeFolder(tree.url("Elsewhere"), tree.url("Downloads"), Subfolders::keepWhole,
                                     OrganizationStrategy::byCategory);
  try {
    engine.applyMoves(groups, *journal, roots());
    FAIL();
  } catch (const SecurityError& error) {
    EXPECT_EQ(
        error.which(),
        (SecurityError::Case{SecurityError::ProtectedPath{"Selected files were rejected by safety invariants."}}));
  }
  EXPECT_TRUE(exists(outside));
  EXPECT_THAT(journal->getRuns(), SizeIs(0));

  // A vanished item is passed over, and an empty selection is no failure.
  groups = analyze();
  fs::remove(tree.path("Downloads/gone.pdf"));
  EXPECT_EQ(engine.applyMoves(groups, *journal, roots()).itemsProcessed, 0);
  EXPECT_EQ(engine.applyMoves({}, *journal, roots()).itemsProcessed, 0);
}

TEST_F(OrganizerRun, failsWithTheLastErrorWhenNothingMoves) {
  tree.file("Downloads/a.pdf");
  tree.file("Downloads/Organized/Documents", "a file where a folder should be");
  const auto groups = analyze();
  try {
    engine.applyMoves(groups, *journal, roots());
    FAIL();
  } catch (const SecurityError&) {
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), HasSubstr("Not a directory"));
  }
  EXPECT_TRUE(exists(tree.path("Downloads/a.pdf")));
}

TEST_F(OrganizerRun, movesNothingButWhatWasLookedAt) {
  tree.file("Downloads/a.pdf", "same");
  const auto replaced = tree.file("Downloads/b.pdf", "before");
  tree.file("Downloads/folder/in.txt", "before");
  const auto groups = analyze();
  fs::remove(replaced);
  tree.file("Downloads/b.pdf", "after!");
  fs::rename(tree.path("Downloads/folder"), tree.path("other"));
  tree.file("Downloads/folder/in.txt", "after!");
  EXPECT_EQ(engine.applyMoves(groups, *journal, roots()).itemsProcessed, 1);
  EXPECT_EQ(contentOf(replaced), "after!");
  EXPECT_EQ(contentOf(tree.path("Downloads/folder/in.txt")), "after!");
  EXPECT_EQ(contentOf(tree.path("Downloads/Organized/Documents/PDFs/a.pdf")), "same");
}

TEST_F(OrganizerRun, passesOverWhatIsInItsPlaceByNow) {
  const auto path = tree.file("Downloads/Organized/Documents/PDFs/a.pdf");
  auto groups = engine.analyzeFolder(tree.url("Downloads/Organized/Documents/PDFs"), tree.url("Downloads"),
                                     Subfolders::keepWhole, OrganizationStrategy::byType);
  groups[0].destinationFolder = tree.url("Downloads/Organized/Documents/PDFs");
  EXPECT_EQ(engine.carryOut(groups, *journal, roots()).summary.itemsProcessed, 0);
  EXPECT_TRUE(exists(path));
}

}  // namespace
}  // namespace orvane::test
