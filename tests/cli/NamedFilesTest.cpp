#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

using testing::HasSubstr;

struct NamedFile {
  std::string path;
  const char* category;
  std::string content = "x";
};

const std::vector<NamedFile> namedFiles{
    {"Downloads/tool_1.2_amd64.deb", "oldDownloads"},
    {"Downloads/deep/tool.RPM", "oldDownloads"},
    {"Downloads/driver.run", "oldDownloads"},
    {"Downloads/app.flatpak", "oldDownloads"},
    {"Downloads/app.flatpakref", "oldDownloads"},
    {"Downloads/app.snap", "oldDownloads"},
    {"Downloads/app.bundle", "oldDownloads"},
    {"Documents/tool.deb", "manualReview"},
    {"Downloads/Editor-x86_64.AppImage", "manualReview"},
    {"Downloads/film.mkv.part", "manualReview"},
    {"Downloads/film.mkv.crdownload", "manualReview"},
    {"Downloads/photos.tar.zst", "manualReview"},
    {"Downloads/notes.txt", "manualReview"},
    // The given rows decide first.
    {"Downloads/Screenshot of tool.deb", "screenshots"},
    {"Downloads/disk.iso", "oldDownloads"},
};

class NamedFiles : public Orvanectl {
 public:
  NamedFiles() {
    for (const auto& [path, category, content] : namedFiles) home.file(path, content);
  }
};

TEST_F(NamedFiles, haveTheCategoryThatNameAndPlaceTell) {
  const auto items = scanned({"scan", "--json", home.path()});
  for (const auto& [path, category, content] : namedFiles) {
    ASSERT_TRUE(items.contains(path)) << path;
    EXPECT_EQ(items.at(path)["category"], category) << path;
    // A single item is judged as a scan does it.
    EXPECT_THAT(run({"explain", "--json", home.path(path)}).output, HasSubstr('"' + std::string(category) + '"'))
        << path;
  }
  EXPECT_THAT(run({"explain", home.path("Downloads/app.snap")}).output, HasSubstr("it is a package in a downloads"));
}

TEST_F(NamedFiles, meanTheFoldersOfTheUserByAnyName) {
  home.file(".config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Téléchargements\"\n");
  home.file("Téléchargements/outil.deb");
  const auto items = scanned({"scan", "--json", home.path()});
  EXPECT_EQ(items.at("Téléchargements/outil.deb")["category"], "oldDownloads");
}

TEST_F(NamedFiles, goByRulesThatNameTheirCategory) {
  home.file("rule.json",
            R"({"name":"Packages","trigger":{"categories":["oldDownloads"]},"action":{"type":"moveToTrash"}})");
  EXPECT_EQ(run({"rules", "add", home.path("rule.json")}).exitStatus, 0);
  EXPECT_EQ(run({"rules", "run", "Packages", "--yes"}).exitStatus, 0);
  EXPECT_FALSE(exists(home.path("Downloads/tool_1.2_amd64.deb")));
  EXPECT_TRUE(exists(home.path("Documents/tool.deb")));
  EXPECT_TRUE(exists(home.path("Downloads/Editor-x86_64.AppImage")));
}

}  // namespace
}  // namespace orvane::test
