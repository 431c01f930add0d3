#include "tests/support/OrganizerFixture.h"

namespace orvane::test {
namespace {

class Organizer : public OrganizerFixture {};

TEST_F(Organizer, groupsAFoldersOwnEntriesByCategoryInCodePointOrder) {
  tree.file("Downloads/b.pdf", "12345");
  tree.file("Downloads/a.PDF", "123");
  tree.files({"Downloads/x.png", "Downloads/noext", "Downloads/.hidden.pdf"});
  tree.file("Downloads/Trip/photo.jpg", "1234");
  tree.file("Downloads/Trip/.cache/more", "12");
  tree.files({"Downloads/PDFs/old.pdf", "Downloads/PNG Files/old.png", "Downloads/2024-05 (May)/old.png"});
  learned.rememberPreference("zip", "apples/Zip");

  tree.file("Downloads/apples/kept.txt");
  tree.file("Downloads/c.zip");

  const auto groups = analyze();
  EXPECT_THAT(namesOf(groups), ElementsAre("Documents/PDFs", "Media/Folders", "Media/Images", "Other", "apples/Zip"));
  EXPECT_THAT(movesOf(groups), ElementsAre(Pair("Trip", "Downloads/Organized/Media/Folders/Trip"),
                                           Pair("a.PDF", "Downloads/Organized/Documents/PDFs/a.PDF"),
                                           Pair("b.pdf", "Downloads/Organized/Documents/PDFs/b.pdf"),
                                           Pair("c.zip", "Downloads/Organized/apples/Zip/c.zip"),
                                           Pair("noext", "Downloads/Organized/Other/noext"),
                                           Pair("x.png", "Downloads/Organized/Media/Images/x.png")));
  EXPECT_EQ(groups[0].totalSize(), 8);
  EXPECT_EQ(groups[0].destinationFolder, tree.url("Downloads/Organized/Documents/PDFs"));
  const auto& trip = groups[1].moves.front();
  EXPECT_TRUE(trip.isDirectory && trip.isSelected);
  EXPECT_EQ(trip.fileSize, 6) << "hidden files count in a folder's size";
  EXPECT_EQ(trip.originalURL, tree.url("Downloads/Trip"));
}

TEST_F(Organizer, walksSubfoldersButKeepsProjectsAndBundlesWhole) {
  tree.files({"Downloads/a.pdf", "Downloads/Sub/deep/x.mp3", "Downloads/site/Package.json", "Downloads/site/index.html",
              "Downloads/repo/.git/HEAD", "Downloads/Library.photoslibrary/originals/1.jpg"});
  tree.file("Downloads/Media/loose.png");        // a reserved folder is gone through
  tree.file("Downloads/Media/Images/done.png");  // in place
  tree.file("Downloads/Other/package.json");     // no project: its name is reserved
  tree.files({"Downloads/Folders/x/in.pdf", "Downloads/Projects/y/in.pdf", "Downloads/Keep As Is/z/in.pdf",
              "Downloads/Sub/PDFs/in.pdf", "Downloads/Sub/PDFs/unsorted/out.pdf", "Downloads/.cache/in.pdf"});

  const auto moves = movesOf(analyze(Subfolders::include));
  EXPECT_THAT(moves, UnorderedElementsAre(
                         Pair("a.pdf", "Downloads/Organized/Documents/PDFs/a.pdf"),
                         Pair("Sub/deep/x.mp3", "Downloads/Organized/Media/Audio/x.mp3"),
                         Pair("site", "Downloads/Organized/Development/Projects/site"),
                         Pair("repo", "Downloads/Organized/Development/Projects/repo"),
                         Pair("Library.photoslibrary", "Downloads/Organized/Documents/Folders/Library.photoslibrary"),
                         Pair("Media/loose.png", "Downloads/Organized/Media/Images/loose.png"),
                         Pair("Other/package.json", "Downloads/Organized/Development/Source Code/package.json"),
                         Pair("Sub/PDFs/unsorted/out.pdf", "Downloads/Organized/Documents/PDFs/out.pdf")));
}

TEST_F(Organizer, givesNoTwoProposalsOneTarget) {
  tree.files({"Downloads/a/x.pdf", "Downloads/b/x.pdf", "Downloads/c/x.pdf", "Downloads/d/x (1).pdf",
              "Downloads/Organized/Documents/PDFs/x (2).pdf"});
  const auto moves = movesOf(analyze(Subfolders::include));
  const std::string to = "Downloads/Organized/Documents/PDFs/";
  EXPECT_THAT(moves, ElementsAre(Pair("a/x.pdf", to + "x.pdf"), Pair("b/x.pdf", to + "x (1).pdf"),
                                 Pair("c/x.pdf", to + "x (3).pdf"), Pair("d/x (1).pdf", to + "x (1) (1).pdf")));
}

TEST_F(Organizer, leavesWhatIsInItsPlaceAndNeverMovesAFolderIntoItself) {
  tree.files(
      {"Downloads/Archives/x.zip", "Downloads/Archives/y.pdf", "Downloads/Other/z", "Downloads/Media/Images/a.png"});
  const auto here = tree.url("Downloads");
  EXPECT_THAT(engine.analyzeFolder(here, here, Subfolders::keepWhole, OrganizationStrategy::byCategory), IsEmpty());
  EXPECT_THAT(movesOf(engine.analyzeFolder(here, here, Subfolders::include, OrganizationStrategy::byCategory)),
              ElementsAre(Pair("Archives/y.pdf", "Downloads/Documents/PDFs/y.pdf")));
  // A folder on the way to the destination stays, too.
  EXPECT_THAT(movesOf(engine.analyzeFolder(here, tree.url("Downloads/Archives/deep/er"), Subfolders::keepWhole,
                                           OrganizationStrategy::byType)),
              UnorderedElementsAre(Pair("Media", "Downloads/Archives/deep/er/Folders/Media"),
                                   Pair("Other", "Downloads/Archives/deep/er/Folders/Other")));
  // Nor is a similar path taken for the same.
  tree.file("Downs/x.zip");
  EXPECT_THAT(engine.analyzeFolder(tree.url("Downs"), tree.url("Downs2"), Subfolders::keepWhole,
                                   OrganizationStrategy::byCategory),
              SizeIs(1));
}

TEST_F(Organizer, organizedTwiceProposesNothingMore) {
  tree.files({"Downloads/a.pdf", "Downloads/b.png", "Downloads/c", "Downloads/Trip/d.txt", "Downloads/e.zip"});
  for (const auto strategy : allOrganizationStrategies) {
    const auto here = tree.url("Downloads");
    const auto first = engine.analyzeFolder(here, here, Subfolders::keepWhole, strategy);
    EXPECT_FALSE(first.empty());
    engine.applyMoves(first, *journal, roots());
    EXPECT_THAT(engine.analyzeFolder(here, here, Subfolders::keepWhole, strategy), IsEmpty());
    journal->restoreRun(journal->getRuns().front().runId);
  }
}

TEST_F(Organizer, leavesLinksAndSpecialFilesAloneAndKeepsNamesThatAreNotUtf8) {
  const auto outside = tree.file("Elsewhere/secret.pdf");
  tree.link("Downloads/file.pdf", outside);
  tree.link("Downloads/folder", tree.path("Elsewhere"));
  tree.pipe("Downloads/pipe.pdf");
  EXPECT_THAT(analyze(), IsEmpty());
  EXPECT_THAT(analyze(Subfolders::include), IsEmpty());
  tree.file("Downloads/f\xff/caf\xe9.pdf");
  EXPECT_THAT(movesOf(analyze(Subfolders::include)),
              ElementsAre(Pair("f\xff/caf\xe9.pdf", "Downloads/Organized/Documents/PDFs/caf\xe9.pdf")));
}

TEST_F(Organizer, yieldsWhatCanBeRead) {
  EXPECT_THAT(analyze(Subfolders::include, "Downloads/missing"), IsEmpty());
  EXPECT_THAT(analyze(), IsEmpty());
  tree.file("Downloads/a.pdf");
  EXPECT_THAT(engine.analyzeFolder(tree.url("Downloads"), std::nullopt, Subfolders::include,
                                   OrganizationStrategy::byType, stopped()),
              IsEmpty());
}

TEST_F(Organizer, findsEveryFileOfAHugeFolder) {
  for (int i = 0; i < 5000; ++i) tree.file("Downloads/f" + std::to_string(i) + (i % 2 == 0 ? ".pdf" : ".png"), "x");
  const auto groups = analyze();
  ASSERT_THAT(groups, SizeIs(2));
  EXPECT_THAT(groups[0].moves, SizeIs(2500));
  EXPECT_EQ(groups[1].totalSize(), 2500);
  EXPECT_TRUE(std::ranges::is_sorted(groups[0].moves, {}, &ProposedMove::sourceRelativePath));
}

TEST_F(Organizer, aRenamedGroupIsRememberedForItsExtensions) {
  tree.file("Downloads/bill.PDF");
  tree.file("Downloads/note.txt");
  auto groups = analyze();
  const auto before = groups;
  const auto root = tree.url("Downloads/Organized");
  for (const auto* name : {"  \n\t", "../../Elsewhere", "/"}) {
    EXPECT_EQ(engine.updateCategory(0, name, groups, root), before);
  }
  EXPECT_EQ(engine.updateCategory(7, "x", groups, root), before);
  EXPECT_TRUE(preferences.values.empty());

  groups = engine.updateCategory(0, " Invoices\n", groups, root);
  EXPECT_EQ(groups[0].id, before[0].id);
  EXPECT_EQ(groups[0].destinationFolder, tree.url("Downloads/Organized/Invoices"));
  EXPECT_EQ(groups[0].moves[0].categoryName, "Invoices");
  EXPECT_EQ(groups[1], before[1]);

  tree.file("Downloads/other.pdf");
  tree.file("Downloads/Invoices/old.txt");  // made by the organizer, so left alone
  EXPECT_THAT(movesOf(analyze()), ElementsAre(Pair("bill.PDF", "Downloads/Organized/Invoices/bill.PDF"),
                                              Pair("note.txt", "Downloads/Organized/Documents/Text & Notes/note.txt"),
                                              Pair("other.pdf", "Downloads/Organized/Invoices/other.pdf")));
  EXPECT_TRUE(engine.isGeneratedFolder("Invoices"));
  EXPECT_FALSE(engine.isGeneratedFolder("Documents"));
}

TEST_F(Organizer, groupsRenamedToOneNameShareNoTarget) {
  tree.files({"Downloads/a/x.pdf", "Downloads/b/x.pdf", "Downloads/c/y.txt"});
  auto groups = analyze(Subfolders::include);
  const auto root = tree.url("Downloads/Organized");
  auto twin = groups[0];
  groups.push_back(twin);
  groups = engine.updateCategory(0, "All", groups, root);
  groups = engine.updateCategory(2, "All", groups, root);
  std::set<FileUrl> targets;
  for (const auto& move : groups[0].moves) targets.insert(move.targetURL);
  for (const auto& move : groups[2].moves) targets.insert(move.targetURL);
  EXPECT_THAT(targets, SizeIs(4));
}

TEST_F(Organizer, determinesTheCategoryOfOneItem) {
  const auto shot = tree.file("Pictures/Screenshot.png");
  tree.file("Downloads/box/main.py");
  EXPECT_EQ(
      engine.determineCategory(FileUrl(shot), ItemKind::file, tree.url("Pictures"), OrganizationStrategy::byCategory),
      "Screenshots");
  EXPECT_EQ(engine.determineCategory(tree.url("Downloads/box"), ItemKind::folder, tree.url("Downloads"),
                                     OrganizationStrategy::byCategory),
            "Development/Projects");
}

TEST_F(Organizer, discoversVisibleSubfoldersToADepth) {
  for (const auto* name : {"b/c/d", "a", ".hidden/x", "App.app/Contents", "Sorted/x", "PDF Files", "b/Folders"}) {
    tree.folder(std::string("Downloads/") + name);
  }
  tree.file("Downloads/file");
  tree.link("Downloads/link", tree.path("Downloads/b"));
  const auto found = [&](int depth) {
    std::vector<std::string> result;
    for (const auto& url : engine.discoverSubfolders(tree.url("Downloads"), depth)) {
      result.push_back(url.path().substr(tree.path("Downloads/").size()));
    }
    return result;
  };
  EXPECT_THAT(found(0), IsEmpty());
  EXPECT_THAT(found(1), ElementsAre("a", "b"));
  EXPECT_THAT(found(2), ElementsAre("a", "b", "b/c"));
  EXPECT_THAT(found(9), ElementsAre("a", "b", "b/c", "b/c/d"));
}

TEST_F(Organizer, sizesAllOfAFolder) {
  tree.file("Downloads/a", "12");
  tree.file("Downloads/.b/node_modules/c", "345");
  tree.link("Downloads/d", tree.path("Downloads/a"));
  EXPECT_EQ(FolderOrganizerEngine::fastFolderSize(tree.url("Downloads")), 5);
  EXPECT_EQ(FolderOrganizerEngine::fastFolderSize(tree.url("missing")), 0);
  EXPECT_EQ(FolderOrganizerEngine::resolveCollisionSafeTarget("a", tree.url("Downloads")), tree.url("Downloads/a (1)"));
}

class OrganizerRun : public OrganizerFixture {};

TEST_F(OrganizerRun, aRoundTripLeavesEveryItemAsItWas) {
  tree.file("Downloads/a.pdf", "one");
  tree.file("Downloads/Sub/a.pdf", "two");
  tree.file("Downloads/Sub/deep/run.sh", "three");
  tree.file("Downloads/project/package.json", "{}");
  tree.file("Downloads/project/src/a.js", "four");
  const auto before = contentsBelow(tree.path("Downloads"));
  const auto status = statusOf(tree.path("Downloads/project"));

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
  auto after = contentsBelow(tree.path("Downloads"));
  // Category folders may stay behind, empty.
  std::erase_if(after, [](const auto& item) { return item.first.starts_with("Organized") && item.second == "/"; });
  EXPECT_EQ(after, before);
  EXPECT_EQ(statusOf(tree.path("Downloads/project")).st_ino, status.st_ino);
}

TEST_F(OrganizerRun, movesTheRestWhenSomeCannotMoveOrAreNotWhatWasLookedAt) {
  for (const char name : {'a', 'b', 'c', 'd', 'e'}) tree.file("Downloads/" + std::string(1, name) + ".pdf");
  tree.file("Downloads/Photos/in.txt", "before");
  auto groups = analyze();
  auto& moves = groups[0].moves;
  ASSERT_THAT(moves, SizeIs(5));
  moves[0].originalURL = FileUrl(tree.file("Elsewhere/a.pdf"));
  fs::remove(tree.path("Downloads/b.pdf"));
  fs::remove(tree.path("Downloads/c.pdf"));
  tree.file("Downloads/c.pdf", "after!");
  moves[4].isSelected = false;
  fs::rename(tree.path("Downloads/Photos"), tree.path("other"));
  tree.file("Downloads/Photos/in.txt", "after!");

  const auto execution = engine.carryOut(groups, *journal, roots());
  EXPECT_EQ(execution.summary.itemsProcessed, 1);
  std::vector<MoveResult> results;
  for (const auto& outcome : execution.outcomes) results.push_back(outcome.result);
  EXPECT_THAT(results, ElementsAre(MoveResult::refused, MoveResult::missing, MoveResult::changed, MoveResult::moved,
                                   MoveResult::changed));
  EXPECT_TRUE(exists(tree.path("Elsewhere/a.pdf")));
  EXPECT_EQ(contentOf(tree.path("Downloads/c.pdf")), "after!");
  EXPECT_EQ(contentOf(tree.path("Downloads/Photos/in.txt")), "after!");
  EXPECT_TRUE(exists(tree.path("Downloads/e.pdf")));
  EXPECT_THAT(journal->getEntries(execution.summary.batchId), SizeIs(1));
}

TEST_F(OrganizerRun, failsWhenSafetyAloneStandsAgainstEverything) {
  const auto outside = tree.file("Elsewhere/a.pdf");
  tree.file("Downloads/gone.pdf");
  auto groups = engine.analyzeFolder(tree.url("Elsewhere"), tree.url("Downloads"), Subfolders::keepWhole,
                                     OrganizationStrategy::byCategory);
  EXPECT_EQ(messageOf<SecurityError>([&] { return engine.applyMoves(groups, *journal, roots()); }),
            SecurityError(SecurityError::ProtectedPath{"Selected files were rejected by safety invariants."}).what());
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
  EXPECT_THAT(messageOf<std::runtime_error>([&] { return engine.applyMoves(groups, *journal, roots()); }),
              HasSubstr("Not a directory"));
  EXPECT_TRUE(exists(tree.path("Downloads/a.pdf")));
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
