#include "core/safety/rules/PathValidator.h"

#include "core/base/files/PathText.h"
#include "core/safety/rules/FolderRules.h"
#include "platform/linux/LinuxProfile.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

enum class Verdict : std::uint8_t { admitted, empty, traversal, isProtected, escapes };

Verdict verdictOf(const std::optional<SecurityError>& error) {
  if (!error) return Verdict::admitted;
  if (std::holds_alternative<SecurityError::EmptyPath>(error->which())) return Verdict::empty;
  if (std::holds_alternative<SecurityError::PathTraversalAttempt>(error->which())) return Verdict::traversal;
  if (std::holds_alternative<SecurityError::ProtectedPath>(error->which())) return Verdict::isProtected;
  return Verdict::escapes;
}

class PathValidatorTest : public testing::Test {
 protected:
  PathValidatorTest() {
    m_tree.folder("home/Downloads");
    m_tree.files({"home/.ssh/id_rsa", "home/Code/project/.git/config", "other/secret"});
  }

  // "~" stands for the home folder and "^" for the tree's top.
  [[nodiscard]] std::string expanded(std::string path) const {
    if (path.starts_with('~')) return m_home + path.substr(1);
    if (path.starts_with('^')) return m_tree.path() + path.substr(1);
    return path;
  }
  template <typename Roots>
  [[nodiscard]] std::optional<SecurityError> check(const std::string& path, const Roots& roots) const {
    try {
      m_validator.validate(FileUrl(expanded(path)), roots);
    } catch (const SecurityError& error) {
      EXPECT_FALSE(m_validator.isPathAllowed(FileUrl(expanded(path)), roots));
      return error;
    }
    EXPECT_TRUE(m_validator.isPathAllowed(FileUrl(expanded(path)), roots));
    return std::nullopt;
  }
  [[nodiscard]] Boundary homeRoot() const { return Boundary({FileUrl(m_home)}); }

  TemporaryTree m_tree;
  std::string m_home = m_tree.path("home");
  PathValidator m_validator{m_home};
};

TEST_F(PathValidatorTest, decidesByFixedRulesWithoutRoots) {
  const Rows<Verdict, std::vector<const char*>> rows{
      {Verdict::empty, {""}},
      {Verdict::traversal, {"/Users/u/../etc", "~/Downloads/./x", "~/Downloads/..", "~/Downloads/a..b", "../x", "./x"}},
      {Verdict::admitted,
       {"~/Downloads/.", "/Libraryx/y", "/Applications/Other.app", "/variable", "~/Downloads", "~/.ssh2",
        "~/Library/Mailbox", "~/Code/.gitignore", "^", "/"}},
      {Verdict::isProtected,
       {"/System", "/Library/Caches/x", "/etc/hosts", "/opt/x", "/Applications/Safari.app", "/private", "/private/x",
        "/var/lib/x", "/var/folders/ab/T/x", "~", "~/", "~/.ssh/id_rsa", "~/.zshrc", "~/.config/app",
        "~/Library/Keychains", "~/Library/Mail/V10/x", "~/Pictures/Photos Library.photoslibrary/x",
        "~/Code/project/.git/config", "~/Code/.hg"}},
  };
  for (const auto& [verdict, paths] : rows) {
    for (const auto* path : paths) EXPECT_EQ(verdictOf(check(path, fixedRulesOnly)), verdict) << path;
  }
}

TEST_F(PathValidatorTest, admitsARootAndWhatIsInsideByWholeComponents) {
  m_tree.folder("home/Documents2");
  const Boundary roots({m_tree.url("home/Documents"), m_tree.url("home/Downloads")});
  EXPECT_EQ(verdictOf(check("~/Downloads", roots)), Verdict::admitted);
  EXPECT_EQ(verdictOf(check("~/Documents/x/y", roots)), Verdict::admitted);
  EXPECT_EQ(verdictOf(check("~/Documents2/x", roots)), Verdict::isProtected);
  EXPECT_EQ(verdictOf(check("^/other/secret", roots)), Verdict::isProtected);
  EXPECT_EQ(verdictOf(check("/", Boundary({FileUrl("/")}))), Verdict::admitted);
  EXPECT_EQ(verdictOf(check("~/Downloads", Boundary({FileUrl("/")}))), Verdict::isProtected);
}

TEST_F(PathValidatorTest, admitsNothingForAnEmptyRoot) {
  const Boundary roots({FileUrl()});
  for (const char* path : {"~/Downloads", "^", "/", "CMakeLists.txt"}) {
    EXPECT_NE(verdictOf(check(path, roots)), Verdict::admitted) << path;
  }
}

