#include "core/base/text/Json.h"
#include "core/duplicates/records/DuplicateGroup.h"
#include "tests/support/Testing.h"

#include <limits>
#include <random>

namespace orvane::test {
namespace {

struct Wanted {
  std::string path = "/f";
  double created = 0;
  RiskLabel label = RiskLabel::review;
};

DuplicateGroup groupOf(const std::vector<Wanted>& items, std::int64_t size = 10) {
  DuplicateGroup group;
  group.fileSize = size;
  group.hash = std::string(64, 'a');
  for (const auto& wanted : items) {
    FileItem::Fields fields;
    fields.url = FileUrl(wanted.path);
    fields.fileSize = size;
    fields.createdDate = dateFromReferenceSeconds(wanted.created);
    fields.category = ScanCategory::duplicates;
    fields.riskLabel = wanted.label;
    group.items.emplace_back(std::move(fields));
  }
  return group;
}

std::vector<bool> selection(const DuplicateGroup& group) {
  std::vector<bool> result;
  for (const auto& item : group.items) result.push_back(item.isSelected());
  return result;
}

TEST(DuplicateGroup, keepsTheStrategysChoice) {
  const Rows<const char*, std::vector<Wanted>, std::vector<bool>, std::vector<bool>> rows{
      // what is selected when the oldest is kept, and when the shortest path is
      {"first of equals", {{"/aa", 5}, {"/bb", 5}, {"/cc", 5}}, {0, 1, 1}, {0, 1, 1}},
      {"later one", {{"/aaa", 5}, {"/b", 6}, {"/cc", 4}}, {1, 1, 0}, {1, 0, 1}},
      {"two share the oldest date", {{"/aaa", 9}, {"/bb", 4}, {"/cc", 4}}, {1, 0, 1}, {1, 0, 1}},
      // Four characters of eleven bytes, and a character of two code points.
      {"characters, not bytes", {{"/abcde", 1}, {"/日本語", 2}}, {0, 1}, {1, 0}},
      {"combined characters", {{"/abc", 1}, {"/e\u0301e\u0301", 2}}, {0, 1}, {1, 0}},
      {"manual stays", {{"/a", 1}, {"/bb", 2, RiskLabel::manual}, {"/c", 3}}, {0, 0, 1}, {0, 0, 1}},
      {"one item", {{"/a", 1}}, {0}, {0}},
  };
  for (const auto& [name, items, oldest, shortest] : rows) {
    auto group = groupOf(items);
    group.applyKeepStrategy(DuplicateKeepStrategy::keepOldest);
    EXPECT_EQ(selection(group), oldest) << name;
    group.applyKeepStrategy(DuplicateKeepStrategy::keepShortestPath);
    EXPECT_EQ(selection(group), shortest) << name;
  }
}

TEST(DuplicateGroup, derivesItsBytes) {
  auto group = groupOf({{}, {}, {}});
  EXPECT_EQ(group.selectedWastedBytes(), 0);
  EXPECT_EQ(group.maxReclaimableBytes(), 20);
  group.applyKeepStrategy(DuplicateKeepStrategy::keepOldest);
  EXPECT_EQ(group.selectedWastedBytes(), 20);
  EXPECT_EQ(groupOf({{}}).maxReclaimableBytes(), 0);
  EXPECT_EQ(groupOf({}).maxReclaimableBytes(), 0);
}

TEST(DuplicateGroupDeathTest, endsTheProcessOnOverflow) {
  auto group = groupOf({{}, {}, {}}, std::numeric_limits<std::int64_t>::max() / 2 + 1);
  EXPECT_DEATH(static_cast<void>(group.maxReclaimableBytes()), "overflow");
  group.applyKeepStrategy(DuplicateKeepStrategy::keepOldest);
  EXPECT_DEATH(static_cast<void>(group.selectedWastedBytes()), "overflow");
}

TEST(DuplicateGroup, neverSelectsTheLastCopy) {
  auto group = groupOf({{}, {}, {}});
  group.setSelection(group.items[0].id(), true);
  group.setSelection(group.items[2].id(), true);
  group.setSelection(group.items[1].id(), true);
  EXPECT_THAT(selection(group), ElementsAre(true, false, true));
  group.setSelection(group.items[0].id(), true);
  EXPECT_THAT(selection(group), ElementsAre(true, false, true)) << "selected already: refused too, without effect";
  group.setSelection(group.items[0].id(), false);
  group.setSelection(Uuid::random(), true);
  EXPECT_THAT(selection(group), ElementsAre(false, false, true));

  auto manual = groupOf({{}, {"/m", 0, RiskLabel::manual}, {}});
  manual.setSelection(manual.items[1].id(), true);
  EXPECT_THAT(selection(manual), ElementsAre(false, false, false));

  for (auto& item : group.items) item.setSelected(true);
  group.enforceKeepOneInvariant();
  EXPECT_THAT(selection(group), ElementsAre(false, true, true));
}

// One item of a group stays unselected, whatever is done to the group.
TEST(DuplicateGroup, keepsOneWhateverIsDone) {
  std::mt19937 random(7);
  const auto below = [&](std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random); };
  for (int round = 0; round < 300; ++round) {
    std::vector<Wanted> items(1 + below(6));
    for (auto& item : items) {
      item = {std::string(1 + below(4), '/'), static_cast<double>(below(4)),
              below(4) == 0 ? RiskLabel::manual : RiskLabel::review};
    }
    auto group = groupOf(items);
    for (int step = 0; step < 40; ++step) {
      switch (below(4)) {
        case 0:
          group.applyKeepStrategy(allDuplicateKeepStrategies.at(below(2)));
          break;
        case 1:
          // A change that a caller may make by itself and must follow with this.
          for (auto& item : group.items) item.setSelected(below(3) != 0);
          group.enforceKeepOneInvariant();
          break;
        default:
          group.setSelection(group.items[below(group.items.size())].id(), below(3) != 0);
      }
      const auto isSelected = [](const FileItem& item) { return item.isSelected(); };
      ASSERT_FALSE(std::all_of(group.items.begin(), group.items.end(), isSelected));
      for (const auto& item : group.items) ASSERT_FALSE(item.isSelected() && item.riskLabel() == RiskLabel::manual);
      ASSERT_LE(group.selectedWastedBytes(), group.maxReclaimableBytes());
    }
  }
}

TEST(DuplicateGroup, readsBackWhatItWrites) {
  auto group = groupOf({{"/a b", 1}, {"/b", 2}});
  group.applyKeepStrategy(DuplicateKeepStrategy::keepOldest);
  const auto json = group.toJson();
  std::vector<std::string> keys;
  for (const auto& [key, value] : json.items()) keys.push_back(key);
  EXPECT_THAT(keys, ElementsAre("id", "fileSize", "hash", "items"));
  EXPECT_EQ(DuplicateGroup::fromJson(parseJson(jsonText(json))), group);
  EXPECT_THROW(DuplicateGroup::fromJson(parseJson(R"({"id":1})")), JsonError);
}

TEST(DuplicateKeepStrategy, isKnownByItsTitle) {
  EXPECT_EQ(duplicateKeepStrategyFromRawValue("Keep Oldest File"), DuplicateKeepStrategy::keepOldest);
  EXPECT_EQ(duplicateKeepStrategyFromRawValue("Keep Shortest Path"), DuplicateKeepStrategy::keepShortestPath);
}

}  // namespace
}  // namespace orvane::test
