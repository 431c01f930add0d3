#include "core/safety/rules/FolderRules.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

const std::vector<std::string> entryNames{
    "a",         "b.txt",        "a..b",         "..",
    ".git",      ".svn",         ".hg",          ".gitx",
    ".ssh",      ".ssh2",        ".zshrc",       ".config",
    "Library",   "Keychains",    "Mail",         "IdentityServices",
    "Pictures",  "var",          "private",      "folders",
    "log",       "etc",          "Downloads",    "Photos Library.photoslibrary",
    "home",      "System",       "opt",          "Safari.app",
    "Utilities", "Applications", "root",         "odd\xff\x01 name",
    "...",       "new\nline",    "\xe2\x82\xac", "Volumes",
    "run",       "vm",           "db",           ".gnupg",
};

bool isLink(const std::string& path) {
  const auto status = readPathStatus(path);
  return status && status->type == FileType::symbolicLink;
}

// Compares the rules of one folder with the validator for every name, and goes on below.
class Comparison {
 public:
  Comparison(const PathValidator& validator, const std::vector<FileUrl>& roots)
      : m_validator(validator), m_roots(PathValidator::canonicalizeRoots(roots)) {}

  void compareNames(const std::string& folder, const std::vector<std::string>& names) {
    const FolderRules rules(m_validator, folder, canonicalPath(folder), m_roots);
    for (const auto& name : names) {
      const std::string path = folder.ends_with('/') ? folder + name : folder + "/" + name;
      if (name == ".." || name.empty() || isLink(path)) continue;
      const bool expected = m_validator.isPathAllowed(FileUrl(path), m_roots);
      EXPECT_EQ(rules.admits(name), expected) << path;
      EXPECT_FALSE(expected && rules.refusesAllBelow()) << path;
      m_admitted += expected ? 1 : 0;
      m_refused += expected ? 0 : 1;
    }
  }

  // Everything below, folders behind links left out; returns whether anything is admitted.
  bool compareTree(const std::string& folder) {
    auto reader = DirectoryReader::open(AT_FDCWD, folder.c_str(), DirectoryReader::Links::follow);
    if (!reader) return false;
    std::vector<std::string> names;
    std::vector<std::string> folders;
    while (const auto entry = reader->next()) {
      names.emplace_back(entry->name);
      if (entry->type == FileType::directory) folders.push_back(joinPath(folder, entry->name));
    }
    const auto before = m_admitted;
    compareNames(folder, names);
    compareNames(folder, entryNames);
    bool anyAdmitted = m_admitted > before;
    for (const auto& subfolder : folders) anyAdmitted = compareTree(subfolder) || anyAdmitted;
    const FolderRules rules(m_validator, folder, canonicalPath(folder), m_roots);
    EXPECT_FALSE(anyAdmitted && rules.refusesAllBelow()) << folder;
    return anyAdmitted;
  }

  int m_admitted = 0;
  int m_refused = 0;

 private:
  const PathValidator& m_validator;
  Boundary m_roots;
};

// A tree of folders, files and links of every kind, with telling names.
void grow(const TemporaryTree& tree, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::string> folders{"", "home", "home/Downloads", "home/Library"};
  for (const auto& folder : folders) tree.folder(folder);
  const auto pick = [&](const auto& from) { return from[random() % from.size()]; };
  for (int i = 0; i < 80; ++i) {
    const std::string name = pick(entryNames);
    const std::string parent = pick(folders);
    const std::string relative = parent.empty() ? name : parent + "/" + name;
    if (name == ".." || exists(tree.path(relative))) continue;
    switch (random() % 7) {
      case 0:
        tree.file(relative);
        break;
      case 1:
        tree.link(relative, tree.path(pick(folders)));
        break;
      case 2:
        tree.link(relative, "/etc");
        break;
      case 3:
        tree.link(relative, random() % 2 == 0 ? "missing/target" : name);
        break;
      default:
        tree.folder(relative);
        folders.push_back(relative);
    }
  }
}

class GeneratedTrees : public testing::TestWithParam<unsigned> {};

TEST_P(GeneratedTrees, giveTheSameAnswerAsTheValidator) {
  const TemporaryTree tree;
  grow(tree, GetParam());
  tree.link("toHome", tree.path("home"));
  const PathValidator validator(tree.path("home"));
  const PathValidator linkedValidator(tree.path("toHome"));
  const std::vector<std::vector<FileUrl>> rootSets{
      {},
      {tree.url()},
      {tree.url("home")},
      {tree.url("toHome")},
      {tree.url("home/Downloads"), tree.url("home/Library")},
      {tree.url("home"), tree.url("home/Downloads")},
      {tree.url("home/Downloads/b.txt"), tree.url("missing")},
      {FileUrl("/")},
      {FileUrl("/etc"), tree.url("home/a")},
  };
  int admitted = 0;
  int refused = 0;
  for (const auto& roots : rootSets) {
    for (const auto* used : {&validator, &linkedValidator}) {
      for (const auto& start : {tree.path(), tree.path("toHome"), tree.path("home") + "/./Downloads"}) {
        Comparison comparison(*used, roots);
        comparison.compareTree(start);
        admitted += comparison.m_admitted;
        refused += comparison.m_refused;
      }
    }
  }
  EXPECT_GT(admitted, 100);
  EXPECT_GT(refused, 100);
}
INSTANTIATE_TEST_SUITE_P(Seeds, GeneratedTrees, Range(1U, 4U));

TEST(FolderRules, giveTheSameAnswerInSystemFolders) {
  const PathValidator validator("/root");
  const std::vector<std::vector<FileUrl>> rootSets{
      {},
      {FileUrl("/")},
      {FileUrl("/var")},
      {FileUrl("/var/folders")},
      {FileUrl("/var/folders/a")},
      {FileUrl("/private/var/folders/a/b.txt")},
      {FileUrl("/private")},
      {FileUrl("/Library"), FileUrl("/Applications")},
      {FileUrl("/root")},
  };
  for (const auto& roots : rootSets) {
    Comparison comparison(validator, roots);
    for (const auto& folder : words(R"(/ /var /private /private/var /var/folders /var/folders/a /private/var/folders
             /private/var/folders/a /private/var/log /Library /Applications /Applications/Safari.app /System /root
             /root/.ssh /root/Library /root/Library/Mail /root/Pictures /opt/x /nowhere/.git /nowhere/a..b /nowhere/.)")) {
      comparison.compareNames(folder, entryNames);
    }
  }
}

}  // namespace
}  // namespace orvane::test
