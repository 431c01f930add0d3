#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

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
  EXPECT_TRUE(tells(subject, {{"bundleIdentifier", "org.example.subject"},
                              {"version", "42"},
                              {"isSystemProtected", false},
                              {"url", home.url("Applications/Subject.app").absoluteString()}}));
  EXPECT_EQ(listed("Web")["isSystemProtected"], true);
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
  EXPECT_TRUE(tells(bundle["leftovers"][0],
                    {{"url", home.url("Library/Caches/org.example.subject").absoluteString()}, {"fileSize", 3000}}));
  EXPECT_TRUE(tells(bundle["leftovers"][1], {{"riskLabel", "review"}, {"isSelected", false}}));
  EXPECT_THAT(run({"apps", "leftovers", "subject"}),
              Says("3 KB  ~/Library/Caches/org.example.subject\n", "2 leftovers (3 KB)"));
}

TEST_F(AppsCommand, findsAnApplicationByPathIdentifierAndUniqueName) {
  for (const auto* text : {"Applications/Subject.app", "org.example.subject", "Subject", "sUBJECT"}) {
    EXPECT_EQ(json({"apps", "leftovers", text})["app"]["name"], "Subject") << text;
  }
  app("Tools/Elsewhere.app", "Elsewhere", "x.y");
  EXPECT_EQ(json({"apps", "leftovers", "Tools/Elsewhere.app"})["app"]["bundleIdentifier"], "x.y");

  app("Applications/Other.app", "Subject", "org.example.other");
  EXPECT_THAT(run({"apps", "leftovers", "Subject"}),
              Fails(2, "(~/Applications/Other.app, ~/Applications/Subject.app)"));
  EXPECT_EQ(run({"apps", "leftovers", "Nothing"}).exitStatus, 1);
  EXPECT_EQ(run({"apps", "leftovers", "Applications"}).exitStatus, 1);
  EXPECT_EQ(run({"apps", "leftovers"}).exitStatus, 2);
}

TEST_F(AppsCommand, uninstallsEverythingAsOneRunThatComesBack) {
  leftovers();
  home.file("Applications/Subject.app/Contents/MacOS/run", "executable");
  const auto report = json({"apps", "uninstall", "org.example.subject", "--all-leftovers", "--yes"});
  EXPECT_EQ(report["itemsProcessed"], 3);
  const Words places{"Applications/Subject.app", "Library/Caches/org.example.subject",
                     "Library/Preferences/org.example.subject.plist"};
  EXPECT_TRUE(holds({}, places));
  EXPECT_EQ(json({"restore", report["runId"], "--yes"})["restoredCount"], 3);
  EXPECT_TRUE(holds(places));
  EXPECT_EQ(contentOf(home.path("Applications/Subject.app/Contents/MacOS/run")), "executable");
}

TEST_F(AppsCommand, refusesAProtectedApplicationByEveryName) {
  app("Applications/Web.app", "Web", "com.apple.Safari");
  for (const auto* text : {"Web", "com.apple.Safari", "Applications/Web.app"}) {
    EXPECT_THAT(run({"apps", "uninstall", text, "--all-leftovers", "--yes"}),
                Fails(1, "'Web' is part of the system and cannot be uninstalled."));
  }
  EXPECT_TRUE(holds({"Applications/Web.app"}) && isUntouched());
}

TEST_F(AppsCommand, asksAndShowsWhatGoes) {
  EXPECT_EQ(run({"apps", "uninstall", "Subject"}).exitStatus, 2);
  EXPECT_TRUE(isUntouched());
  leftovers();
  EXPECT_THAT(answered({"apps", "uninstall", "Subject", "--all-leftovers"}, "[y/N]", "n\n"),
              Says("~/Library/Caches/org.example.subject", "Nothing was moved."));
  EXPECT_TRUE(holds({"Applications/Subject.app"}));
}

TEST_F(AppsCommand, anApplicationThatIsReplacedMeanwhileStays) {
  leftovers();
  const auto result = answered({"apps", "uninstall", "Subject", "--all-leftovers"}, "[y/N]", "y\n", [this] {
    std::filesystem::rename(home.path("Applications/Subject.app"), home.path("before"));
    app("Applications/Subject.app", "Subject", "org.example.subject");
  });
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.output, AllOf(HasSubstr("has changed since it was looked at"),
                                   HasSubstr("Left with its application, which was not moved.")));
  EXPECT_TRUE(holds({"Applications/Subject.app", "Library/Caches/org.example.subject/cache"}));
}

TEST_F(AppsCommand, uninstallsAnAppImageWithItsEntryAndBringsBothBack) {
  const auto file = home.file("Applications/Draw.AppImage", std::string("\177ELF\2\1\1\0AI\2rest", 15));
  home.file(".local/share/applications/org.example.Draw.desktop",
            "[Desktop Entry]\nType=Application\nName=Draw\nExec=" + file + " %U\n");
  home.file(".cache/org.example.Draw/shaders", "123");
  home.file(".cache/Draw/of somebody else", "1");
  EXPECT_TRUE(tells(listed("Draw"), {{"kind", "appImage"}, {"isSystemProtected", false}}));
  const auto bundle = json({"apps", "leftovers", "Draw"});
  ASSERT_EQ(bundle["leftovers"].size(), 1);
  EXPECT_TRUE(tells(bundle["leftovers"][0],
                    {{"url", home.url(".cache/org.example.Draw").absoluteString()}, {"category", "appLeftovers"}}));

  EXPECT_EQ(json({"apps", "uninstall", "org.example.Draw", "--yes"})["itemsProcessed"], 2);
  EXPECT_TRUE(holds({".cache/org.example.Draw/shaders"},
                    {"Applications/Draw.AppImage", ".local/share/applications/org.example.Draw.desktop"}))
      << "leftovers stay unless they are asked for";
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], 2);
  EXPECT_TRUE(exists(file));

  EXPECT_EQ(json({"apps", "uninstall", "Draw", "--all-leftovers", "--yes"})["itemsProcessed"], 3);
  EXPECT_TRUE(holds({".cache/Draw/of somebody else"}, {".cache/org.example.Draw"}));
}

TEST_F(AppsCommand, leavesFlatpaksToFlatpak) {
  home.file(".local/share/flatpak/app/org.example.Paint/current/active/metadata", "[Application]\n");
  home.file(".var/app/org.example.Gone/cache/a", "12");
  EXPECT_EQ(listed("org.example.Paint")["removalCommand"], "flatpak uninstall --user org.example.Paint");
  EXPECT_THAT(run({"apps", "uninstall", "org.example.Paint", "--yes"}),
              Fails(1, "which removes it: flatpak uninstall --user org.example.Paint"));
  EXPECT_TRUE(exists(home.path(".local/share/flatpak/app/org.example.Paint/current/active/metadata")));

  EXPECT_EQ(listed("org.example.Gone")["kind"], "flatpakData");
  EXPECT_EQ(json({"apps", "uninstall", "org.example.Gone", "--yes"})["itemsProcessed"], 1);
  EXPECT_TRUE(exists(trashed("org.example.Gone/cache/a")));
}

}  // namespace
}  // namespace orvane::test
