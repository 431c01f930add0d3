// Another process swaps folders for links while items are on their way.

#include "tests/support/ChildProcess.h"
#include "tests/support/SafetyFixture.h"

#include <linux/fs.h>
#include <sys/ioctl.h>

namespace orvane::test {
namespace {

class SwappedFolderTest : public SafetyFixture {
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

// The desktop's own tools see, and bring back, what Orvane put into the Trash.

class DesktopTrashTest : public SafetyFixture {
 protected:
  // In a session of its own, so that the machine's is never touched.
  ChildResult inSession(const std::string& command) const {
    tree.folder("runtime");
    ::chmod(tree.path("runtime").c_str(), 0700);
    return runProgram({"dbus-run-session", "--", "sh", "-c", command}, {{"HOME", tree.path()},
                                                                        {"XDG_DATA_HOME", tree.path(".local/share")},
                                                                        {"XDG_RUNTIME_DIR", tree.path("runtime")},
                                                                        {"LC_ALL", "C.UTF-8"}});
  }
};

TEST_F(DesktopTrashTest, gioListsAndRestoresWhatOrvaneTrashed) {
  const auto plain = tree.file("Downloads/50% of it.txt", "half");
  const auto folder = tree.folder("Downloads/folder");
  tree.file("Downloads/folder/inner");
  clean({plain, folder});
  const auto listed = inSession("gio trash --list");
  ASSERT_EQ(listed.exitStatus, 0) << listed.errors;
  EXPECT_THAT(listed.output, HasSubstr("trash:///50%25%20of%20it.txt\t" + plain));
  EXPECT_THAT(listed.output, HasSubstr("trash:///folder\t" + folder));

  const auto restored = inSession("gio trash --restore 'trash:///50%25%20of%20it.txt'");
  EXPECT_EQ(restored.exitStatus, 0) << restored.errors;
  EXPECT_EQ(contentOf(plain), "half");
  // The journal then brings back the rest, and says what it no longer finds.
  const auto result = journal->restoreRun(lastRun);
  EXPECT_EQ(result.restoredCount, 1);
  EXPECT_THAT(result.warnings, ElementsAre("Item was emptied from Trash or moved: 50% of it.txt"));
  EXPECT_TRUE(exists(folder + "/inner"));
}

TEST_F(DesktopTrashTest, trashCliListsWhatOrvaneTrashed) {
  const auto path = tree.file("Downloads/caf\xc3\xa9 #1.txt");
  clean({path});
  const auto listed = inSession("trash-list");
  ASSERT_EQ(listed.exitStatus, 0) << listed.errors;
  EXPECT_THAT(listed.output, HasSubstr(" " + path + "\n"));
}

TEST_F(DesktopTrashTest, namesThatGioTookAreNotTakenAgain) {
  tree.file("Downloads/same.txt", "gio's");
  ASSERT_EQ(inSession("gio trash \"$HOME/Downloads/same.txt\"").exitStatus, 0);
  const auto outcome = clean({tree.file("Downloads/same.txt", "ours")}).front();
  ASSERT_EQ(outcome.result, MoveResult::moved) << outcome.error;
  EXPECT_EQ(contentOf(trashPath() + "/files/same.txt"), "gio's");
  EXPECT_EQ(contentOf(outcome.destination.path()), "ours");
}

}  // namespace
}  // namespace orvane::test
