#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A home whose folders have names of another language.
class UserFolders : public Orvanectl {
 public:
  UserFolders() {
    home.file(".config/user-dirs.dirs",
              "XDG_DESKTOP_DIR=\"$HOME/Bureau\"\nXDG_DOWNLOAD_DIR=\"$HOME/Téléchargements\"\n");
    home.folder("Bureau");
    home.folder("Documents");
    home.folder("Téléchargements");
  }
};

TEST_F(UserFolders, areTheGrantedOnes) {
  EXPECT_THAT(json({"folders", "list"}),
              ElementsAre(home.path("Téléchargements"), home.path("Documents"), home.path("Bureau")));
  EXPECT_THAT(json({"tidy", "show"})["folderPaths"], ElementsAre(home.path("Bureau"), home.path("Téléchargements")));
}

TEST_F(UserFolders, areMeantByTheirUsualNamesInRulesAndPlans) {
  home.file("Téléchargements/setup.dmg", "1234");
  auto plan = json({"ask", "trash old installers"})["plan"];
  EXPECT_EQ(plan["steps"][0]["targetFolder"], home.path("Téléchargements"));
  // As another machine wrote it.
  plan["steps"][0]["targetFolder"] = "~/Downloads";
  plan["steps"][0]["filter"] = Json{{"extensions", {"dmg"}}};
  home.file("plan.json", plan.dump());
  EXPECT_THAT(json({"plan", "preview", "plan.json"}).dump(), HasSubstr("setup.dmg"));

  addRule(R"({"id":"0B5E1F0C-5E0F-4B6E-9A55-2D6B0A4D1C11","name":"Mine",)"
          R"("trigger":{"folderPath":"~/Downloads","fileExtensions":["dmg"]},)"
          R"("action":{"type":"moveToFolder","path":"~/Desktop/Box"}})");
  const auto result = run({"rules", "run", "Mine", "--yes"});
  EXPECT_TRUE(exists(home.path("Bureau/Box/setup.dmg"))) << result.output << result.errors;
  EXPECT_FALSE(exists(home.path("Desktop")));
  EXPECT_THAT(json({"rules", "list"}).dump(), HasSubstr("~/Desktop/Box")) << "what is stored stays as it is";
}

TEST_F(UserFolders, ageAsDownloadsDo) {
  home.file("Téléchargements/old.zip", "1234");
  home.file("Bureau/old.zip", "1234");
  const auto explained = json({"explain", "Téléchargements/old.zip", "Bureau/old.zip"});
  EXPECT_EQ(explained[0]["category"], "oldDownloads");
  EXPECT_EQ(explained[1]["category"], "manualReview");
  EXPECT_THAT(run({"scan"}).output, HasSubstr("Old Installers & Downloads"));
}

}  // namespace
}  // namespace orvane::test
