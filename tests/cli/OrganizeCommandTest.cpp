#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

class OrganizeCommand : public Orvanectl {
 public:
  OrganizeCommand() {
    home.file("Stuff/a.pdf", "one");
    home.file("Stuff/Sub/b.pdf", "three");
  }
};

TEST_F(OrganizeCommand, previewsByGroupAndChangesNothing) {
  home.file("Stuff/Sub/a.pdf", "two");
  EXPECT_EQ(run({"organize", "Stuff", "--subfolders"}).output,
            "Documents/PDFs (3 items, 11 bytes)  ->  ~/Stuff/Organized/Documents/PDFs\n"
            "├─ 3 bytes  a.pdf\n"
            "├─ 3 bytes  Sub/a.pdf -> a (1).pdf\n"
            "└─ 5 bytes  Sub/b.pdf\n"
            "3 items (11 bytes) into 1 folder.\n"
            "Nothing was moved: add --apply to move them.\n");
  EXPECT_FALSE(exists(home.path("Stuff/Organized")) || !isUntouched());
}

TEST_F(OrganizeCommand, printsGroupsAsJson) {
  home.file("Stuff/odd\xff.png");
  const auto groups = json({"organize", "Stuff"});
  ASSERT_EQ(groups.size(), 3U);
  EXPECT_EQ(groups[0]["name"], "Documents/Folders");
  EXPECT_EQ(groups[0]["moves"][0]["isDirectory"], true);
  EXPECT_EQ(groups[2]["moves"][0]["originalURL"], "file://" + home.path("Stuff") + "/odd%FF.png");
}

TEST_F(OrganizeCommand, appliesRenamesRemembersAndComesBack) {
  const Words rename{"organize", "Stuff", "--subfolders", "--rename", "Documents/PDFs=Papers/All"};
  EXPECT_EQ(json(rename)[0]["name"], "Papers/All");
  EXPECT_EQ(json({"organize", "Stuff", "--subfolders"})[0]["name"], "Documents/PDFs") << "a preview teaches nothing";
  const auto summary = json(joined(rename, {"--apply", "--yes"}));
  EXPECT_TRUE(tells(summary, {{"itemsProcessed", 2}, {"bytesReclaimed", 0}}));
  EXPECT_EQ(contentOf(home.path("Stuff/Organized/Papers/All/b.pdf")), "three");
  EXPECT_EQ(json({"restore", summary["batchId"].get<std::string>(), "--yes"})["restoredCount"], 2);
  EXPECT_EQ(contentOf(home.path("Stuff/a.pdf")), "one");
  EXPECT_EQ(json({"organize", "Stuff", "--subfolders"})[0]["name"], "Papers/All");
}

TEST_F(OrganizeCommand, movesToAnotherFolderByType) {
  const auto result = run({"organize", "Stuff", "--strategy", "type", "--destination", "Box", "--apply", "--yes"});
  EXPECT_THAT(result, Says("Moved 2 items into other folders.", "orvanectl restore "));
  EXPECT_EQ(contentOf(home.path("Box/PDF Files/a.pdf")), "one");
  EXPECT_EQ(contentOf(home.path("Box/Folders/Sub/b.pdf")), "three");
  EXPECT_THAT(run({"organize", "Stuff"}).output, StartsWith("There is nothing to organize in ~/Stuff."));
}

