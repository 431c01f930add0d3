#include "core/base/text/Json.h"
#include "core/organizer/records/OrganizationCategoryGroup.h"
#include "core/organizer/records/OrganizationStrategy.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

TEST(OrganizationStrategy, isReadBackFromItsTitle) {
  for (const auto strategy : allOrganizationStrategies) {
    EXPECT_EQ(organizationStrategyFromRawValue(rawValue(strategy)), strategy);
  }
  EXPECT_EQ(rawValue(OrganizationStrategy::byDate), "By Date (Year & Month)");
  EXPECT_FALSE(organizationStrategyFromRawValue("byDate"));
}

OrganizationCategoryGroup groupOf(std::initializer_list<std::int64_t> sizes) {
  OrganizationCategoryGroup group;
  group.name = "Media/Images";
  group.destinationFolder = FileUrl("/h/Organized/Media/Images");
  for (const auto size : sizes) {
    ProposedMove move;
    move.originalURL = FileUrl("/h/a b.png");
    move.targetURL = FileUrl("/h/Organized/Media/Images/a b.png");
    move.categoryName = group.name;
    move.fileSize = size;
    move.sourceRelativePath = "a b.png";
    group.moves.push_back(move);
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
}  // namespace orvane
