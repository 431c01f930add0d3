#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileLock.h"
#include "core/base/files/PathAccess.h"
#include "tests/support/TemporaryTree.h"

#include <fcntl.h>
#include <unistd.h>

#include <system_error>

namespace orvane::test {
namespace {

TEST(AtomicFile, keepsTheOldContentUntilTheNewOneIsWhole) {
  const TemporaryTree tree;
  const auto path = tree.file("state.json", "old");
  {
    AtomicFile file(path);
    file.write("half of the new");
    EXPECT_EQ(contentOf(path), "old");
  }
  EXPECT_EQ(contentOf(path), "old");
  AtomicFile::replace(path, "new");
  EXPECT_EQ(contentOf(path), "new");
  EXPECT_EQ(std::distance(fs::directory_iterator(tree.path()), {}), 1);
}

TEST(ReadFile, neverWaitsOnWhatIsNoFile) {
  const TemporaryTree tree;
  const auto pipe = tree.pipe("pipe");
  EXPECT_THROW((void)readFile(pipe), std::system_error);
  EXPECT_THROW((void)readFile(tree.path()), std::system_error);
  EXPECT_THROW((void)readFile(tree.file("long", "12345"), 4), std::system_error);
}

TEST(FileLock, isHeldByOneAtATime) {
  const TemporaryTree tree;
  const auto path = tree.path("lock");
  FileDescriptor second;
  {
    const auto held = FileLock::acquire(path);
    second.reset(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    EXPECT_FALSE(FileLock::tryAcquire(second));
    EXPECT_TRUE(second);
  }
  EXPECT_TRUE(FileLock::tryAcquire(second));
}

TEST(FileLock, isNotWaitedForWithoutEnd) {
  const TemporaryTree tree;
  const auto path = tree.path("lock");
  const auto held = FileLock::acquire(path);
  try {
    static_cast<void>(FileLock::acquire(path, std::chrono::milliseconds(20)));
    FAIL();
  } catch (const LockTimeout& error) {
    EXPECT_EQ(error.what(), "process " + std::to_string(::getpid()) + " keeps '" + path + "' locked");
  }
  tree.pipe("pipe");
  EXPECT_THROW(static_cast<void>(FileLock::acquire(tree.path("pipe"))), std::system_error);
}

TEST(CreateFolders, saysWhatStandsInTheWay) {
  const TemporaryTree tree;
  createFoldersDurably(tree.path("a/b/c"));
  EXPECT_TRUE(exists(tree.path("a/b/c")));
  tree.file("file");
  EXPECT_THROW(createFolders(tree.path("file/below")), std::system_error);
}

TEST(OpenFolder, followsNoLinkAnywhere) {
  const TemporaryTree tree;
  tree.folder("real/inner");
  tree.link("linked", "real");
  EXPECT_TRUE(openFolderWithoutLinks(AT_FDCWD, tree.path("real/inner")));
  EXPECT_FALSE(openFolderWithoutLinks(AT_FDCWD, tree.path("linked/inner")));
  EXPECT_FALSE(openFolderWithoutLinks(AT_FDCWD, tree.path("linked")));
}

}  // namespace
}  // namespace orvane::test
