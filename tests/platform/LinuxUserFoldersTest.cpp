#include "core/base/files/UserFolders.h"
#include "tests/support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cstdlib>
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

void PrintTo(const Case& row, std::ostream* out) {
  *out << row.name;
}

class UserFolder : public testing::TestWithParam<Case> {
 public:
  UserFolder() { ::unsetenv("XDG_CONFIG_HOME"); }
  TemporaryTree home;
};

TEST_P(UserFolder, isReadAsAShellWould) {
  const auto& row = GetParam();
  auto settings = row.settings;
  for (auto at = settings.find('@'); at != std::string::npos; at = settings.find('@')) {
    settings.replace(at, 1, home.path());
  }
  home.file(".config/user-dirs.dirs", settings);
  for (const auto& folder : row.folders) home.folder(folder);
  const auto found = userFolder("Downloads", home.path());
  ASSERT_EQ(found.has_value(), row.expected.has_value()) << found.value_or("");
  if (!found) return;
  EXPECT_EQ(*found, row.expected->starts_with('/') ? *row.expected : home.path(*row.expected));
}

INSTANTIATE_TEST_SUITE_P(
    Settings, UserFolder,
    testing::Values(
        Case{"in the home folder", "# made by a tool\nXDG_DOWNLOAD_DIR=\"$HOME/Téléchargements\"\n", "Téléchargements"},
        Case{"on another disk", "XDG_DOWNLOAD_DIR=\"/srv/data/dl\"", "/srv/data/dl"},
        Case{"with space around", "  XDG_DOWNLOAD_DIR =\t\"$HOME/In/\"", "In"},
        Case{"with signs that a shell reads", R"(XDG_DOWNLOAD_DIR="$HOME/a \"b\" \$c \\d")", R"(a "b" $c \d)"},
        Case{"assigned twice", "XDG_DOWNLOAD_DIR=\"$HOME/a\"\nXDG_DOWNLOAD_DIR=\"$HOME/b\"\n", "b"},
        Case{"in a comment", "#XDG_DOWNLOAD_DIR=\"$HOME/a\"\n", std::nullopt},
        Case{"of another variable", "XDG_DOWNLOAD_DIRECTORY=\"$HOME/a\"\nXDG_DESKTOP_DIR=\"$HOME/b\"", std::nullopt},
        Case{"without quotes", "XDG_DOWNLOAD_DIR=$HOME/a", std::nullopt},
        Case{"without an end", "XDG_DOWNLOAD_DIR=\"$HOME/a", std::nullopt},
        Case{"relative", "XDG_DOWNLOAD_DIR=\"a\"", std::nullopt},
        Case{"the usual one", "XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"", std::nullopt},
        // These would make a rule for the downloads folder one for everything.
        Case{"switched off", "XDG_DOWNLOAD_DIR=\"$HOME/\"", std::nullopt},
        Case{"the home folder by its path", "XDG_DOWNLOAD_DIR=\"@\"", std::nullopt},
        Case{"what holds the home folder", "XDG_DOWNLOAD_DIR=\"$HOME/..\"", std::nullopt},
        Case{"the whole system", "XDG_DOWNLOAD_DIR=\"/\"", std::nullopt},
        Case{"gone, with the usual one there", "XDG_DOWNLOAD_DIR=\"$HOME/a\"", std::nullopt, {"Downloads"}},
        Case{"beside the usual one", "XDG_DOWNLOAD_DIR=\"$HOME/a\"", "a", {"Downloads", "a"}}),
    [](const auto& made) {
      auto name = made.param.name;
      for (auto& sign : name) {
        if (sign == ' ' || sign == ',') sign = '_';
      }
      return name;
    });

TEST(UserFolders, knowTheirOwnNamesOnly) {
  const TemporaryTree home;
  home.file("settings/user-dirs.dirs", "XDG_VIDEOS_DIR=\"$HOME/Filme\"\nXDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
  ::setenv("XDG_CONFIG_HOME", home.path("settings").c_str(), 1);
  EXPECT_EQ(userFolder("Videos", home.path()), home.path("Filme"));
  EXPECT_EQ(userFolder("Movies", home.path()), home.path("Filme"));
  EXPECT_EQ(userFolder("Documents", home.path()), home.path("Dokumente"));
  EXPECT_EQ(userFolder("Pictures", home.path()), std::nullopt);
  EXPECT_EQ(userFolder("Library", home.path()), std::nullopt);
  ::unsetenv("XDG_CONFIG_HOME");
}

}  // namespace
}  // namespace orvane::test
