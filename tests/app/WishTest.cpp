#include "app/shell/Wish.h"
#include "tests/support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

TEST(Wish, reachesTheWindowThatIsOpenAsItWasMeant) {
  using Start = std::pair<std::vector<const char*>, Wish>;
  constexpr auto scan = Wish::Work::scan;
  for (const auto& [arguments, meant] : {
           Start{{"orvane"}, {}},
           Start{{"orvane", "--show", "history"}, {.section = "history"}},
           Start{{"orvane", "--show"}, {}},
           Start{{"orvane", "--scan"}, {.section = "cleanup", .work = scan}},
           Start{{"orvane", "--scan", "/a b\nc/"}, {.section = "cleanup", .work = scan, .folder = "file:///a%20b%0Ac"}},
           Start{{"orvane", "--scan", "--demo"}, {.section = "cleanup", .work = scan}},
           Start{{"orvane", "--organize"}, {.work = Wish::Work::organize}},
       }) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const auto wish = Wish::fromArguments(arguments);
    EXPECT_EQ(wish, meant);
    EXPECT_EQ(Wish::fromLine(wish.toLine() + "\n"), wish);
  }
}

TEST(Wish, takesAFolderFromWhereItWasTyped) {
  const std::vector<const char*> arguments{"orvane", "--scan", "Downloads"};
  const auto there = std::filesystem::current_path() / "Downloads";
  EXPECT_EQ(Wish::fromArguments(arguments).folder, "file://" + there.string());
}

}  // namespace
}  // namespace orvane::test
