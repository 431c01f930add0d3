#include "core/base/text/Json.h"
#include "core/platform/Desktop.h"
#include "core/safety/access/FileAccessService.h"
#include "core/safety/access/KeepList.h"
#include "core/safety/services/PermissionsManager.h"
#include "platform/linux/LinuxFolderGrants.h"
#include "platform/linux/LinuxPreferences.h"
#include "tests/support/MemoryPreferences.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

constexpr const char* bookmarks = "OrvaneSecurityScopedBookmarks";

class FileAccessServiceTest : public testing::Test {
 public:
  TemporaryTree tree;
  LinuxFolderGrants grants;
  LinuxPreferences preferences{tree.path("preferences.json")};
  FileAccessService service{preferences, grants, tree.path()};
  // As another process has it.
  FileAccessService other{preferences, grants, tree.path()};
};

TEST_F(FileAccessServiceTest, startsWithTheDefaultFoldersThatExist) {
  tree.folder("Documents");
  tree.folder("Downloads");
  tree.file("Desktop");
  EXPECT_THAT(service.getManagedFolderURLs(), ElementsAre(tree.url("Downloads"), tree.url("Documents")));
}

TEST_F(FileAccessServiceTest, keepsAFolderOnceUnderItsOwnPath) {
  tree.folder("real");
  tree.link("link", tree.path("real"));
  service.saveBookmark(tree.url("real"));
  service.saveBookmark(tree.url("link"));
  EXPECT_THAT(service.getManagedFolderURLs(), ElementsAre(tree.url("real")));
  EXPECT_THAT(preferences.value(bookmarks).value(), SizeIs(1));
  EXPECT_TRUE(preferences.value(bookmarks)->contains(tree.path("real")));
}

TEST_F(FileAccessServiceTest, seesWhatAnotherProcessGrantedWhateverItsName) {
  for (const auto* name : {"mine", "theirs\xff", "theirs\xfe"}) tree.folder(name);
  service.saveBookmark(tree.url("mine"));
  for (const auto* name : {"theirs\xff", "theirs\xfe"}) other.saveBookmark(tree.url(name));
  EXPECT_THAT(service.getManagedFolderURLs(),
              UnorderedElementsAre(tree.url("mine"), tree.url("theirs\xff"), tree.url("theirs\xfe")));
  service.removeManagedFolder(tree.url("mine"));
  EXPECT_THAT(other.getManagedFolderURLs(), UnorderedElementsAre(tree.url("theirs\xff"), tree.url("theirs\xfe")));
}

TEST_F(FileAccessServiceTest, storesNoMissingFolderAndTheMapAlsoWhenNothingIsRemoved) {
  EXPECT_THROW(service.saveBookmark(tree.url("missing")), std::runtime_error);
  EXPECT_FALSE(preferences.value(bookmarks));
  service.removeManagedFolder(tree.url("never"));
  EXPECT_EQ(preferences.value(bookmarks), Json::object());
}

TEST_F(FileAccessServiceTest, fallsBackToThePathOfADamagedRecord) {
  preferences.setValue(bookmarks, Json{{"/srv/some", 7}});
  EXPECT_THAT(service.getManagedFolderURLs(), ElementsAre(FileUrl("/srv/some")));
}

class FakeDesktop : public Desktop {
 public:
  bool openUrl(const std::string& url) override {
    opened = url;
    return true;
  }
  bool reveal(const FileUrl& /*item*/) override { return false; }
  std::string opened;
};

TEST(PermissionsManagerTest, probesTheFoldersThatOnlyFullAccessShows) {
  const TemporaryTree tree;
  FakeDesktop desktop;
  PermissionsManager manager(desktop, tree.path());
  EXPECT_FALSE(manager.checkFullDiskAccess());
  tree.file("Library/Safari");
  EXPECT_FALSE(manager.checkFullDiskAccess());
  tree.folder("Library/Mail");
  EXPECT_TRUE(manager.checkFullDiskAccess());
  EXPECT_TRUE(manager.openSystemSettings());
  EXPECT_EQ(desktop.opened, "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles");
}

using Standing = KeepPattern::Standing;

