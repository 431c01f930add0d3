#include "core/base/text/Json.h"
#include "tests/core/uninstaller/UninstallerFixture.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>

namespace orvane {
namespace {

using test::xmlList;
using testing::ElementsAre;
using testing::Field;

class InstalledAppsTest : public test::UninstallerFixture {
 public:
  InstalledApp inspect(const std::string& list) { return engine.appAt(FileUrl(appWithList("Bundle Name.app", list))); }
};

// {"CFBundleName": "Binär", "CFBundleIdentifier": "org.example.b", "CFBundleVersion": "7"}
std::string binaryList() {
  std::string objects = "bplist00";
  std::vector<std::size_t> offsets;
  const auto add = [&](const std::string& object) {
    offsets.push_back(objects.size());
    objects += object;
  };
  const auto ascii = [](const std::string& text) {
    return "\x5f\x10" + std::string(1, static_cast<char>(text.size())) + text;
  };
  add({"\xd3\x01\x02\x03\x04\x05\x06", 7});
  add(ascii("CFBundleName"));
  add(ascii("CFBundleIdentifier"));
  add(ascii("CFBundleVersion"));
  add({"\x65\0B\0i\0n\0\xe4\0r", 11});
  add(ascii("org.example.b"));
  add("\x51"
      "7");
  const auto table = static_cast<char>(objects.size());
  for (const auto offset : offsets) objects += static_cast<char>(offset);
  const char trailer[32] = {0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 7,
                            0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, table};
  return objects + std::string(trailer, sizeof trailer);
}

// A chain of lists of which each names the next one twice: few bytes that stand for 2^`levels` values.
std::string swollenBinaryList(int levels) {
  std::string objects = "bplist00";
  for (int i = 0; i < levels; ++i) {
    objects += '\xa2';
    objects.append(2, static_cast<char>(i + 1));
  }
  objects += '\x09';
  const auto table = static_cast<char>(objects.size());
  for (int i = 0; i <= levels; ++i) objects += static_cast<char>(8 + 3 * i);
  std::string trailer(32, '\0');
  trailer[6] = 1;
  trailer[7] = 1;
  trailer[15] = static_cast<char>(levels + 1);
  trailer[31] = table;
  return objects + trailer;
}

struct NameCase {
  const char* label;
  std::map<std::string, std::string> texts;
  std::string name;
};
class InstalledAppName : public InstalledAppsTest, public testing::WithParamInterface<NameCase> {};
INSTANTIATE_TEST_SUITE_P(
    All, InstalledAppName,
    testing::Values(NameCase{"display", {{"CFBundleDisplayName", "Shown"}, {"CFBundleName", "Plain"}}, "Shown"},
                    NameCase{"plain", {{"CFBundleName", "Plain"}}, "Plain"},
                    NameCase{"blankDisplay", {{"CFBundleDisplayName", " "}, {"CFBundleName", "Plain"}}, "Plain"},
                    NameCase{"neither", {{"CFBundleIdentifier", "a.b"}}, "Bundle Name"},
                    NameCase{"otherScript", {{"CFBundleName", "写真 &amp; Überblick"}}, "写真 & Überblick"}),
    [](const auto& test) { return test.param.label; });

TEST_P(InstalledAppName, comesFromTheInformationList) {
  EXPECT_EQ(inspect(xmlList(GetParam().texts)).name, GetParam().name);
}

TEST_F(InstalledAppsTest, readsTheBinaryForm) {
  const auto app = inspect(binaryList());
  EXPECT_EQ(app.name, "Binär");
  EXPECT_EQ(app.bundleIdentifier, "org.example.b");
  EXPECT_EQ(app.version, "7");
}

TEST_F(InstalledAppsTest, theShortVersionComesBeforeTheBuild) {
  EXPECT_EQ(inspect(xmlList({{"CFBundleShortVersionString", "1.2"}, {"CFBundleVersion", "99"}})).version, "1.2");
  EXPECT_EQ(inspect(xmlList({{"CFBundleVersion", "99"}})).version, "99");
  EXPECT_EQ(inspect(xmlList({{"CFBundleName", "A"}})).version, std::nullopt);
}

TEST_F(InstalledAppsTest, aDamagedListFallsBackToTheFileName) {
  const auto xml = xmlList({{"CFBundleName", "Name"}, {"CFBundleIdentifier", "a.b"}});
  std::string nested = "<plist><dict><key>CFBundleName</key><string>Name</string><key>a</key>";
  for (int i = 0; i < 100'000; ++i) nested += "<array>";
  const std::vector<std::string> damaged{"",
                                         "no list",
                                         xml.substr(0, xml.size() / 2),
                                         binaryList().substr(0, 40),
                                         "<plist><array><string>x</string></array></plist>",
                                         swollenBinaryList(60),
                                         nested};
  for (const auto& list : damaged) {
    const auto app = inspect(list);
    EXPECT_EQ(app.name, "Bundle Name") << list.substr(0, 60);
    EXPECT_EQ(app.bundleIdentifier, std::nullopt);
  }
}

TEST_F(InstalledAppsTest, aListWhoseTextsAreOfOtherTypesGivesNone) {
  const auto app = inspect(
      "<plist><dict><key>CFBundleName</key><integer>7</integer><key>CFBundleIdentifier</key>"
      "<array/></dict></plist>");
  EXPECT_EQ(app.name, "Bundle Name");
  EXPECT_EQ(app.bundleIdentifier, std::nullopt);
}

TEST_F(InstalledAppsTest, aListOutsideTheBundleDoesNotCount) {
  const auto list = tree.file("elsewhere.plist", xmlList({{"CFBundleName", "Other"}}));
  tree.link("Applications/Linked.app/Contents/Info.plist", list);
  EXPECT_EQ(engine.appAt(tree.url("Applications/Linked.app")).name, "Linked");
}

TEST_F(InstalledAppsTest, listsBundlesOfTheFoldersThemselvesByNameIgnoringCase) {
  appWithList("1.app", xmlList({{"CFBundleName", "zebra"}}));
  appWithList("2.app", xmlList({{"CFBundleName", "Émile"}}));
  appWithList("3.app", xmlList({{"CFBundleName", "apple"}}));
  appWithList("4.app", xmlList({{"CFBundleName", "Banana"}}));
  appWithList("5.app", xmlList({{"CFBundleName", "BANANA"}}));
  tree.folder("Applications/empty.app");
  tree.file("Applications/file.app");
  tree.file("Applications/readme.txt");
  tree.folder("Applications/Folder/inner.app");
  tree.folder("Applications/1.app/Contents/Helpers/Nested.app");
  tree.link("Applications/dangling.app", "nowhere");

  const auto apps = engine.listInstalledApps(
      std::vector{tree.url("Applications"), tree.url("Missing"), tree.url("Applications/../Applications")});

  std::vector<std::string> names;
  for (const auto& app : apps) names.push_back(app.name);
  EXPECT_THAT(names, ElementsAre("apple", "Banana", "BANANA", "Émile", "empty", "zebra"));
}

TEST_F(InstalledAppsTest, theHomesOwnFolderIsListedWithoutAnArgument) {
  appWithList("Mine.app", xmlList({{"CFBundleName", "Mine of this test"}}));
  EXPECT_THAT(engine.listInstalledApps(), testing::Contains(Field(&InstalledApp::name, "Mine of this test")));
}

TEST_F(InstalledAppsTest, theSizeIsThatOfAllRegularFilesEachOnce) {
  const auto text = xmlList({{"CFBundleName", "A"}});
  const auto bundle = appWithList("A.app", text);
  tree.sparseFile("Applications/A.app/Contents/MacOS/run", 5000);
  tree.sparseFile("Applications/A.app/Contents/.hidden/node_modules/data", 300);
  tree.sparseFile("Applications/A.app/Contents/Helpers/Nested.app/Contents/x", 20);
  std::filesystem::create_hard_link(bundle + "/Contents/MacOS/run", bundle + "/Contents/MacOS/again");
  tree.link("Applications/A.app/Contents/out", tree.path("big"));
  tree.sparseFile("big/file", 1'000'000);
  tree.link("Applications/A.app/Contents/outFile", tree.path("big/file"));
  const auto expected = static_cast<std::int64_t>(text.size()) + 5320;
  EXPECT_EQ(engine.appAt(FileUrl(bundle)).appSize, expected);
  EXPECT_EQ(list().front().appSize, expected);
}

TEST_F(InstalledAppsTest, lastOpenedIsWhenTheExecutableWasLastRead) {
  const auto access = [&](const std::string& path, time_t seconds) {
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  };
  const auto bundle = appWithList("A.app", xmlList({{"CFBundleExecutable", "run"}}));
  EXPECT_EQ(engine.appAt(FileUrl(bundle)).lastOpenedDate, std::nullopt);
  access(tree.file("Applications/A.app/Contents/MacOS/helper"), 1'600'000'500);
  access(tree.file("Applications/A.app/Contents/MacOS/older"), 1'600'000'100);
  EXPECT_EQ(engine.appAt(FileUrl(bundle)).lastOpenedDate, dateFromUnix(1'600'000'500));
  access(tree.file("Applications/A.app/Contents/MacOS/run"), 1'600'000'000);
  EXPECT_EQ(engine.appAt(FileUrl(bundle)).lastOpenedDate, dateFromUnix(1'600'000'000));

  const auto climbing = appWithList("B.app", xmlList({{"CFBundleExecutable", "../../../A.app/Contents/MacOS/run"}}));
  EXPECT_EQ(engine.appAt(FileUrl(climbing)).lastOpenedDate, std::nullopt);
}

TEST_F(InstalledAppsTest, jsonLeavesOutWhatIsAbsent) {
  InstalledApp app;
  app.name = "A";
  app.url = FileUrl("/Applications/A.app");
  app.appSize = 5;
  const auto head = R"({"id":")" + app.id.toString() + R"(","name":"A",)";
  const std::string url = R"("url":"file:///Applications/A.app","appSize":5,)";
  EXPECT_EQ(jsonText(app.toJson()), head + url + R"("isSystemProtected":false})");
  app.bundleIdentifier = "a.b";
  app.version = "1";
  app.lastOpenedDate = dateFromReferenceSeconds(10);
  EXPECT_EQ(jsonText(app.toJson()), head + R"("bundleIdentifier":"a.b","version":"1",)" + url +
                                        R"("lastOpenedDate":10,"isSystemProtected":false})");
}

struct ProtectionCase {
  const char* label;
  std::string fileName;
  std::string identifier;
  bool isProtected;
};
class AppProtection : public InstalledAppsTest, public testing::WithParamInterface<ProtectionCase> {};
INSTANTIATE_TEST_SUITE_P(All, AppProtection,
                         testing::Values(ProtectionCase{"finder", "A.app", "com.apple.finder", true},
                                         ProtectionCase{"safari", "A.app", "com.apple.Safari", true},
                                         ProtectionCase{"settings", "A.app", "com.apple.systempreferences", true},
                                         ProtectionCase{"store", "A.app", "com.apple.AppStore", true},
                                         ProtectionCase{"terminal", "A.app", "com.apple.Terminal", true},
                                         ProtectionCase{"monitor", "A.app", "com.apple.ActivityMonitor", true},
                                         ProtectionCase{"console", "A.app", "com.apple.Console", true},
                                         ProtectionCase{"disks", "A.app", "com.apple.DiskUtility", true},
                                         ProtectionCase{"keychain", "A.app", "com.apple.keychainaccess", true},
                                         ProtectionCase{"onlyBeginsSo", "A.app", "com.apple.SafariTechnologyPreview",
                                                        false},
                                         ProtectionCase{"otherCase", "A.app", "com.apple.safari", false},
                                         ProtectionCase{"safariPath", "Safari.app", "x.y", true},
                                         ProtectionCase{"pathContains", "MyFinder.app", "x.y", true},
                                         ProtectionCase{"settingsPath", "System Settings.app", "x.y", true},
                                         ProtectionCase{"safariInName", "Safari Tools.app", "x.y", false},
                                         ProtectionCase{"ordinary", "A.app", "x.y", false}),
                         [](const auto& test) { return test.param.label; });

TEST_P(AppProtection, isByIdentifierAndPath) {
  EXPECT_EQ(app(GetParam().fileName, "A", GetParam().identifier).isSystemProtected, GetParam().isProtected);
}

TEST_F(InstalledAppsTest, aLinkToAProtectedApplicationIsProtected) {
  app("Safari.app", "Safari", "x.y");
  tree.link("Applications/Browser.app", "Safari.app");
  EXPECT_TRUE(engine.appAt(tree.url("Applications/Browser.app")).isSystemProtected);
}

TEST_F(InstalledAppsTest, whatIsNoApplicationIsRefused) {
  tree.file("Applications/file.app");
  tree.folder("Applications/Folder");
  for (const auto* name : {"file.app", "Folder", "missing.app"}) {
    const auto url = tree.url("Applications").appendingPathComponent(name);
    try {
      (void)engine.appAt(url);
      ADD_FAILURE() << name;
    } catch (const UninstallError& error) {
      EXPECT_EQ(error, UninstallError(UninstallError::NotAnApplication{url}));
    }
  }
}

}  // namespace
}  // namespace orvane
