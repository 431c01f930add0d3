#include "core/base/text/Json.h"
#include "core/platform/Desktop.h"
#include "core/safety/access/FileAccessService.h"
#include "core/safety/services/PermissionsManager.h"
#include "platform/linux/LinuxFolderGrants.h"
#include "platform/linux/LinuxPreferences.h"
#include "tests/support/TemporaryTree.h"

#include <stdexcept>

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

TEST_F(FileAccessServiceTest, seesWhatAnotherProcessGranted) {
  tree.folder("mine");
  tree.folder("theirs");
  service.saveBookmark(tree.url("mine"));
  other.saveBookmark(tree.url("theirs"));
  EXPECT_THAT(service.getManagedFolderURLs(), UnorderedElementsAre(tree.url("mine"), tree.url("theirs")));
  service.removeManagedFolder(tree.url("mine"));
  EXPECT_THAT(other.getManagedFolderURLs(), ElementsAre(tree.url("theirs")));
}

TEST_F(FileAccessServiceTest, refusesWhatIsNoFolderAndStoresNothing) {
  EXPECT_THROW(service.saveBookmark(tree.url("missing")), std::runtime_error);
  EXPECT_FALSE(preferences.value(bookmarks));
}

TEST_F(FileAccessServiceTest, writesTheMapAlsoWhenNothingIsRemoved) {
  service.removeManagedFolder(tree.url("never"));
  EXPECT_EQ(preferences.value(bookmarks), Json::object());
}

TEST_F(FileAccessServiceTest, fallsBackToThePathOfADamagedRecord) {
  preferences.setValue(bookmarks, Json{{"/srv/some", 7}});
  EXPECT_THAT(service.getManagedFolderURLs(), ElementsAre(FileUrl("/srv/some")));
}

TEST_F(FileAccessServiceTest, keepsNamesThatAreNoText) {
  tree.folder("odd\xff");
  tree.folder("odd\xfe");
  service.saveBookmark(tree.url("odd\xff"));
  service.saveBookmark(tree.url("odd\xfe"));
  EXPECT_THAT(other.getManagedFolderURLs(), UnorderedElementsAre(tree.url("odd\xff"), tree.url("odd\xfe")));
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

}  // namespace
}  // namespace orvane::test
