#include "core/rules/services/LaunchAgentManager.h"
#include "core/uninstaller/PropertyList.h"
#include "platform/macos/LaunchdScheduler.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

class LaunchAgentManagerTest : public testing::Test {
 public:
  // A launchctl that writes down what it is asked, and whether the file is there then.
  std::string launchctl() const {
    auto path =
        tree.file("launchctl", "#!/bin/sh\n[ -e \"$2\" ] && echo \"$1 $2\" >> '" + tree.path("asked") + "'\nexit 1\n");
    ::chmod(path.c_str(), 0700);
    return path;
  }

  TemporaryTree tree;
  LaunchdScheduler scheduler{tree.path("Library/LaunchAgents"), launchctl()};
  LaunchAgentManager manager{scheduler, tree.path()};
  std::string plist = tree.path("Library/LaunchAgents/com.orvane.cleanup.plist");
};

TEST_F(LaunchAgentManagerTest, writesTheGivenForm) {
  EXPECT_EQ(manager.generatePlistContent("/opt/A & B/orvane", Weekly{}),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
    <key>Label</key>
    <string>com.orvane.cleanup</string>
    <key>ProgramArguments</key>
    <array>
        <string>/opt/A &amp; B/orvane</string>
        <string>--scheduled-run</string>
    </array>
    <key>StartInterval</key>
    <integer>604800</integer>
    <key>RunAtLoad</key>
    <false/>
    <key>ProcessType</key>
    <string>Background</string>
    <key>LowPriorityIO</key>
    <true/>
    <key>StandardOutPath</key>
    <string>)" + tree.path("Library/Logs/Orvane/stdout.log") +
                R"(</string>
    <key>StandardErrorPath</key>
    <string>)" + tree.path("Library/Logs/Orvane/stderr.log") +
                R"(</string>
</dict>
</plist>
)");
}

TEST_F(LaunchAgentManagerTest, writesNamesOfAnyKindSoThatTheyParse) {
  const std::string home = "/opt/A & B/<\"o'rvane\">\t/\xC3\xB6";
  const auto list = PropertyList::parse(LaunchAgentManager(scheduler, home).generatePlistContent(home, Weekly{}));
  ASSERT_TRUE(list);
  EXPECT_EQ(list->text("Label"), "com.orvane.cleanup");
  EXPECT_EQ(list->text("StandardOutPath"), home + "/Library/Logs/Orvane/stdout.log");
  const Rows<ScheduleFrequency, const char*> rows{
      {OnLowDiskSpace{10}, "900"}, {Daily{}, "86400"}, {Weekly{}, "604800"}, {Monthly{}, "2592000"}};
  for (const auto& [frequency, seconds] : rows) {
    EXPECT_THAT(manager.generatePlistContent("/o", frequency), HasSubstr("<integer>" + std::string(seconds) + "<"));
  }
}

TEST_F(LaunchAgentManagerTest, installsLoadsAndRemoves) {
  EXPECT_FALSE(manager.isInstalled());
  manager.uninstall();
  manager.install("/usr/bin/orvane", Weekly{});
  manager.install("/usr/bin/orvane", Daily{});
  EXPECT_TRUE(manager.isInstalled());
  EXPECT_EQ(manager.plistFilePath(), plist);
  EXPECT_EQ(contentOf(plist), manager.generatePlistContent("/usr/bin/orvane", Daily{}));
  EXPECT_TRUE(exists(manager.logsDirectory()));
  EXPECT_THAT(filesBelow(manager.launchAgentsDirectory()), ElementsAre("com.orvane.cleanup.plist"));
  manager.uninstall();
  EXPECT_FALSE(manager.isInstalled());
  EXPECT_EQ(contentOf(tree.path("asked")), "unload " + plist + "\nload " + plist + "\nunload " + plist + "\nload " +
                                               plist + "\nunload " + plist + "\n");
}

TEST_F(LaunchAgentManagerTest, saysThatItCannotWriteAndLoadsNothing) {
  tree.file("Library/LaunchAgents", "in the way");
  EXPECT_THROW(manager.install("/usr/bin/orvane", Weekly{}), std::system_error);
  EXPECT_FALSE(exists(tree.path("asked")));
}

}  // namespace
}  // namespace orvane::test