TEST(KeepPattern, standsToAPath) {
  const Rows<const char*, const char*, Standing> rows{
      {"/a/b", "/a/b", Standing::meant},
      {"/a/b/", "/a/b/c/d", Standing::meant},
      {"/a/b", "/a/bc", Standing::outside},
      {"/a/b", "/a", Standing::above},
      {"~/x", "/h/x", Standing::meant},
      {"~/x", "/h/y", Standing::outside},
      {"~", "/h/any", Standing::meant},
      {"~/s/*.pem", "/h/s/k.pem", Standing::meant},
      {"~/s/*.pem", "/h/s/k.pem.old", Standing::outside},
      {"~/s/*.pem", "/h/s/a/k.pem", Standing::outside},
      {"~/s/a*b*c", "/h/s/abc", Standing::meant},
      {"~/s/a*a", "/h/s/a", Standing::outside},
      {"~/s/**/*.pem", "/h/s/k.pem", Standing::meant},
      {"~/s/**/*.pem", "/h/s/a/b/k.pem", Standing::meant},
      {"~/s/**/*.pem", "/h/s/a/b", Standing::above},
      {"~/s/**/*.pem", "/h/t/k.pem", Standing::outside},
      {"~/s/**", "/h/s/a", Standing::meant},
      {"*.psd", "/any/where/x.psd", Standing::meant},
      {"**/keep/*", "/a/keep/b/c", Standing::meant},
      {"notes", "/h/notes", Standing::meant},
      {R"(~/a\*b)", "/h/a*b", Standing::meant},
      {R"(~/a\*b)", "/h/axb", Standing::outside},
      {R"(~/a\\b)", R"(/h/a\b)", Standing::meant},
      {R"(~/\xff)", "/h/\xff", Standing::meant},
  };
  for (const auto& [pattern, path, standing] : rows) {
    EXPECT_EQ(KeepPattern::read(pattern, "/h").standing(path), standing) << pattern << " of " << path;
  }
}

TEST(KeepPattern, refusesWhatMeansNothingOrEverything) {
  for (const char* text :
       {"", "/", "*", "**", "/**", "/*", "a/b", "../x", "~/../x", R"(~/a\b)", R"(~/a\)", R"(\xg0)"}) {
    EXPECT_THROW(static_cast<void>(KeepPattern::read(text, "/h")), std::invalid_argument) << text;
  }
}

TEST(KeepPattern, ofAPlaceMeansItWhateverItsName) {
  for (const auto* path : {"/h/a*b", R"(/h/a\xffb)", "/h/\xff*", "/h/line\nbreak", "/h/**", "/elsewhere/x", "/h"}) {
    const auto text = KeepPattern::textFor(FileUrl(path), "/h");
    EXPECT_TRUE(Json(text).dump().size() > 2) << "is UTF-8";
    const auto pattern = KeepPattern::read(text, "/h");
    EXPECT_EQ(pattern.standing(path), Standing::meant) << text;
    EXPECT_EQ(pattern.plainBeginning(), path);
    EXPECT_TRUE(pattern.meansOnePlace());
  }
}

class KeepListTest : public testing::Test {
 public:
  [[nodiscard]] bool keeps(const std::string& relative) const {
    return list.places().keeperOf(tree.url(relative)) != nullptr;
  }
  void add(const std::vector<std::string>& patterns) { list.add(patterns); }
  TemporaryTree tree;
  MemoryPreferences preferences;
  KeepList list{preferences, tree.path()};
};

TEST_F(KeepListTest, changesAsAWholeOrNotAtAll) {
  add({"~/a", "~/b"});
  add({"~/c", "~/a"});
  EXPECT_THAT(list.patterns(), ElementsAre("~/a", "~/b", "~/c"));
  EXPECT_THROW(add({"~/d", "e/f"}), std::invalid_argument);
  EXPECT_THAT(list.remove(std::vector<std::string>{"~/a", "~/none"}), ElementsAre("~/none"));
  EXPECT_THAT(list.patterns(), ElementsAre("~/a", "~/b", "~/c"));
  EXPECT_THAT(list.remove(std::vector<std::string>{"~/a", "~/c"}), IsEmpty());
  EXPECT_THAT(list.patterns(), ElementsAre("~/b"));
}

TEST_F(KeepListTest, keepsWhatHoldsSomethingKept) {
  tree.file("project/deep/key.pem");
  tree.file("other/plain");
  add({"~/Music/album", "*.pem"});
  EXPECT_TRUE(keeps("Music"));
  EXPECT_TRUE(keeps("Music/album/1.ogg"));
  EXPECT_FALSE(keeps("Music/albums"));
  EXPECT_TRUE(keeps("project")) << "a pattern means something in it";
  EXPECT_TRUE(keeps("project/deep"));
  EXPECT_FALSE(keeps("other"));
}

TEST_F(KeepListTest, followsLinksToWhereTheItemLies) {
  tree.file("disk/downloads/a");
  tree.link("Downloads", tree.path("disk/downloads"));
  tree.link("Downloads/link", tree.path("disk/target"));
  add({"~/Downloads/a", "~/disk/downloads/**/*.x", "~/Downloads/link"});
  for (const char* place : {"Downloads/a", "disk/downloads/a", "Downloads/b.x", "disk/downloads/b.x", "disk/target",
                            "disk/downloads/link"}) {
    EXPECT_TRUE(keeps(place)) << place;
  }
  EXPECT_FALSE(keeps("Downloads/b"));
}

TEST_F(KeepListTest, isNotEmptyWhereItCannotBeRead) {
  for (const auto& damaged : {Json("~/a"), Json::array({1}), Json::array({"a/b"})}) {
    preferences.values[std::string(KeepList::storageKey)] = damaged;
    EXPECT_THROW(static_cast<void>(list.places()), std::runtime_error) << damaged.dump();
  }
}

}  // namespace
}  // namespace orvane::test
