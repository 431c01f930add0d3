#include "core/base/values/Date.h"

#include "platform/linux/AutostartEntry.h"
#include "platform/linux/SystemdScheduler.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryTree.h"

#include <ctime>

namespace orvane::test {
namespace {

// 2023-11-14, a Tuesday, at 22:13:20 UTC
const Date installed = dateFromUnix(1'700'000'000);

class SystemdSchedulerTest : public testing::Test {
 public:
  SystemdSchedulerTest() {
    for (const auto& path : {program, systemctl}) ::chmod(path.c_str(), 0700);
  }
  [[nodiscard]] BackgroundJob job(std::chrono::seconds interval) const {
    return {.label = "com.orvane.cleanup",
            .executable = program,
            .interval = interval,
            .outputPath = tree.path("lo gs%/stdout.log"),
            .errorPath = tree.path("lo gs%/stderr.log")};
  }
  // The verdict of the service manager's own checker on the units.
  [[nodiscard]] ChildResult verify() const {
    tree.folder("runtime");
    return runProgram({"systemd-analyze", "verify", "--user", tree.path("units/com.orvane.cleanup.service"),
                       tree.path("units/com.orvane.cleanup.timer")},
                      {{"HOME", tree.path()}, {"XDG_RUNTIME_DIR", tree.path("runtime")}});
  }

  TemporaryTree tree;
  std::string program = tree.file("o \"p\" $t%n\\/\xC3\xB6 orvane", "#!/bin/sh\n");
  std::string systemctl = tree.file("systemctl", "#!/bin/sh\necho \"$*\" >> '" + tree.path("asked") + "'\nexit 1\n");
  SystemdScheduler scheduler{tree.path("units"), systemctl};
};

TEST_F(SystemdSchedulerTest, writesUnitsThatTheServiceManagerHasNothingToSayAbout) {
  for (const int interval : {900, 86400, 604800, 2592000}) {
    auto wanted = job(std::chrono::seconds(interval));
    if (interval == 900) wanted.executable = "/bin/true";
    scheduler.install(wanted);
    const auto result = verify();
    EXPECT_EQ(result.exitStatus, 0) << interval;
    EXPECT_EQ(result.output + result.errors, "") << interval;
  }
}

TEST_F(SystemdSchedulerTest, installsReloadsAndRemoves) {
  EXPECT_FALSE(scheduler.isInstalled("com.orvane.cleanup"));
  scheduler.uninstall("com.orvane.cleanup");
  EXPECT_FALSE(exists(tree.path("asked")));
  scheduler.install(job(std::chrono::seconds(86400)));
  scheduler.install(job(std::chrono::seconds(900)));
  EXPECT_TRUE(scheduler.isInstalled("com.orvane.cleanup"));
  EXPECT_TRUE(exists(tree.path("lo gs%")));
  EXPECT_THAT(contentOf(tree.path("units/timers.target.wants/com.orvane.cleanup.timer")),
              HasSubstr("every 900 seconds"));
  EXPECT_THAT(contentOf(tree.path("asked")),
              EndsWith("--user daemon-reload\n--user stop com.orvane.cleanup.timer\n--user clean --what=state "
                       "com.orvane.cleanup.timer\n--user restart com.orvane.cleanup.timer\n"));
  scheduler.uninstall("com.orvane.cleanup");
  EXPECT_FALSE(scheduler.isInstalled("com.orvane.cleanup"));
  EXPECT_THAT(filesBelow(tree.path("units")), ElementsAre());
}

TEST_F(SystemdSchedulerTest, runsInTheBackgroundAndKeepsWhatIsPrinted) {
  const auto text = SystemdScheduler::serviceText(job(std::chrono::seconds(900)));
  for (const auto* line : {"\nType=oneshot\n", "\nIOSchedulingClass=idle\n", "\nNice=19\n", "\" --scheduled-run\n"}) {
    EXPECT_THAT(text, HasSubstr(line));
  }
  EXPECT_THAT(text, HasSubstr("\nStandardOutput=append:" + tree.path("lo gs%%/stdout.log") + "\n"));
}

std::string calendar(const std::vector<std::string>& words) {
  std::vector<std::string> arguments{"systemd-analyze", "calendar", "--base-time=2023-11-14 22:13:20 UTC"};
  arguments.insert(arguments.end(), words.begin(), words.end());
  return runProgram(arguments, {{"TZ", "UTC"}}).output;
}

// The service manager's own reading of when a timer elapses.
TEST(SystemdCalendar, startsOneIntervalAfterAnother) {
  for (const int interval : {900, 86400, 604800, 2592000}) {
    SCOPED_TRACE(interval);
    const auto text = SystemdScheduler::timerText({.label = "l",
                                                   .executable = "/o",
                                                   .interval = std::chrono::seconds(interval),
                                                   .outputPath = "",
                                                   .errorPath = ""},
                                                  installed);
    EXPECT_THAT(text, HasSubstr("\nPersistent=true\n"));
    std::vector<std::string> patterns;
    constexpr std::string_view key = "\nOnCalendar=";
    for (auto at = text.find(key); at != std::string::npos; at = text.find(key, at + 1)) {
      const auto begin = at + key.size();
      patterns.push_back(text.substr(begin, text.find('\n', begin) - begin));
    }
    // One pattern that repeats, or a date for each start.
    std::string said;
    if (patterns.size() == 1) {
      said = calendar({"--iterations=3", patterns[0]});
    } else {
      for (std::size_t i = 0; i < 3; ++i) said += calendar({patterns.at(i)});
    }
    for (int i = 1; i <= 3; ++i) {
      const auto at = static_cast<std::time_t>(1'700'000'000 + i * std::int64_t{interval});
      std::string expected(32, '\0');
      expected.resize(std::strftime(expected.data(), expected.size(), "%a %Y-%m-%d %H:%M:%S UTC", std::gmtime(&at)));
      EXPECT_THAT(said, HasSubstr(expected));
    }
  }
}

TEST_F(SystemdSchedulerTest, refusesPathsThatAUnitCannotHold) {
  for (const auto* path : {"/opt/or\nvane", "/opt/\xff"}) {
    auto odd = job(std::chrono::seconds(900));
    odd.executable = path;
    EXPECT_THROW(scheduler.install(odd), std::system_error);
  }
  EXPECT_FALSE(scheduler.isInstalled("com.orvane.cleanup"));
}

TEST(AutostartEntry, comesAndGoes) {
  const TemporaryTree tree;
  const auto path = tree.path("config/autostart/orvane.desktop");
  AutostartEntry entry(path, "/opt/My Tools/100%/orvane");
  EXPECT_FALSE(entry.isEnabled());
  entry.setEnabled(false);
  entry.setEnabled(true);
  EXPECT_TRUE(entry.isEnabled());
  EXPECT_THAT(contentOf(path), HasSubstr("\nExec=\"/opt/My Tools/100%%/orvane\"\n"));
  entry.setEnabled(false);
  EXPECT_FALSE(entry.isEnabled() || exists(path));
}

TEST(AutostartEntry, quotesWhatAShellWouldTouchAndSaysWhyItCannotBeMade) {
  const TemporaryTree tree;
  AutostartEntry(tree.path("a.desktop"), R"(/a"b`c$d\e)").setEnabled(true);
  EXPECT_THAT(contentOf(tree.path("a.desktop")), HasSubstr(R"(Exec="/a\\"b\\`c\\$d\\\\e")"));
  EXPECT_THROW(AutostartEntry(tree.path("b.desktop"), "/a\nExec=b").setEnabled(true), std::system_error);
  EXPECT_FALSE(exists(tree.path("b.desktop")));
  EXPECT_THROW(AutostartEntry(tree.path("a.desktop/b.desktop"), "/orvane").setEnabled(true), std::system_error);
}

TEST(AutostartEntry, respectsWhatTheDesktopSwitchedOff) {
  const TemporaryTree tree;
  AutostartEntry entry(tree.path("a.desktop"), "/orvane");
  tree.file("a.desktop", "[Desktop Entry]\nExec=/orvane\nHidden=true\n");
  EXPECT_FALSE(entry.isEnabled());
  entry.setEnabled(true);
  EXPECT_TRUE(entry.isEnabled());
}

}  // namespace
}  // namespace orvane::test
