#include "core/base/files/UserFolders.h"
#include "tests/support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

struct Case {
  std::string name;
  std::string settings;                 // "@" stands for the home folder
  std::optional<std::string> expected;  // of "Downloads"; below the home folder unless it begins with a slash
  std::vector<std::string> folders = {};
};

const std::vector<Case> cases{
    {"in the home folder", "# made by a tool\nXDG_DOWNLOAD_DIR=\"$HOME/Téléchargements\"\n", "Téléchargements"},
    {"on another disk", "XDG_DOWNLOAD_DIR=\"/srv/data/dl\"", "/srv/data/dl"},
    {"with space around", "  XDG_DOWNLOAD_DIR =\t\"$HOME/In/\"", "In"},
    {"with signs that a shell reads", R"(XDG_DOWNLOAD_DIR="$HOME/a \"b\" \$c \\d")", R"(a "b" $c \d)"},
    {"assigned twice", "XDG_DOWNLOAD_DIR=\"$HOME/a\"\nXDG_DOWNLOAD_DIR=\"$HOME/b\"\n", "b"},
    {"in a comment", "#XDG_DOWNLOAD_DIR=\"$HOME/a\"\n", std::nullopt},
    {"of another variable", "XDG_DOWNLOAD_DIRECTORY=\"$HOME/a\"\nXDG_DESKTOP_DIR=\"$HOME/b\"", std::nullopt},
    {"without quotes", "XDG_DOWNLOAD_DIR=$HOME/a", std::nullopt},
    {"without an end", "XDG_DOWNLOAD_DIR=\"$HOME/a", std::nullopt},
    {"relative", "XDG_DOWNLOAD_DIR=\"a\"", std::nullopt},
    {"the usual one", "XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"", std::nullopt},
    // These would make a rule for the downloads folder one for everything.
    {"switched off", "XDG_DOWNLOAD_DIR=\"$HOME/\"", std::nullopt},
    {"the home folder by its path", "XDG_DOWNLOAD_DIR=\"@\"", std::nullopt},
    {"what holds the home folder", "XDG_DOWNLOAD_DIR=\"$HOME/..\"", std::nullopt},
    {"the whole system", "XDG_DOWNLOAD_DIR=\"/\"", std::nullopt},
    {"gone, with the usual one there", "XDG_DOWNLOAD_DIR=\"$HOME/a\"", std::nullopt, {"Downloads"}},
    {"beside the usual one", "XDG_DOWNLOAD_DIR=\"$HOME/a\"", "a", {"Downloads", "a"}}};

TEST(UserFolders, areReadAsAShellWould) {
  const ScopedEnvironment none("XDG_CONFIG_HOME", nullptr);
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    const TemporaryTree home;
    auto settings = row.settings;
    if (const auto at = settings.find('@'); at != std::string::npos) settings.replace(at, 1, home.path());
    home.file(".config/user-dirs.dirs", settings);
    for (const auto& folder : row.folders) home.folder(folder);
    auto expected = row.expected;
    if (expected && !expected->starts_with('/')) expected = home.path(*expected);
    EXPECT_EQ(userFolder("Downloads", home.path()), expected);
  }
}

TEST(UserFolders, knowTheirOwnNamesOnly) {
  const TemporaryTree home;
  home.file("settings/user-dirs.dirs", "XDG_VIDEOS_DIR=\"$HOME/Filme\"\nXDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
  const ScopedEnvironment settings("XDG_CONFIG_HOME", home.path("settings").c_str());
  EXPECT_EQ(userFolder("Videos", home.path()), home.path("Filme"));
  EXPECT_EQ(userFolder("Movies", home.path()), home.path("Filme"));
  EXPECT_EQ(userFolder("Documents", home.path()), home.path("Dokumente"));
  EXPECT_EQ(userFolder("Pictures", home.path()), std::nullopt);
  EXPECT_EQ(userFolder("Library", home.path()), std::nullopt);
}

}  // namespace
}  // namespace orvane::test
