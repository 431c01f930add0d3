#include "core/base/files/AtomicFile.h"

#include "core/base/files/FileLock.h"
#include "core/base/files/FileUrl.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "tests/support/TemporaryTree.h"

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
  EXPECT_EQ(messageOf<LockTimeout>([&] { return FileLock::acquire(path, std::chrono::milliseconds(20)); }),
            "process " + std::to_string(::getpid()) + " keeps '" + path + "' locked");
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

TEST(FileUrl, everyByteSurvivesTheUrlForm) {
  std::string path = "/";
  for (int byte = 1; byte < 256; ++byte) {
    if (byte != '/') path.push_back(static_cast<char>(byte));
  }
  const FileUrl url(path);
  const auto text = url.absoluteString();
  EXPECT_EQ(FileUrl::fromAbsoluteString(text), url);
  for (const char c : text) EXPECT_TRUE(c > ' ' && c < 0x7f) << text;
}

TEST(FileUrl, refusesWhatIsNoFileUrl) {
  for (const char* text : {"", "/plain/path", "http://host/x", "file:relative", "file://host/x", "file:///bad%4",
                           "file:///bad%zz", "file:///nul%00byte"}) {
    EXPECT_FALSE(FileUrl::fromAbsoluteString(text)) << text;
  }
  EXPECT_EQ(FileUrl::fromAbsoluteString("file://localhost/a%20b")->path(), "/a b");
}

TEST(SplitName, cutsAtTheLastDot) {
  const Rows<const char*, const char*, const char*> names{
      {"report.pdf", "report", "pdf"},
      {"archive.tar.gz", "archive.tar", "gz"},
      {".bashrc", ".bashrc", ""},
      {"Dr. Smith", "Dr. Smith", ""},
      {"p.pdf ", "p.pdf ", ""},
      {"...x", "...x", ""},
      {".Notes.icloud", ".Notes", "icloud"},
      {"end.", "end.", ""},
      {"none", "none", ""},
      {"", "", ""},
  };
  for (const auto& [name, base, extension] : names) {
    EXPECT_EQ(splitName(name).base, base);
    EXPECT_EQ(splitName(name).extension, extension) << name;
  }
}

TEST(PathText, comparesWholeComponents) {
  EXPECT_TRUE(isSameOrInside("/a/b", "/a/b"));
  EXPECT_TRUE(isSameOrInside("/a/b/c", "/a/b"));
  EXPECT_FALSE(isSameOrInside("/a/bc", "/a/b"));
  EXPECT_TRUE(isSameOrInside("/a", "/"));
  EXPECT_FALSE(isSameOrInside("/a", ""));
}

TEST(PathText, standardizesByTextAlone) {
  EXPECT_EQ(standardizedPath("//a/./b/../c//"), "/a/c");
  EXPECT_EQ(standardizedPath("/../.."), "/");
  EXPECT_EQ(standardizedPath("../a/../../b"), "../../b");
}

}  // namespace
}  // namespace orvane::test
