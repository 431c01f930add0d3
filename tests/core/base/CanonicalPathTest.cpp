#include "core/base/files/CanonicalPath.h"

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "tests/support/TemporaryTree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane::test {
namespace {

class CanonicalPath : public testing::Test {
 protected:
  CanonicalPath() {
    m_tree.file("real/inner/file");
    m_tree.link("toReal", m_tree.path("real"));
    m_tree.link("relative", "real/inner");
    m_tree.link("real/up", "..");
    m_tree.link("chain", "toReal");
    m_tree.link("dangling", "nowhere/deeper");
    m_tree.link("loopA", "loopB");
    m_tree.link("loopB", "loopA");
    m_tree.link("self", "self/x");
  }
  TemporaryTree m_tree;
};

TEST_F(CanonicalPath, resolvesEveryLink) {
  const Rows<const char*, const char*> links{
      {"real/inner/file", "real/inner/file"},
      {"real//./inner/../inner/", "real/inner"},
      {"toReal/inner/file", "real/inner/file"},
      {"relative", "real/inner"},
      {"chain/inner", "real/inner"},
      {"relative/../inner", "real/inner"},  // dots after a link leave its target
      {"real/up/toReal", "real"},
      {"toReal/none/deeper", "real/none/deeper"},
      {"dangling", "nowhere/deeper"},
      {"dangling/x", "nowhere/deeper/x"},
      {"toReal/inner/file/x", "real/inner/file/x"},
  };
  for (const auto& [path, resolved] : links) EXPECT_EQ(canonicalPath(m_tree.path(path)), m_tree.path(resolved)) << path;
}

TEST_F(CanonicalPath, aLoopOfLinksStaysWhereItIs) {
  for (const char* loop : {"loopA", "loopA/x", "self"}) {
    EXPECT_TRUE(isSameOrInside(canonicalPath(m_tree.path(loop)), m_tree.path())) << loop;
  }
}

TEST_F(CanonicalPath, aPlaceKeepsTheLinkAtItsEnd) {
  EXPECT_EQ(canonicalPlace(m_tree.path("toReal/up")), m_tree.path("real/up"));
  EXPECT_EQ(canonicalPlace(m_tree.path("dangling")), m_tree.path("dangling"));
  EXPECT_EQ(canonicalPlace(m_tree.path("toReal/.")), m_tree.path("real"));
}

// Makes `count` nested folders with long names and returns their path, which no single call accepts.
std::string makeDeepFolder(const TemporaryTree& tree, int count) {
  std::string path = tree.path();
  FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const std::string name(200, 'd');
  for (int i = 0; i < count; ++i) {
    EXPECT_EQ(::mkdirat(folder.get(), name.c_str(), 0755), 0);
    folder = FileDescriptor(::openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    path = joinPath(path, name);
  }
  EXPECT_EQ(::symlinkat(tree.path().c_str(), folder.get(), "top"), 0);
  return path;
}

TEST(CanonicalPathOfGreatLength, resolvesLinksAtTheEnd) {
  const TemporaryTree tree;
  const auto deep = makeDeepFolder(tree, 30);
  ASSERT_GT(deep.size(), 4096U);
  EXPECT_EQ(canonicalPath(deep), deep);
  EXPECT_EQ(canonicalPath(joinPath(deep, "top/x")), tree.path("x"));
  EXPECT_EQ(canonicalPlace(joinPath(deep, "top")), joinPath(deep, "top"));
  EXPECT_EQ(readPathStatus(joinPath(deep, "top"))->type, FileType::symbolicLink);
}

// Runs `check` as a user without rights over other people's folders; true when it answers true.
template <typename Check>
bool withoutPrivileges(Check check) {
  const pid_t child = ::fork();
  if (child == 0) {
    if (::getuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) ::_exit(2);
    ::_exit(check() ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(CanonicalPathWithoutRights, goesThroughFoldersThatMayOnlyBeEntered) {
  const TemporaryTree tree;
  tree.folder("closed/open");
  tree.link("closed/link", tree.path("elsewhere"));
  ASSERT_EQ(::chmod(tree.path().c_str(), 0755), 0);
  ASSERT_EQ(::chmod(tree.path("closed").c_str(), 0111), 0);
  EXPECT_TRUE(withoutPrivileges([&] { return canonicalPath(tree.path("closed/link/x")) == tree.path("elsewhere/x"); }));
  EXPECT_TRUE(
      withoutPrivileges([&] { return static_cast<bool>(openFolderWithoutLinks(AT_FDCWD, tree.path("closed/open"))); }));
  ASSERT_EQ(::chmod(tree.path("closed").c_str(), 0755), 0);
}

}  // namespace
}  // namespace orvane::test
