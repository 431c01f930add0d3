#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

// A home whose folders have names of another language.
class UserFolders : public Orvanectl {
 public:
  UserFolders() {
    home.file(".config/user-dirs.dirs",
              "XDG_DESKTOP_DIR=\"$HOME/Bureau\"\nXDG_DOWNLOAD_DIR=\"$HOME/Téléchargements\"\n");
    for (const auto* name : {"Bureau", "Documents", "Téléchargements"}) home.folder(name);
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
  EXPECT_TRUE(holds({"Bureau/Box/setup.dmg"}, {"Desktop"})) << result.output << result.errors;
  EXPECT_THAT(json({"rules", "list"}).dump(), HasSubstr("~/Desktop/Box")) << "what is stored stays as it is";
}

}  // namespace
}  // namespace orvane::test
