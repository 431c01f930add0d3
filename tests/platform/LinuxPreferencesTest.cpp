#include "core/base/files/FileLock.h"
#include "core/base/files/UserFolders.h"
#include "core/base/text/Json.h"
#include "platform/linux/LinuxPreferences.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

class LinuxPreferencesTest : public testing::Test {
 public:
  TemporaryTree tree;
  LinuxPreferences preferences{tree.path("config/orvane/preferences.json")};
  // As another process has it.
  LinuxPreferences other{tree.path("config/orvane/preferences.json")};

  [[nodiscard]] std::vector<std::string> filesBeside() const { return filesBelow(tree.path("config/orvane")); }
};

TEST_F(LinuxPreferencesTest, keepsValuesOfEveryKind) {
  EXPECT_FALSE(preferences.value("missing"));
  const Json value{{"text", "ä\n"}, {"list", {1, 2.5, nullptr, true}}};
  preferences.setValue("key", value);
  preferences.setValue("other", 7);
  EXPECT_EQ(other.value("key"), value);
  EXPECT_EQ(other.value("other"), 7);
  other.setValue("key", false);
  EXPECT_EQ(preferences.value("key"), false);
  EXPECT_EQ(filesBeside(), (std::vector<std::string>{"preferences.json", "preferences.json.lock"}));
  EXPECT_EQ(fs::status(tree.path("config/orvane/preferences.json")).permissions(),
            fs::perms::owner_read | fs::perms::owner_write)
      << "it is for the user alone";
}

TEST_F(LinuxPreferencesTest, processesNeverLoseEachOthersKeys) {
  constexpr int writers = 4;
  constexpr int keys = 25;
  const auto nameOf = [](int writer, int key) { return std::to_string(writer) + "-" + std::to_string(key); };
  EXPECT_TRUE(inProcesses(writers, [&](int writer) {
    for (int key = 0; key < keys; ++key) other.setValue(nameOf(writer, key), key);
    return true;
  }));
  for (int writer = 0; writer < writers; ++writer) {
    for (int key = 0; key < keys; ++key) EXPECT_EQ(preferences.value(nameOf(writer, key)), key);
  }
}

TEST_F(LinuxPreferencesTest, refusesADamagedFileAndLeavesIt) {
  for (const std::string damage : {"", "{\"key\":", "[1]", "{\"a\":1,\"a\":2}", "\xFF"}) {
    SCOPED_TRACE(damage);
    const auto path = tree.file("config/orvane/preferences.json", damage);
    EXPECT_THROW(static_cast<void>(preferences.value("key")), std::system_error);
    EXPECT_THROW(preferences.setValue("key", 1), std::system_error);
    EXPECT_THROW(preferences.update("key", [](const Json*) { return Json(1); }), std::system_error);
    EXPECT_EQ(contentOf(path), damage);
    EXPECT_EQ(filesBeside(), (std::vector<std::string>{"preferences.json", "preferences.json.lock"}));
  }
  fs::remove(tree.path("config/orvane/preferences.json"));
  preferences.setValue("key", 1);
  EXPECT_EQ(preferences.value("key"), 1) << "moved away, it is no obstacle any more";
}

TEST_F(LinuxPreferencesTest, writesThroughALink) {
  tree.file("dotfiles/settings.json", "{\"old\":1}");
  tree.link("config/orvane/preferences.json", tree.path("dotfiles/settings.json"));
  preferences.setValue("new", 2);
  EXPECT_TRUE(fs::is_symlink(tree.path("config/orvane/preferences.json")));
  EXPECT_EQ(preferences.value("old"), 1);
  EXPECT_EQ(parseJson(contentOf(tree.path("dotfiles/settings.json"))), (Json{{"old", 1}, {"new", 2}}));
}

TEST_F(LinuxPreferencesTest, leavesAForeignFileBehindALinkAlone) {
  tree.file("dotfiles/letter.txt", "not preferences");
  tree.link("config/orvane/preferences.json", tree.path("dotfiles/letter.txt"));
  EXPECT_THROW(static_cast<void>(preferences.value("key")), std::system_error);
  EXPECT_THROW(preferences.setValue("key", 1), std::system_error);
  EXPECT_EQ(filesBelow(tree.path("dotfiles")), std::vector<std::string>{"letter.txt"});
  EXPECT_EQ(contentOf(tree.path("dotfiles/letter.txt")), "not preferences");
}

TEST_F(LinuxPreferencesTest, removesWhatAWriterThatDiedLeft) {
  const auto folder = tree.folder("config/orvane");
  const auto left = tree.file("config/orvane/preferences.json.8B0C9C1E-5E0B-4C8E-9B1E-4C2D1E3F4A5B.tmp");
  const auto others = {tree.file("config/orvane/preferences.json.mine.tmp"), tree.file("config/orvane/notes.tmp")};
  {
    const auto lock = FileLock::acquire(folder + "/preferences.json.lock");
    const LinuxPreferences whileSomebodyWrites(folder + "/preferences.json");
    EXPECT_TRUE(exists(left));
  }
  const LinuxPreferences next(folder + "/preferences.json");
  EXPECT_FALSE(exists(left));
  for (const auto& kept : others) EXPECT_TRUE(exists(kept)) << kept;
}

TEST_F(LinuxPreferencesTest, throwsWhereItCannotBeWritten) {
  tree.file("config", "a file where the folder should be");
  EXPECT_THROW(preferences.setValue("key", 1), std::system_error);
  EXPECT_FALSE(preferences.value("key"));
}

TEST(LinuxPreferencesPath, followsTheConfigurationFolder) {
  const ScopedEnvironment home("HOME", "/home/user");
  {
    const ScopedEnvironment configured("XDG_CONFIG_HOME", "/elsewhere");
    EXPECT_EQ(LinuxPreferences::defaultPath(), "/elsewhere/orvane/preferences.json");
  }
  for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative"}) {
    const ScopedEnvironment configured("XDG_CONFIG_HOME", unusable);
    EXPECT_EQ(LinuxPreferences::defaultPath(), "/home/user/.config/orvane/preferences.json");
  }
}

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