TEST_F(OrganizeCommand, namesMonthsInTheUsersLanguage) {
  environment["LANG"] = environment["LC_ALL"] = "de_DE.UTF-8";
  const Words months{"Januar", "Februar", "März",      "April",   "Mai",      "Juni",
                     "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
  const auto name = json({"organize", "Stuff", "--strategy", "date"})[0]["name"].get<std::string>();
  EXPECT_EQ(name.substr(7), " (" + months[std::stoul(name.substr(5, 2)) - 1] + ")");
}

TEST_F(OrganizeCommand, saysWhatStaysAndProposesNothingThatAlwaysFails) {
  const Words staying{"Stuff/a..b.pdf", "Stuff/movie.mp4.crdownload", "Stuff/~$letter.docx"};
  for (const auto& name : staying) home.file(name);
  const auto result = run({"organize", "Stuff", "--apply", "--yes"});
  EXPECT_THAT(result, Says("Moved 2 items into other folders."));
  EXPECT_THAT(result, Fails(0, "left out: 1 item (7 bytes) that may not be moved (Operation denied: Path traversal",
                            "left out: 2 items (14 bytes) still being written or open in another program"));
  EXPECT_TRUE(holds(staying));
  home.file("Box/PDF Files/a.pdf", "1234");
  EXPECT_THAT(run({"organize", "Box/PDF Files", "--strategy", "type", "--destination", "Box"}),
              Fails(0, "left out: 1 item (4 bytes) in place already"));
}

TEST_F(OrganizeCommand, itsUndoTakesAwayTheFoldersThatItMade) {
  home.file("Stuff/song.mp3");
  home.folder("Stuff/Organized/Archives");
  const auto summary = json({"organize", "Stuff", "--apply", "--yes"});
  home.file("Stuff/Organized/Media/Audio/mine.txt");
  EXPECT_EQ(run({"restore", summary["batchId"].get<std::string>(), "--yes"}).exitStatus, 0);
  // One was there before, and empty.
  EXPECT_TRUE(
      holds({"Stuff/Organized/Media/Audio/mine.txt", "Stuff/Organized/Archives"}, {"Stuff/Organized/Documents"}));

  const auto again = json({"organize", "Stuff", "--apply", "--yes"});
  const auto other = home.folder("other");
  std::filesystem::rename(home.path("Stuff/Organized/Documents/PDFs/a.pdf"), other + "/a.pdf");
  std::filesystem::rename(other, home.path("Stuff/Organized/Documents/PDFs"));
  EXPECT_EQ(run({"restore", again["batchId"].get<std::string>(), "--yes"}).exitStatus, 0);
  EXPECT_TRUE(holds({"Stuff/Organized/Documents/PDFs"}, {"Stuff/Organized/Documents/Folders"}))
      << "somebody else made the one";
}

TEST_F(OrganizeCommand, remembersNamesOnceSomethingMovedAndForgetsThem) {
  const auto renamed = [](const std::string& name) {
    return Words{"organize", "Stuff", "--apply", "--rename", "Documents/PDFs=" + name};
  };
  EXPECT_EQ(run(joined(renamed(std::string(300, 'x')), {"--yes"})).exitStatus, 2);
  // Nothing of the group can move any more once it is approved.
  const auto refused =
      answered(renamed("Papers"), "[y/N] ", "y\n", [this] { std::filesystem::remove(home.path("Stuff/a.pdf")); });
  EXPECT_EQ(refused.exitStatus, 1);
  EXPECT_EQ(json({"organize", "--learned"}), Json::object());

  home.file("Stuff/c.pdf");
  EXPECT_EQ(run(joined(renamed("Papers"), {"--yes"})).exitStatus, 0);
  EXPECT_EQ(json({"organize", "--learned"}), (Json{{"pdf", "Papers"}}));
  EXPECT_THAT(run({"organize", "--learned"}).output, HasSubstr("pdf   Papers"));
  EXPECT_EQ(run({"organize", "--forget"}).output, "No name is remembered.\n");
  EXPECT_EQ(json({"organize", "--learned"}), Json::object());
  // Too long for a folder.
  home.file("Stuff/d.pdf");
  home.file(".config/orvane/preferences.json",
            jsonText(Json{{"OrvaneLearnedCategoryPreferences", Json{{"pdf", std::string(300, 'x')}}}}));
  EXPECT_EQ(json({"organize", "Stuff"})[0]["name"], "Documents/PDFs");
}

TEST_F(OrganizeCommand, takesNoTextWithSpacesForAnExtension) {
  home.files({"Stuff/Dr. Smith", "Stuff/p.pdf "});
  const auto groups = json({"organize", "Stuff", "--strategy", "type"});
  ASSERT_EQ(groups.size(), 3U);
  EXPECT_EQ(groups[1]["name"], "No Extension");
  EXPECT_EQ(groups[1]["moves"].size(), 2U);
}

TEST_F(OrganizeCommand, leavesTheFoldersOfTopicsAlone) {
  home.files({"Stuff/Organized/Documents/Travel/visa.pdf", "Documents/Organized/Travel/visa.pdf"});
  EXPECT_EQ(json({"organize", "Stuff", "--subfolders"})[0]["moves"].size(), 2U);
  EXPECT_EQ(json({"organize", "Documents", "--subfolders"}), Json::array());
}

TEST_F(OrganizeCommand, saysWhatItTakesApartAndWhichLinksBreak) {
  home.file("Stuff/Makefile");
  home.file("Stuff/package.json", "{}");
  home.link("Stuff/latest", "Sub/b.pdf");
  home.link("Stuff/direct.pdf", home.path("Stuff/a.pdf"));
  home.link("Stuff/elsewhere", "/usr");
  home.link("Desktop/paper", home.path("Stuff/a.pdf"));
  EXPECT_THAT(run({"organize", "Stuff"}), Fails(0, "~/Stuff is a software project, which this takes apart",
                                                "3 symbolic links to what moves will point nowhere"));
  EXPECT_EQ(run({"organize", "Stuff/Sub"}).errors, "");
}

TEST_F(OrganizeCommand, knowsTheKindsOfFilesOfThisSystemAfterTheGivenOnes) {
  const std::map<std::string, std::string> kinds{{"a.deb", "Installers"},
                                                 {"b.AppImage", "Installers"},
                                                 {"c.odt", "Documents/Text & Notes"},
                                                 {"d.tif", "Media/Images"},
                                                 {"e.NEF", "Media/Images"},
                                                 {"f.zst", "Archives"},
                                                 {"g.opus", "Media/Audio"},
                                                 {"h.key", "Documents/Presentations"},
                                                 {"i.unknown", "Other"}};
  for (const auto& [name, kind] : kinds) home.file("Kinds/" + name);
  std::map<std::string, std::string> found;
  for (const auto& group : json({"organize", "Kinds"})) {
    for (const auto& move : group["moves"]) found.emplace(move["sourceRelativePath"], group["name"]);
  }
  EXPECT_EQ(found, kinds);
}

TEST_F(OrganizeCommand, changesNothingWhereItIsMisused) {
  for (const auto& [words, exitStatus, message] : Rows<Words, int, const char*>{
           {{"--yes"}, 2, "FOLDER"},
           {{"Stuff", "--strategy", "size"}, 2, "size"},
           {{"Missing"}, 1, "No such file"},
           {{".", "--apply", "--yes"}, 1, "denied"},
           {{"/etc", "--apply", "--yes"}, 1, "denied"},
           {{"Stuff", "--rename", "x=y"}, 2, "there is no group 'x'"},
           {{"Stuff", "--rename", "x"}, 2, "OLD=NEW"},
           {{"Stuff", "--apply", "--yes", "--rename", "Documents/PDFs= "}, 2, "no name for a folder"},
           {{"Stuff", "--apply", "--yes", "--rename", "Documents/PDFs=../../x"}, 2, "no name for a folder"},
           {{"Stuff", "--apply", "--yes", "--destination", "/etc/orvane"}, 1, "denied"},
           {{"Stuff", "--destination", "/etc/orvane"}, 1, "denied"}}) {
    EXPECT_THAT(run(joined({"organize"}, words)), Fails(exitStatus, message)) << testing::PrintToString(words);
    EXPECT_TRUE(holds({"Stuff/a.pdf"}, {"Stuff/Organized"}));
  }
}

// A link in the place of a folder that nobody named.
TEST_F(OrganizeCommand, goesThroughNoLinkOutOfTheFolder) {
  home.link("Stuff/Organized", home.folder("Elsewhere"));
  const auto result = run({"organize", "Stuff", "--apply", "--yes"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.output, AllOf(HasSubstr("(stays: refused)"), HasSubstr("Nothing was moved.")));
  EXPECT_TRUE(holds({"Stuff/a.pdf"}));
}

}  // namespace
}  // namespace orvane::test
