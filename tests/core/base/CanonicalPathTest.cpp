#include "core/base/files/CanonicalPath.h"

#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryTree.h"

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

// As one look each, also where the folder is a link, a file or nothing.
TEST_F(CanonicalPath, looksAtManyItemsOneAfterTheOther) {
  PathLooks looks;
  for (const auto* item :
       {"real/inner/file", "real/inner/none", "real/inner/file/below", "toReal/inner/file", "toReal/none", "toReal",
        "dangling/x", "loopA/x", "nowhere/x", "real/inner/", "real/inner/file"}) {
    const auto path = m_tree.path(item);
    EXPECT_EQ(looks.presenceAt(path), presenceAt(path)) << item;
    EXPECT_EQ(looks.readStatus(path).has_value(), readPathStatus(path).has_value()) << item;
  }
}

TEST(CanonicalPathOfGreatLength, resolvesLinksAtTheEnd) {
  const TemporaryTree tree;
  const std::string name(200, 'd');
  const auto folder = nestedFolders(tree.path(), name, 30);
  ASSERT_EQ(::symlinkat(tree.path().c_str(), folder.get(), "top"), 0);
  auto deep = tree.path();
  for (int i = 0; i < 30; ++i) deep += "/" + name;
  EXPECT_EQ(canonicalPath(deep), deep);
  EXPECT_EQ(canonicalPath(joinPath(deep, "top/x")), tree.path("x"));
  EXPECT_EQ(canonicalPlace(joinPath(deep, "top")), joinPath(deep, "top"));
  EXPECT_EQ(readPathStatus(joinPath(deep, "top"))->type, FileType::symbolicLink);
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
