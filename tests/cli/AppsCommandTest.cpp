#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class AppsCommand : public Orvanectl {
 public:
  AppsCommand() { app("Applications/Subject.app", "Subject", "org.example.subject"); }

  void app(const std::string& path, const std::string& name, const std::string& identifier) const {
    home.file(path + "/Contents/Info.plist",
              "<plist version=\"1.0\"><dict><key>CFBundleName</key><string>" + name +
                  "</string><key>CFBundleIdentifier</key><string>" + identifier +
                  "</string><key>CFBundleVersion</key><string>42</string></dict></plist>");
  }
  void leftovers() const {
    home.sparseFile("Library/Caches/org.example.subject/cache", 3000);
    home.sparseFile("Library/Preferences/org.example.subject.plist", 50);
  }
  [[nodiscard]] Json listed(const std::string& name) const {
    for (const auto& app : json({"apps", "list"})) {
      if (app["name"] == name) return app;
    }
    return {};
  }
};

TEST_F(AppsCommand, listsSizesAndProtection) {
  home.sparseFile("Applications/Subject.app/Contents/MacOS/run", 1'000'000);
  app("Applications/Web.app", "Web", "com.apple.Safari");
  const auto subject = listed("Subject");
  EXPECT_EQ(subject["bundleIdentifier"], "org.example.subject");
  EXPECT_EQ(subject["version"], "42");
  EXPECT_EQ(subject["isSystemProtected"], false);
  EXPECT_EQ(listed("Web")["isSystemProtected"], true);
  EXPECT_EQ(subject["url"], home.url("Applications/Subject.app").absoluteString());
  EXPECT_GT(subject["appSize"], 1'000'000);
  const auto text = run({"apps", "list"}).output;
  EXPECT_THAT(text,
              testing::ContainsRegex("Subject +42 +1 MB .*org\\.example\\.subject +~/Applications/Subject\\.app"));
  EXPECT_THAT(text, testing::ContainsRegex("Web .*com\\.apple\\.Safari +protected +~/Applications/Web\\.app"));
  EXPECT_FALSE(exists(home.path("Library")));
}

TEST_F(AppsCommand, listsTheNamedDirectoriesInstead) {
  app("Tools/Hammer.app", "Hammer", "a.b");
  app("More/Anvil.app", "anvil\x1b[31m", "c.d");
  const auto apps = json({"apps", "list", "--directory", "Tools", "--directory", home.path("More")});
  ASSERT_EQ(apps.size(), 2U);
  EXPECT_EQ(apps[1]["name"], "Hammer");
  EXPECT_THAT(run({"apps", "list", "--directory", "More"}).output, Not(HasSubstr("\x1b")));
  EXPECT_EQ(run({"apps", "list", "--directory", "none"}).output, "0 applications, Zero KB.\n");
}

TEST_F(AppsCommand, showsTheBundleForReview) {
  leftovers();
  const auto bundle = json({"apps", "leftovers", "org.example.subject"});
  EXPECT_EQ(bundle["app"]["name"], "Subject");
  ASSERT_EQ(bundle["leftovers"].size(), 2U);
  EXPECT_EQ(bundle["leftovers"][0]["url"], home.url("Library/Caches/org.example.subject").absoluteString());
  EXPECT_EQ(bundle["leftovers"][0]["fileSize"], 3000);
  EXPECT_EQ(bundle["leftovers"][1]["riskLabel"], "review");
  EXPECT_EQ(bundle["leftovers"][1]["isSelected"], false);
  const auto text = run({"apps", "leftovers", "subject"}).output;
  EXPECT_THAT(text, HasSubstr("3 KB  ~/Library/Caches/org.example.subject\n"));
  EXPECT_THAT(text, HasSubstr("2 leftovers (3 KB)"));
}

TEST_F(AppsCommand, findsAnApplicationByPathIdentifierAndUniqueName) {
  for (const auto* text : {"Applications/Subject.app", "org.example.subject", "Subject", "sUBJECT"}) {
    EXPECT_EQ(json({"apps", "leftovers", text})["app"]["name"], "Subject") << text;
  }
  app("Tools/Elsewhere.app", "Elsewhere", "x.y");
  EXPECT_EQ(json({"apps", "leftovers", "Tools/Elsewhere.app"})["app"]["bundleIdentifier"], "x.y");

  app("Applications/Other.app", "Subject", "org.example.other");
  const auto several = run({"apps", "leftovers", "Subject"});
  EXPECT_EQ(several.exitStatus, 2);
  EXPECT_THAT(several.errors, HasSubstr("(~/Applications/Other.app, ~/Applications/Subject.app)"));
  EXPECT_EQ(run({"apps", "leftovers", "Nothing"}).exitStatus, 1);
  EXPECT_EQ(run({"apps", "leftovers", "Applications"}).exitStatus, 1);
  EXPECT_EQ(run({"apps", "leftovers"}).exitStatus, 2);
}

TEST_F(AppsCommand, uninstallsTheApplicationAloneUnlessLeftoversAreAskedFor) {
  leftovers();
  EXPECT_EQ(json({"apps", "uninstall", "Subject", "--yes"})["itemsProcessed"], 1);
  EXPECT_TRUE(exists(trashed("Subject.app/Contents/Info.plist")));
  EXPECT_TRUE(exists(home.path("Library/Caches/org.example.subject/cache")));
}

