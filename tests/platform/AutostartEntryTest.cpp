#include "platform/linux/AutostartEntry.h"

#include "tests/support/TemporaryTree.h"

#include <gmock/gmock.h>

#include <system_error>

namespace orvane {
namespace {

using test::contentOf;
using test::exists;
using testing::HasSubstr;

TEST(AutostartEntry, comesAndGoes) {
  const test::TemporaryTree tree;
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
  const test::TemporaryTree tree;
  AutostartEntry(tree.path("a.desktop"), R"(/a"b`c$d\e)").setEnabled(true);
  EXPECT_THAT(contentOf(tree.path("a.desktop")), HasSubstr(R"(Exec="/a\\"b\\`c\\$d\\\\e")"));
  EXPECT_THROW(AutostartEntry(tree.path("b.desktop"), "/a\nExec=b").setEnabled(true), std::system_error);
  EXPECT_FALSE(exists(tree.path("b.desktop")));
  EXPECT_THROW(AutostartEntry(tree.path("a.desktop/b.desktop"), "/orvane").setEnabled(true), std::system_error);
}

TEST(AutostartEntry, respectsWhatTheDesktopSwitchedOff) {
  const test::TemporaryTree tree;
  AutostartEntry entry(tree.path("a.desktop"), "/orvane");
  tree.file("a.desktop", "[Desktop Entry]\nExec=/orvane\nHidden=true\n");
  EXPECT_FALSE(entry.isEnabled());
  entry.setEnabled(true);
  EXPECT_TRUE(entry.isEnabled());
}

}  // namespace
}  // namespace orvane
