#include "app/shell/Wish.h"
#include "tests/support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

struct Start {
  std::string name;
  std::vector<const char*> arguments;
  Wish wish;
};

void PrintTo(const Start& start, std::ostream* out) {
  *out << start.name;
}

class Wishes : public testing::TestWithParam<Start> {};

TEST_P(Wishes, reachTheWindowThatIsOpenAsTheyWereMeant) {
  const auto wish = Wish::fromArguments(GetParam().arguments);
  EXPECT_EQ(wish, GetParam().wish);
  EXPECT_EQ(Wish::fromLine(wish.toLine() + "\n"), wish);
}

INSTANTIATE_TEST_SUITE_P(
    OfAStart, Wishes,
    testing::Values(Start{"nothing", {"orvane"}, {}},
                    Start{"a section", {"orvane", "--show", "history"}, {.section = "history"}},
                    Start{"a section that is missing", {"orvane", "--show"}, {}},
                    Start{"a scan", {"orvane", "--scan"}, {.section = "cleanup", .work = Wish::Work::scan}},
                    Start{"a scan of a folder with a line break",
                          {"orvane", "--scan", "/a b\nc/"},
                          {.section = "cleanup", .work = Wish::Work::scan, .folder = "file:///a%20b%0Ac"}},
                    Start{"a scan, and another option",
                          {"orvane", "--scan", "--demo"},
                          {.section = "cleanup", .work = Wish::Work::scan}},
                    Start{"organizing", {"orvane", "--organize"}, {.work = Wish::Work::organize}}));

TEST(Wish, takesAFolderFromWhereItWasTyped) {
  const std::vector<const char*> arguments{"orvane", "--scan", "Downloads"};
  const auto there = std::filesystem::current_path() / "Downloads";
  EXPECT_EQ(Wish::fromArguments(arguments).folder, "file://" + there.string());
}

}  // namespace
}  // namespace orvane::test
