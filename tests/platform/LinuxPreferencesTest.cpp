#include "core/base/files/FileLock.h"
#include "core/base/text/Json.h"
#include "platform/linux/LinuxPreferences.h"
#include "tests/support/TemporaryTree.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

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
  EXPECT_EQ(std::filesystem::status(tree.path("config/orvane/preferences.json")).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write)
      << "it is for the user alone";
}

TEST_F(LinuxPreferencesTest, processesNeverLoseEachOthersKeys) {
  constexpr int writers = 4;
  constexpr int keys = 25;
  std::vector<pid_t> children;
  for (int writer = 0; writer < writers; ++writer) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      try {
        for (int key = 0; key < keys; ++key) other.setValue(std::to_string(writer) + "-" + std::to_string(key), key);
      } catch (const std::exception&) {
        ::_exit(1);
      }
      ::_exit(0);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  for (int writer = 0; writer < writers; ++writer) {
    for (int key = 0; key < keys; ++key) {
      EXPECT_EQ(preferences.value(std::to_string(writer) + "-" + std::to_string(key)), key);
    }
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
  std::filesystem::remove(tree.path("config/orvane/preferences.json"));
  preferences.setValue("key", 1);
  EXPECT_EQ(preferences.value("key"), 1) << "moved away, it is no obstacle any more";
}

TEST_F(LinuxPreferencesTest, writesThroughALink) {
  tree.file("dotfiles/settings.json", "{\"old\":1}");
  tree.link("config/orvane/preferences.json", tree.path("dotfiles/settings.json"));
  preferences.setValue("new", 2);
  EXPECT_TRUE(std::filesystem::is_symlink(tree.path("config/orvane/preferences.json")));
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

}  // namespace
}  // namespace orvane::test