TEST_F(PathValidatorTest, admitsTemporaryFoldersOnlyInsideARoot) {
  const Boundary roots({FileUrl("/var/folders/ab/T")});
  EXPECT_EQ(verdictOf(check("/var/folders/ab/T/x", roots)), Verdict::admitted);
  EXPECT_EQ(verdictOf(check("/var/folders/ab/T", roots)), Verdict::admitted);
  EXPECT_EQ(verdictOf(check("/var/folders/cd/x", roots)), Verdict::isProtected);
  EXPECT_EQ(verdictOf(check("/var/folders", Boundary({FileUrl("/var/folders")}))), Verdict::isProtected);
  EXPECT_EQ(verdictOf(check("/var/log/x", Boundary({FileUrl("/var/log")}))), Verdict::isProtected);
}

TEST_F(PathValidatorTest, judgesALinkByWhereItLeads) {
  m_tree.link("home/Downloads/hosts", "/etc/hosts");
  m_tree.link("home/Downloads/escape", m_tree.path("other/secret"));
  m_tree.link("home/Downloads/outside", m_tree.path("other"));
  m_tree.link("home/Downloads/inside", m_home + "/Code/project");
  m_tree.link("home/Downloads/keys", m_home + "/.ssh");
  m_tree.link("home/Downloads/gone", m_tree.path("other/nothing"));

  EXPECT_EQ(check("~/Downloads/hosts", homeRoot()), SecurityError(SecurityError::ProtectedPath{"/etc/hosts"}));
  const std::string escape = m_home + "/Downloads/escape";
  const auto secret = m_tree.path("other/secret");
  EXPECT_EQ(check(escape, homeRoot()), SecurityError(SecurityError::SymlinkEscapesAllowedBoundary{escape, secret}));
  // The item itself is no link here; a folder on the way is.
  EXPECT_EQ(check("~/Downloads/outside/secret", homeRoot()), SecurityError(SecurityError::ProtectedPath{secret}));
  EXPECT_EQ(verdictOf(check("~/Downloads/inside", homeRoot())), Verdict::admitted);
  EXPECT_EQ(verdictOf(check("~/Downloads/inside/.git", homeRoot())), Verdict::isProtected);
  EXPECT_EQ(verdictOf(check("~/Downloads/keys/id_rsa", homeRoot())), Verdict::isProtected);
  EXPECT_EQ(verdictOf(check("~/Downloads/gone", homeRoot())), Verdict::escapes);
}

TEST_F(PathValidatorTest, namesThePathInItsErrors) {
  EXPECT_EQ(check("/Users/u/../etc", fixedRulesOnly),
            SecurityError(SecurityError::PathTraversalAttempt{"/Users/u/../etc"}));
  m_tree.link("home/Downloads/here", m_home + "/.ssh");
  EXPECT_EQ(check("~/Downloads/here", fixedRulesOnly), SecurityError(SecurityError::ProtectedPath{m_home + "/.ssh"}));
}

TEST_F(PathValidatorTest, protectsAHomeFolderThatIsReachedThroughALink) {
  m_tree.link("linkedHome", m_home);
  const PathValidator validator(m_tree.path("linkedHome"));
  EXPECT_FALSE(validator.isPathAllowed(FileUrl(m_home), fixedRulesOnly));
  EXPECT_FALSE(validator.isPathAllowed(m_tree.url("linkedHome/.ssh/id_rsa"), fixedRulesOnly));
  EXPECT_TRUE(validator.isPathAllowed(m_tree.url("linkedHome/Downloads"), fixedRulesOnly));
}

TEST(PathValidator, admitsAHomeFolderThatASystemKeepsAmongItsOwn) {
  for (const std::string home : {"/var/home/you", "/srv/homes/you", "/root"}) {
    const LinuxProfile profile(XdgFolders::below(home));
    const PathValidator validator(home, profile);
    const Boundary boundary({FileUrl(home)});
    const auto admits = [&](const std::string& path) {
      const auto folder = std::string(parentPath(path));
      const bool isAllowed = validator.isPathAllowed(FileUrl(path), boundary);
      EXPECT_EQ(FolderRules(validator, folder, folder, boundary).admits(lastComponent(path)), isAllowed) << path;
      return isAllowed;
    };
    EXPECT_TRUE(admits(home + "/Downloads/a"));
    EXPECT_TRUE(admits(home + "/a"));
    for (const std::string refused : {"/.netrc", "/.config/a", "", "2/a", "/.local/share", "/../x"}) {
      EXPECT_FALSE(admits(home + refused)) << home << refused;
    }
    EXPECT_FALSE(admits(std::string(parentPath(home)) + "/other/a")) << home;
  }
}

TEST_F(PathValidatorTest, keepsTheBoundaryWhenARootsLinkIsChanged) {
  m_tree.link("granted", m_home + "/Downloads");
  const Boundary roots({m_tree.url("granted")});
  EXPECT_THAT(roots.canonicalPaths(), ElementsAre(m_home + "/Downloads"));
  std::remove(m_tree.path("granted").c_str());
  m_tree.link("granted", m_tree.path("other"));
  EXPECT_EQ(verdictOf(check("^/granted/secret", roots)), Verdict::isProtected);
}

}  // namespace
}  // namespace orvane::test
