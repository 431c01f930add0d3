#include "core/rules/services/LaunchAgentManager.h"
#include "platform/macos/LaunchdScheduler.h"
#include "tests/support/TemporaryTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <plist/plist.h>
#include <sys/stat.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// The value that a property-list parser reads at a key, in its own XML.
std::string valueAt(const std::string& text, const char* key, int element = -1) {
  plist_t list = nullptr;
  plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &list);
  const std::unique_ptr<void, decltype(&plist_free)> owner(list, plist_free);
  plist_t node = list != nullptr ? plist_dict_get_item(list, key) : nullptr;
  if (node != nullptr && element >= 0) node = plist_array_get_item(node, static_cast<std::uint32_t>(element));
  if (node == nullptr) return "none";
  switch (plist_get_node_type(node)) {
    case PLIST_STRING: {
      char* value = nullptr;
      plist_get_string_val(node, &value);
      std::string result(value);
      std::free(value);  // as its documentation says; not every version has a function for it
      return result;
    }
    case PLIST_UINT: {
      std::uint64_t value = 0;
      plist_get_uint_val(node, &value);
      return std::to_string(value);
    }
    case PLIST_BOOLEAN: {
      std::uint8_t value = 0;
      plist_get_bool_val(node, &value);
      return value != 0 ? "true" : "false";
    }
    case PLIST_ARRAY:
      return "array of " + std::to_string(plist_array_get_size(node));
    default:
      return "something else";
  }
}

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

TEST_F(LaunchAgentManagerTest, writesAPropertyListThatParses) {
  const std::string executable = "/opt/A & B/<\"o'rvane\">\t/\xC3\xB6";
  const auto text = manager.generatePlistContent(executable, Weekly{});
  EXPECT_TRUE(text.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC ")) << text;
  EXPECT_THAT(text,
              HasSubstr("\n<plist version=\"1.0\">\n<dict>\n    <key>Label</key>\n    <string>com.orvane.cleanup</"));
  EXPECT_THAT(text, HasSubstr("\n    <array>\n        <string>/opt/A &amp; B/"));
  EXPECT_EQ(valueAt(text, "Label"), "com.orvane.cleanup");
  EXPECT_EQ(valueAt(text, "ProgramArguments"), "array of 2");
  EXPECT_EQ(valueAt(text, "ProgramArguments", 0), executable);
  EXPECT_EQ(valueAt(text, "ProgramArguments", 1), "--scheduled-run");
  EXPECT_EQ(valueAt(text, "StartInterval"), "604800");
  EXPECT_EQ(valueAt(text, "RunAtLoad"), "false");
  EXPECT_EQ(valueAt(text, "ProcessType"), "Background");
  EXPECT_EQ(valueAt(text, "LowPriorityIO"), "true");
  EXPECT_EQ(valueAt(text, "StandardOutPath"), tree.path("Library/Logs/Orvane/stdout.log"));
  EXPECT_EQ(valueAt(text, "StandardErrorPath"), tree.path("Library/Logs/Orvane/stderr.log"));
}

TEST_F(LaunchAgentManagerTest, startsAsOftenAsTheFrequencyAsks) {
  const std::vector<std::pair<ScheduleFrequency, std::string>> rows{
      {OnLowDiskSpace{10}, "900"}, {Daily{}, "86400"}, {Weekly{}, "604800"}, {Monthly{}, "2592000"}};
  for (const auto& [frequency, interval] : rows) {
    EXPECT_EQ(valueAt(manager.generatePlistContent("/o", frequency), "StartInterval"), interval);
  }
}

TEST_F(LaunchAgentManagerTest, installsLoadsAndRemoves) {
  EXPECT_FALSE(manager.isInstalled());
  manager.uninstall();
  manager.install("/usr/bin/orvane", Weekly{});
  manager.install("/usr/bin/orvane", Daily{});
  EXPECT_TRUE(manager.isInstalled());
  EXPECT_EQ(manager.plistFilePath(), plist);
  EXPECT_EQ(valueAt(contentOf(plist), "StartInterval"), "86400");
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
