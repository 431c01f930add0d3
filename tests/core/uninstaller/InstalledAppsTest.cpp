#include "core/base/text/Json.h"
#include "tests/core/uninstaller/UninstallerFixture.h"

#include <plist/plist.h>

#include <cstdlib>

namespace orvane::test {
namespace {

class InstalledAppsTest : public UninstallerFixture {
 public:
  InstalledApp inspect(const std::string& list) { return engine.appAt(FileUrl(appWithList("Bundle Name.app", list))); }
};

std::string binaryList() {
  const std::unique_ptr<void, decltype(&plist_free)> list(plist_new_dict(), plist_free);
  for (const auto& [key, text] :
       {std::pair{"CFBundleName", "Binär"}, {"CFBundleIdentifier", "org.example.b"}, {"CFBundleVersion", "7"}}) {
    plist_dict_set_item(list.get(), key, plist_new_string(text));
  }
  char* bytes = nullptr;
  std::uint32_t size = 0;
  plist_to_bin(list.get(), &bytes, &size);
  const std::string result(bytes, size);
  std::free(bytes);
  return result;
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

TEST_F(InstalledAppsTest, theInformationListTellsNameIdentifierAndVersion) {
  using Text = std::optional<std::string>;
  const Rows<std::string, const char*, Text, Text> rows{
      {xmlList({{"CFBundleDisplayName", "Shown"}, {"CFBundleName", "Plain"}}), "Shown", {}, {}},
      {xmlList({{"CFBundleDisplayName", " "}, {"CFBundleName", "Plain"}}), "Plain", {}, {}},
      {xmlList({{"CFBundleIdentifier", "a.b"}}), "Bundle Name", "a.b", {}},
      {xmlList({{"CFBundleName", "写真 &amp; Überblick"}}), "写真 & Überblick", {}, {}},
      {xmlList({{"CFBundleShortVersionString", "1.2"}, {"CFBundleVersion", "99"}}), "Bundle Name", {}, "1.2"},
      {xmlList({{"CFBundleVersion", "99"}}), "Bundle Name", {}, "99"},
      {binaryList(), "Binär", "org.example.b", "7"},
  };
  for (const auto& [list, name, identifier, version] : rows) {
    const auto app = inspect(list);
    EXPECT_EQ(app.name, name);
    EXPECT_EQ(app.bundleIdentifier, identifier) << name;
    EXPECT_EQ(app.version, version) << name;
  }
}

TEST_F(InstalledAppsTest, aDamagedListFallsBackToTheFileName) {
  const auto xml = xmlList({{"CFBundleName", "Name"}, {"CFBundleIdentifier", "a.b"}});
  std::string nested = "<plist><dict><key>CFBundleName</key><string>Name</string><key>a</key>";
  for (int i = 0; i < 100'000; ++i) nested += "<array>";
  const std::vector<std::string> damaged{
      "",
      "no list",
      xml.substr(0, xml.size() / 2),
      binaryList().substr(0, 40),
      "<plist><array><string>x</string></array></plist>",
      "<plist><dict><key>CFBundleName</key><integer>7</integer><key>CFBundleIdentifier</key><array/></dict></plist>",
      swollenBinaryList(60),
      nested};
  for (const auto& list : damaged) {
    const auto app = inspect(list);
    EXPECT_EQ(app.name, "Bundle Name") << list.substr(0, 60);
    EXPECT_EQ(app.bundleIdentifier, std::nullopt);
  }
}

TEST_F(InstalledAppsTest, aListOutsideTheBundleDoesNotCount) {
  const auto list = tree.file("elsewhere.plist", xmlList({{"CFBundleName", "Other"}}));
  tree.link("Applications/Linked.app/Contents/Info.plist", list);
  EXPECT_EQ(engine.appAt(tree.url("Applications/Linked.app")).name, "Linked");
}

TEST_F(InstalledAppsTest, listsBundlesOfTheFoldersThemselvesByNameIgnoringCase) {
  int number = 0;
  for (const auto* name : {"zebra", "Émile", "apple", "Banana", "BANANA"}) {
    appWithList(std::to_string(++number) + ".app", xmlList({{"CFBundleName", name}}));
  }
  for (const auto* folder : {"empty.app", "Folder/inner.app", "1.app/Contents/Helpers/Nested.app"}) {
    tree.folder("Applications/" + std::string(folder));
  }
  tree.files({"Applications/file.app", "Applications/readme.txt"});
  tree.link("Applications/dangling.app", "nowhere");

  std::vector<std::string> names;
  for (const auto& app : engine.listInstalledApps(
           std::vector{tree.url("Applications"), tree.url("Missing"), tree.url("Applications/../Applications")})) {
    names.push_back(app.name);
  }
  EXPECT_THAT(names, ElementsAre("apple", "Banana", "BANANA", "Émile", "empty", "zebra"));
  // Without an argument the home's own folder is listed.
  EXPECT_THAT(engine.listInstalledApps(), Contains(Field(&InstalledApp::name, "Émile")));
}

TEST_F(InstalledAppsTest, theSizeIsThatOfAllRegularFilesEachOnce) {
  const auto text = xmlList({{"CFBundleName", "A"}});
  const auto bundle = appWithList("A.app", text);
  tree.sparseFile("Applications/A.app/Contents/MacOS/run", 5000);
  tree.sparseFile("Applications/A.app/Contents/.hidden/node_modules/data", 300);
  tree.sparseFile("Applications/A.app/Contents/Helpers/Nested.app/Contents/x", 20);
  fs::create_hard_link(bundle + "/Contents/MacOS/run", bundle + "/Contents/MacOS/again");
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
  const auto form = [&](const std::string& names, const std::string& opened) {
    return R"({"id":")" + app.id.toString() + R"(","name":"A",)" + names +
           R"("url":"file:///Applications/A.app","appSize":5,)" + opened + R"("isSystemProtected":false})";
  };
  EXPECT_EQ(jsonText(app.toJson()), form("", ""));
  app.bundleIdentifier = "a.b";
  app.version = "1";
  app.lastOpenedDate = dateFromReferenceSeconds(10);
  EXPECT_EQ(jsonText(app.toJson()), form(R"("bundleIdentifier":"a.b","version":"1",)", R"("lastOpenedDate":10,)"));
}

TEST_F(InstalledAppsTest, isProtectedByIdentifierOrPath) {
  const Rows<bool, std::vector<const char*>, std::vector<const char*>> rows{
      {true,
       {"com.apple.finder", "com.apple.Safari", "com.apple.systempreferences", "com.apple.AppStore",
        "com.apple.Terminal", "com.apple.ActivityMonitor", "com.apple.Console", "com.apple.DiskUtility",
        "com.apple.keychainaccess"},
       {"Safari.app", "MyFinder.app", "System Settings.app"}},
      {false, {"com.apple.SafariTechnologyPreview", "com.apple.safari", "x.y"}, {"Safari Tools.app", "Ordinary.app"}},
  };
  for (const auto& [isProtected, identifiers, files] : rows) {
    for (const auto* identifier : identifiers) {
      EXPECT_EQ(app("A.app", "A", identifier).isSystemProtected, isProtected) << identifier;
    }
    for (const auto* file : files) EXPECT_EQ(app(file, "A", "x.y").isSystemProtected, isProtected) << file;
  }
}

TEST_F(InstalledAppsTest, whatIsNoApplicationIsRefused) {
  tree.file("Applications/file.app");
  tree.folder("Applications/Folder");
  for (const auto* name : {"file.app", "Folder", "missing.app"}) {
    const auto url = tree.url("Applications").appendingPathComponent(name);
    EXPECT_EQ(messageOf<UninstallError>([&] { return engine.appAt(url); }),
              UninstallError(UninstallError::NotAnApplication{url}).what());
  }
}

}  // namespace
}  // namespace orvane::test