TEST_F(AppsCommand, uninstallsEverythingAsOneRunThatComesBack) {
  leftovers();
  home.file("Applications/Subject.app/Contents/MacOS/run", "executable");
  const auto report = json({"apps", "uninstall", "org.example.subject", "--all-leftovers", "--yes"});
  EXPECT_EQ(report["itemsProcessed"], 3);
  EXPECT_EQ(report["failures"].size(), 0U);
  const Words places{"Applications/Subject.app", "Library/Caches/org.example.subject",
                     "Library/Preferences/org.example.subject.plist"};
  for (const auto& place : places) EXPECT_FALSE(exists(home.path(place))) << place;
  EXPECT_EQ(json({"restore", report["runId"], "--yes"})["restoredCount"], 3);
  for (const auto& place : places) EXPECT_TRUE(exists(home.path(place))) << place;
  EXPECT_EQ(contentOf(home.path("Applications/Subject.app/Contents/MacOS/run")), "executable");
}

TEST_F(AppsCommand, refusesAProtectedApplicationByEveryName) {
  app("Applications/Web.app", "Web", "com.apple.Safari");
  for (const auto* text : {"Web", "com.apple.Safari", "Applications/Web.app"}) {
    const auto result = run({"apps", "uninstall", text, "--all-leftovers", "--yes"});
    EXPECT_EQ(result.exitStatus, 1) << text;
    EXPECT_THAT(result.errors, HasSubstr("'Web' is part of the system and cannot be uninstalled."));
  }
  EXPECT_TRUE(exists(home.path("Applications/Web.app")));
  EXPECT_TRUE(isUntouched());
}

TEST_F(AppsCommand, asksAndShowsWhatGoes) {
  EXPECT_EQ(run({"apps", "uninstall", "Subject"}).exitStatus, 2);
  EXPECT_TRUE(isUntouched());
  leftovers();
  const auto result = answered({"apps", "uninstall", "Subject", "--all-leftovers"}, "[y/N]", "n\n");
  EXPECT_THAT(result.output, HasSubstr("~/Library/Caches/org.example.subject"));
  EXPECT_THAT(result.output, HasSubstr("Nothing was moved."));
  EXPECT_TRUE(exists(home.path("Applications/Subject.app")));
}

TEST_F(AppsCommand, anApplicationThatIsReplacedMeanwhileStays) {
  leftovers();
  const auto result = answered({"apps", "uninstall", "Subject", "--all-leftovers"}, "[y/N]", "y\n", [this] {
    std::filesystem::rename(home.path("Applications/Subject.app"), home.path("before"));
    app("Applications/Subject.app", "Subject", "org.example.subject");
  });
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.output, HasSubstr("has changed since it was looked at"));
  EXPECT_THAT(result.output, HasSubstr("Left with its application, which was not moved."));
  EXPECT_TRUE(exists(home.path("Applications/Subject.app")));
  EXPECT_TRUE(exists(home.path("Library/Caches/org.example.subject/cache")));
}

TEST_F(AppsCommand, uninstallsAnAppImageWithItsEntryAndBringsBothBack) {
  const auto file = home.file("Applications/Draw.AppImage", std::string("\177ELF\2\1\1\0AI\2rest", 15));
  home.file(".local/share/applications/org.example.Draw.desktop",
            "[Desktop Entry]\nType=Application\nName=Draw\nExec=" + file + " %U\n");
  home.file(".cache/org.example.Draw/shaders", "123");
  home.file(".cache/Draw/of somebody else", "1");
  const auto app = listed("Draw");
  EXPECT_EQ(app["kind"], "appImage");
  EXPECT_EQ(app["isSystemProtected"], false);
  const auto bundle = json({"apps", "leftovers", "Draw"});
  ASSERT_EQ(bundle["leftovers"].size(), 1);
  EXPECT_EQ(bundle["leftovers"][0]["url"], home.url(".cache/org.example.Draw").absoluteString());
  EXPECT_EQ(bundle["leftovers"][0]["category"], "appLeftovers");

  EXPECT_EQ(json({"apps", "uninstall", "org.example.Draw", "--yes"})["itemsProcessed"], 2);
  EXPECT_FALSE(exists(file) || exists(home.path(".local/share/applications/org.example.Draw.desktop")));
  EXPECT_TRUE(exists(home.path(".cache/org.example.Draw/shaders"))) << "leftovers stay unless they are asked for";
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], 2);
  EXPECT_TRUE(exists(file));

  EXPECT_EQ(json({"apps", "uninstall", "Draw", "--all-leftovers", "--yes"})["itemsProcessed"], 3);
  EXPECT_FALSE(exists(home.path(".cache/org.example.Draw")));
  EXPECT_TRUE(exists(home.path(".cache/Draw/of somebody else")));
}

TEST_F(AppsCommand, leavesFlatpaksToFlatpak) {
  home.file(".local/share/flatpak/app/org.example.Paint/current/active/metadata", "[Application]\n");
  home.file(".var/app/org.example.Gone/cache/a", "12");
  EXPECT_EQ(listed("org.example.Paint")["removalCommand"], "flatpak uninstall --user org.example.Paint");
  const auto refused = run({"apps", "uninstall", "org.example.Paint", "--yes"});
  EXPECT_EQ(refused.exitStatus, 1);
  EXPECT_THAT(refused.errors, HasSubstr("which removes it: flatpak uninstall --user org.example.Paint"));
  EXPECT_TRUE(exists(home.path(".local/share/flatpak/app/org.example.Paint/current/active/metadata")));

  EXPECT_EQ(listed("org.example.Gone")["kind"], "flatpakData");
  EXPECT_EQ(json({"apps", "uninstall", "org.example.Gone", "--yes"})["itemsProcessed"], 1);
  EXPECT_TRUE(exists(trashed("org.example.Gone/cache/a")));
}

}  // namespace
}  // namespace orvane::test
