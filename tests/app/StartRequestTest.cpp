#include "app/shell/StartRequest.h"
#include "tests/support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

TEST(StartRequest, reachesTheWindowThatIsOpenAsItWasMeant) {
  using Start = std::pair<std::vector<const char*>, StartRequest>;
  constexpr auto scan = StartRequest::Work::scan;
  for (const auto& [arguments, meant] : {
           Start{{"orvane"}, {}},
           Start{{"orvane", "--show", "history"}, {.section = "history"}},
           Start{{"orvane", "--show"}, {}},
           Start{{"orvane", "--scan"}, {.section = "cleanup", .work = scan}},
           Start{{"orvane", "--scan", "/a b\nc/"}, {.section = "cleanup", .work = scan, .folder = "file:///a%20b%0Ac"}},
           Start{{"orvane", "--scan", "--demo"}, {.section = "cleanup", .work = scan}},
           Start{{"orvane", "--organize"}, {.work = StartRequest::Work::organize}},
       }) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const auto request = StartRequest::fromArguments(arguments);
    EXPECT_EQ(request, meant);
    EXPECT_EQ(StartRequest::fromLine(request.toLine() + "\n"), request);
  }
}

TEST(StartRequest, takesAFolderFromWhereItWasTyped) {
  const std::vector<const char*> arguments{"orvane", "--scan", "Downloads"};
  const auto there = std::filesystem::current_path() / "Downloads";
  EXPECT_EQ(StartRequest::fromArguments(arguments).folder, "file://" + there.string());
}

}  // namespace
}  // namespace orvane::test
