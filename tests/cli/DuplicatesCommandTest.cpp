#include "core/duplicates/records/DuplicateGroup.h"
#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

class DuplicatesCommand : public Orvanectl {
 public:
  std::string download(std::string_view name, std::string_view content = "1234567") const {
    return home.file("Downloads/" + std::string(name), content);
  }
};

TEST_F(DuplicatesCommand, neverTouchesAReferenceFolder) {
  const Words originals{"Pictures/Originals/long name of the original.jpg", "Pictures/Originals/twin.jpg"};
  const Words copies{"Downloads/a.jpg", "Pictures/b.jpg"};
  for (const auto& name : joined(originals, copies)) home.file(name, "picture");
  for (const auto* name : {"1", "2"}) home.file(std::string("Pictures/Originals/") + name, "only there");
  const Words words{"duplicates", "Downloads", "Pictures", "--reference", "Pictures/Originals"};
  EXPECT_THAT(json(words), SizeIs(1)) << "those of the reference alone are none";
  EXPECT_EQ(json(joined(words, {"--clean", "--yes"}))["itemsProcessed"], 2);
  EXPECT_TRUE(holds(originals, copies));
  EXPECT_EQ(run({"duplicates", "--reference", "none"}).exitStatus, 2);

  // Nor does what is applied later.
  home.file("Documents/original", "text");
  download("copy", "text");
  const auto saved = home.path("saved.json");
  EXPECT_EQ(run({"duplicates", "Downloads", "--reference", "Documents", "--save", saved}).exitStatus, 0);
  EXPECT_EQ(json({"apply", saved, "--yes"})["itemsProcessed"], 1);
  EXPECT_TRUE(holds({"Documents/original"}, {"Downloads/copy"}));
}

