// The program itself, without a display.

#include "tests/support/LiveProgram.h"
#include "tests/support/Parts.h"
#include "tests/support/TemporaryTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

class WindowProgramTest : public testing::Test {
 public:
  WindowProgramTest() { ::chmod(home.folder("runtime").c_str(), 0700); }

  // A platform that is not there ends any program that makes an application object of Qt's.
  [[nodiscard]] LiveProgram::Setup setup(const std::string& argument, const std::string& platform = "none") const {
    return {.arguments = {ORVANE_PROGRAM, argument},
            .environment = {{"HOME", home.path()},
                            {"PATH", "/usr/bin:/bin"},
                            {"XDG_RUNTIME_DIR", home.path("runtime")},
                            {"QT_QPA_PLATFORM", platform},
                            {"QT_QUICK_BACKEND", "software"}},
            .workingFolder = home.path()};
  }
  void store(const std::string& settings) const { home.file(".config/orvane/preferences.json", settings); }

  TemporaryTree home;
};

TEST_F(WindowProgramTest, tidiesWithoutADisplayWhereTheUserAskedForIt) {
  setAge(home.file("Downloads/report.pdf"), 3600);
  store(R"({"OrvaneAutoOrganizeSettings": {"isEnabled": true, "recentsDays": 3, "folderPaths": [")" +
        home.path("Downloads") + R"("], "useAITopics": false, "lastRunMovedCount": 0}})");
  const auto result = LiveProgram(setup("--scheduled-run")).finish();
  EXPECT_EQ(result.exitStatus, 0) << result.errors;
  EXPECT_TRUE(holds(home, {"Downloads/Recents/report.pdf"}, {"Downloads/report.pdf"}));
}

TEST_F(WindowProgramTest, saysWhatToDoAboutDamagedPreferences) {
  const std::string damaged = R"({"OrvaneSecurityScopedBookmarks": {"/home)";
  setAge(home.file("Downloads/report.pdf"), 3600);
  store(damaged);
  const auto headless = LiveProgram(setup("--scheduled-run")).finish();
  EXPECT_EQ(headless.exitStatus, 1);
  EXPECT_THAT(headless.errors, HasSubstr("move it away to start with the defaults"));
  LiveProgram window(setup("--show=overview", "offscreen"));
  window.waitForOutput("move it away to start with the defaults");
  window.signal(SIGTERM);
  window.finish();
  EXPECT_EQ(contentOf(home.path(".config/orvane/preferences.json")), damaged);
  EXPECT_TRUE(exists(home.path("Downloads/report.pdf")));
}

// As the timer starts it, in an account that has none of the usual folders.
TEST_F(WindowProgramTest, cleansKnownPlacesWithoutADisplayAndWithoutAnyFolder) {
  constexpr double twoMonths = 61.0 * 86400;
  setAge(home.file(".cache/pip/a"), twoMonths);
  setAge(home.path(".cache/pip"), twoMonths);
  const auto terminal = [&](std::vector<std::string> words) {
    auto program = setup("");
    program.arguments = {ORVANECTL};
    program.arguments.insert(program.arguments.end(), words.begin(), words.end());
    const auto result = LiveProgram(program).finish();
    EXPECT_EQ(result.exitStatus, 0) << words.front() << ": " << result.errors;
  };
  const auto start = [&] {
    const auto result = LiveProgram(setup("--scheduled-run")).finish();
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(result.output, "");
  };
  terminal({"rules", "add", "--suggested", "old-caches"});
  setAge(home.file("Downloads/report.pdf"), 3600);
  start();
  EXPECT_TRUE(holds(home, {".cache/pip/a", "Downloads/report.pdf"})) << "nothing is switched on";
  std::filesystem::remove_all(home.path("Downloads"));
  terminal({"schedule", "enable"});
  start();
  EXPECT_TRUE(holds(home, {".local/share/Trash/files/pip/a"}, {".cache/pip"}));
  terminal({"restore", "--last", "--yes"});
  EXPECT_TRUE(exists(home.path(".cache/pip/a")));
  start();
  EXPECT_TRUE(exists(home.path(".cache/pip/a"))) << "the next run is due in a week";
}

// Only the whole argument is the flag: with anything else the window is tried, which fails without a display.
TEST_F(WindowProgramTest, takesTheFlagWholeOnly) {
  for (const auto* argument : {"--scheduled-run=1", "--scheduled-runs", "-scheduled-run"}) {
    const auto result = LiveProgram(setup(argument)).finish();
    EXPECT_NE(result.exitStatus, 0) << argument;
    EXPECT_THAT(result.errors, HasSubstr("platform plugin")) << argument;
  }
}

TEST_F(WindowProgramTest, opensOneWindowOnly) {
  // The leftovers of a killed instance keep no other out.
  const auto place = home.file("runtime/orvane.socket", "");
  home.file("runtime/orvane.lock", "");
  const LiveProgram first(setup("--first", "offscreen"));
  struct stat status {};
  do {
    ASSERT_TRUE(::lstat(place.c_str(), &status) == 0 || errno == ENOENT);
  } while (!S_ISSOCK(status.st_mode));
  const auto second = LiveProgram(setup("--second", "offscreen")).finish();
  EXPECT_EQ(second.exitStatus, 0) << second.errors;
}

TEST_F(WindowProgramTest, opensOverASampleHomeAndTouchesNothingElse) {
  home.folder("temporary");
  auto start = setup("--demo", "offscreen");
  start.environment["TMPDIR"] = home.path("temporary");
  const LiveProgram window(start);
  std::string sample;
  // It listens once the window is about to be made.
  const auto isListening = [&] {
    for (const auto& entry : std::filesystem::directory_iterator(home.path("temporary"))) sample = entry.path();
    return !sample.empty() && exists(sample + "/runtime/orvane.socket");
  };
  while (!isListening()) ASSERT_FALSE(exists(home.path("runtime/orvane.lock")));
  EXPECT_TRUE(exists(sample + "/home/Downloads/server.log"));
  EXPECT_TRUE(holds(home, {}, {".config", "Library"}));
}

}  // namespace
}  // namespace orvane::test
