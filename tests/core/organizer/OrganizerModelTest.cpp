#include "core/base/text/Json.h"
#include "core/organizer/records/OrganizationCategoryGroup.h"
#include "tests/support/Testing.h"

#include <limits>

namespace orvane::test {
namespace {

OrganizationCategoryGroup groupOf(std::initializer_list<std::int64_t> sizes) {
  OrganizationCategoryGroup group;
  group.destinationFolder = FileUrl("/h/Organized/Media/Images");
  for (const auto size : sizes) {
    auto& move = group.moves.emplace_back();
    move.originalURL = FileUrl("/h/a b.png");
    move.fileSize = size;
  }
  return group;
}

TEST(OrganizationCategoryGroup, sumsTheSelectedMoves) {
  auto group = groupOf({10, 20, 30});
  group.moves[1].isSelected = false;
  EXPECT_EQ(group.totalSize(), 40);
}

TEST(OrganizationCategoryGroupDeathTest, endsTheProcessOnOverflow) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto group = groupOf({std::numeric_limits<std::int64_t>::max(), 1});
  EXPECT_DEATH(static_cast<void>(group.totalSize()), "overflow");
}

TEST(OrganizationCategoryGroup, writesItsMovesWithTheGivenKeys) {
  const auto json = groupOf({5}).toJson();
  EXPECT_EQ(json.at("destinationFolder"), "file:///h/Organized/Media/Images");
  const auto& move = json.at("moves").at(0);
  std::vector<std::string> keys;
  for (const auto& [key, value] : move.items()) keys.push_back(key);
  EXPECT_EQ(keys, (std::vector<std::string>{"id", "originalURL", "targetURL", "categoryName", "fileSize", "isSelected",
                                            "isDirectory", "sourceRelativePath"}));
  EXPECT_EQ(move.at("originalURL"), "file:///h/a%20b.png");
  EXPECT_EQ(move.at("isSelected"), true);
}

}  // namespace
}  // namespace orvane::test