TEST_F(DuplicatesCommand, showsGroupsAsAPersonReadsThem) {
  download("report.pdf");
  download("report (1).pdf");
  download("photo copy.jpg", std::string(100'000, 'p'));
  home.file("Documents/photo.jpg", std::string(100'000, 'p'));
  const auto result = run({"duplicates", "--keep", "shortest-path"});
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.output,
            "2 copies of 100 KB each; 100 KB can be freed\n"
            "  keep    ~/Documents/photo.jpg\n"
            "  remove  ~/Downloads/photo copy.jpg\n"
            "\n"
            "2 copies of 7 bytes each; 7 bytes can be freed\n"
            "  keep    ~/Downloads/report.pdf\n"
            "  remove  ~/Downloads/report (1).pdf\n"
            "\n"
            "2 groups of identical files; 2 copies (100 KB) can go to the Trash.\n");
  EXPECT_EQ(run({"duplicates", "Downloads/report.pdf"}).exitStatus, 1) << "no folder";
  EXPECT_EQ(run({"duplicates", "Documents"}).output, "No duplicates were found.\n");
  EXPECT_TRUE(isUntouched());
}

TEST_F(DuplicatesCommand, writesTheGivenForm) {
  download("a");
  download("\xFF");
  const auto groups = json({"duplicates", "Downloads"});
  ASSERT_THAT(groups, SizeIs(1));
  const auto group = DuplicateGroup::fromJson(groups[0]);
  ASSERT_THAT(group.items, SizeIs(2));
  EXPECT_NE(group.items[0].isSelected(), group.items[1].isSelected());
  EXPECT_EQ(json({"duplicates", home.folder("empty")}).dump(), "[]");
}

TEST_F(DuplicatesCommand, cleansAndBringsBack) {
  download("a");
  const auto copy = download("copy of a");
  EXPECT_THAT(run({"duplicates", "--clean", "--yes", "--keep", "shortest-path"}),
              Says("Duplicate Cleanup\nCleaned 1 duplicate files, freeing 7 bytes.\n"));
  EXPECT_EQ(contentOf(trashed("copy of a")), "1234567");
  EXPECT_EQ(run({"restore", "--last", "--yes"}).exitStatus, 0);
  EXPECT_TRUE(exists(copy));
  EXPECT_TRUE(tells(json({"duplicates", "--clean", "--yes"}), {{"itemsProcessed", 1}, {"bytesReclaimed", 7}}));
}

TEST_F(DuplicatesCommand, movesOnlyTheCopiesThatWereShown) {
  download("a");
  download("copy of a");
  const auto replaced = download("replaced copy");
  const auto written = download("written copy");
  download("kept", "other content");
  const auto lonely = download("copy of kept", "other content");
  const auto result = answered({"duplicates", "--clean", "--keep", "shortest-path"}, "Move 4 items", "y\n", [&] {
    const auto time = std::filesystem::last_write_time(replaced);
    std::filesystem::rename(replaced, home.path("before"));
    download("replaced copy");
    std::filesystem::last_write_time(replaced, time);
    download("written copy", "changed");
    std::filesystem::remove(home.path("Downloads/kept"));
    download("arrived copy");
  });
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.output, HasSubstr("Cleaned 1 duplicate files, freeing 7 bytes."));
  for (const auto& path : {replaced, written, lonely}) {
    EXPECT_THAT(result.output, HasSubstr("Failed to trash duplicate " + path + ": "));
    EXPECT_TRUE(exists(path)) << path;
  }
  EXPECT_TRUE(holds({"Downloads/arrived copy"}, {"Downloads/copy of a"}));
}

TEST_F(DuplicatesCommand, saysWhichFoldersItDoesNotSearch) {
  home.files({"Library/Caches/a", "Library/Caches/b"});
  const auto result = run({"duplicates", "Library/Caches"});
  EXPECT_EQ(result.output, "No duplicates were found.\n");
  EXPECT_THAT(result.errors, HasSubstr("Library/Caches' is not searched for duplicates"));
}

TEST_F(DuplicatesCommand, leavesFilesThatItMayNotRead) {
  download("a");
  download("b");
  const auto secret = download("secret");
  ASSERT_EQ(::chmod(secret.c_str(), 0), 0);
  const auto result = runAsNobody({"duplicates", "Downloads", "--json"});
  EXPECT_EQ(result.exitStatus, 0) << result.errors;
  EXPECT_THAT(result.output, Not(HasSubstr("secret")));
  EXPECT_THAT(parseJson(result.output)[0]["items"], SizeIs(2));
}

TEST_F(DuplicatesCommand, namesWhatFailed) {
  const auto first = download("a");
  download("copy of a");
  // The Trash cannot be made.
  home.file(".local", "in the way");
  const auto result = run({"duplicates", "--clean", "--yes", "--keep", "shortest-path"});
  EXPECT_THAT(result, Fails(1, "Failed to trash duplicate " + home.path("Downloads/copy of a") + ": "));
  EXPECT_THAT(result.output, HasSubstr("Cleaned 0 duplicate files, freeing Zero KB."));
  EXPECT_TRUE(exists(first));
}

TEST_F(DuplicatesCommand, isInterrupted) {
  home.sparseFile("Downloads/one", 1'000'000'000'000);
  home.sparseFile("Downloads/two", 1'000'000'000'000);
  LiveProgram program(terminalSetup({"duplicates", "Downloads"}));
  program.waitForOutput("Comparing contents: 2 files");
  program.signal(SIGINT);
  const auto result = program.finish();
  EXPECT_THAT(result.output, HasSubstr("interrupted; nothing was changed"));
  EXPECT_EQ(result.exitStatus, 130);
}

TEST_F(DuplicatesCommand, keepsOneCopyWhenTwoCleanAtOnce) {
  constexpr int pairs = 40;
  for (int i = 0; i < pairs; ++i) {
    download(std::to_string(i), "content " + std::to_string(i));
    download("copy of " + std::to_string(i), "content " + std::to_string(i));
  }
  LiveProgram one(setup({"duplicates", "--clean", "--yes", "--keep", "shortest-path"}));
  LiveProgram two(setup({"duplicates", "--clean", "--yes", "--keep", "oldest"}));
  static_cast<void>(one.finish());
  static_cast<void>(two.finish());
  for (int i = 0; i < pairs; ++i) {
    const auto name = std::to_string(i);
    EXPECT_NE(exists(home.path("Downloads/" + name)), exists(home.path("Downloads/copy of " + name))) << i;
  }
}

}  // namespace
}  // namespace orvane::test
