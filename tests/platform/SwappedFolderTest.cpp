// Another process swaps folders for links while items are on their way.

#include "tests/support/SafetyFixture.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>

#include <filesystem>
#include <system_error>

namespace orvane {
namespace {

namespace fs = std::filesystem;
using test::contentOf;
using test::exists;

class SwappedFolderTest : public test::SafetyFixture {
 protected:
  SwappedFolderTest() {
    tree.file("Downloads/inner/a", "approved");
    tree.file("Private/a", "not approved");
  }
  [[nodiscard]] std::unique_ptr<PendingMove> planTrash(const std::string& path) {
    return trash.planTrash(fileMover.hold(FileUrl(path), tree.path("Downloads")));
  }
  // The folder is replaced by a link to one outside the roots.
  void swap() const {
    fs::rename(tree.path("Downloads/inner"), tree.path("Downloads/before"));
    tree.link("Downloads/inner", tree.path("Private"));
  }
};

TEST_F(SwappedFolderTest, aFolderSwappedBeforeItIsOpenedIsRefused) {
  const FileUrl place = tree.url("Downloads/inner/a");
  swap();
  EXPECT_THROW(fileMover.hold(place, tree.path("Downloads")), std::system_error);
  EXPECT_EQ(contentOf(tree.path("Private/a")), "not approved");
}

TEST_F(SwappedFolderTest, aFolderSwappedBetweenDecisionAndMoveMakesNoDifference) {
  const auto move = planTrash(tree.path("Downloads/inner/a"));
  swap();
  FolderSyncSet folders;
  move->prepare();
  EXPECT_TRUE(move->finishPreparing(folders));
  move->carryOut(folders, folders);
  EXPECT_EQ(contentOf(move->destination().path()), "approved");
  EXPECT_EQ(contentOf(tree.path("Private/a")), "not approved");
}

TEST_F(SwappedFolderTest, anItemReplacedBetweenDecisionAndMoveStays) {
  const auto path = tree.path("Downloads/inner/a");
  const auto move = planTrash(path);
  fs::remove(path);
  tree.file("Downloads/inner/a", "another file");
  FolderSyncSet folders;
  move->prepare();
  EXPECT_TRUE(move->finishPreparing(folders));
  EXPECT_THROW(move->carryOut(folders, folders), std::runtime_error);
  EXPECT_TRUE(move->abandon());
  EXPECT_EQ(contentOf(path), "another file");
  EXPECT_FALSE(exists(recordOf(move->destination())));
}

TEST_F(SwappedFolderTest, aNameTakenInTheTrashMeanwhileIsNotOverwritten) {
  const auto move = planTrash(tree.path("Downloads/inner/a"));
  tree.file(".local/share/Trash/info/a.trashinfo", "another's record");
  FolderSyncSet folders;
  move->prepare();
  EXPECT_FALSE(move->finishPreparing(folders)) << "a log is to know the new name first";
  EXPECT_TRUE(move->finishPreparing(folders));
  move->carryOut(folders, folders);
  EXPECT_NE(move->destination().lastPathComponent(), "a");
  EXPECT_EQ(contentOf(trashPath() + "/info/a.trashinfo"), "another's record");
  EXPECT_EQ(contentOf(move->destination().path()), "approved");
}

class LockedFileTest : public SwappedFolderTest {
 public:
  void SetUp() override {
    trash.setImmutableFlag(FileUrl(path));
    if (!isLocked(path)) GTEST_SKIP() << "files cannot be locked here, or not by this user";
  }
  void TearDown() override { trash.clearImmutableFlag(FileUrl(path)); }

  static bool isLocked(const std::string& place) {
    const FileDescriptor file(::open(place.c_str(), O_RDONLY | O_CLOEXEC));
    int attributes = 0;
    return ::ioctl(file.get(), FS_IOC_GETFLAGS, &attributes) == 0 && (attributes & FS_IMMUTABLE_FL) != 0;
  }

  std::string path = tree.file("Downloads/locked", "locked");
};

TEST_F(LockedFileTest, isUnlockedToMoveAndLockedAgainAtHome) {
  EXPECT_THROW(fs::remove(path), fs::filesystem_error);
  const auto outcome = clean({path}).front();
  EXPECT_EQ(outcome.result, MoveResult::moved) << outcome.error;
  EXPECT_EQ(contentOf(outcome.destination.path()), "locked");
  EXPECT_FALSE(isLocked(outcome.destination.path()));
  reopenJournal();
  EXPECT_EQ(journal->restoreRun(lastRun).restoredCount, 1);
  EXPECT_TRUE(isLocked(path));
}

TEST_F(LockedFileTest, keepsItsLockWhereItDoesNotMove) {
  const auto refused = planTrash(path);
  EXPECT_TRUE(isLocked(path)) << "planning alone unlocks it";
  refused->prepare();
  tree.file(".local/share/Trash/files/locked", "another");
  FolderSyncSet folders;
  EXPECT_THROW(refused->carryOut(folders, folders), std::runtime_error);
  EXPECT_TRUE(refused->abandon());
  EXPECT_TRUE(isLocked(path));
}

}  // namespace
}  // namespace orvane
