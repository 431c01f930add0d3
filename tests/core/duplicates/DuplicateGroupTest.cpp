#include "core/base/text/Json.h"
#include "core/base/values/Sha256.h"
#include "core/duplicates/HashUtility.h"
#include "core/duplicates/records/DuplicateGroup.h"
#include "tests/support/TemporaryTree.h"

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
  EXPECT_EQ(duplicateKeepStrategyFromRawValue("Keep Oldest File"), DuplicateKeepStrategy::keepOldest);
  EXPECT_EQ(duplicateKeepStrategyFromRawValue("Keep Shortest Path"), DuplicateKeepStrategy::keepShortestPath);
  auto group = groupOf({{"/a b", 1}, {"/b", 2}});
  group.applyKeepStrategy(DuplicateKeepStrategy::keepOldest);
  const auto json = group.toJson();
  EXPECT_THAT(keysOf(json), ElementsAre("id", "fileSize", "hash", "items"));
  EXPECT_EQ(DuplicateGroup::fromJson(parseJson(jsonText(json))), group);
  EXPECT_THROW(DuplicateGroup::fromJson(parseJson(R"({"id":1})")), JsonError);
}

constexpr auto emptyDigest = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";

std::string digestOf(std::string_view text) {
  Sha256 hash;
  hash.update(std::as_bytes(std::span(text)));
  return digestText(hash.finish());
}

// Every byte tells where it is.
std::string pattern(std::size_t size) {
  std::string text(size, '\0');
  for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>(i * 31 + i / 251);
  return text;
}

TEST(Sha256, knowsPublishedDigests) {
  EXPECT_EQ(digestOf(""), emptyDigest);
  EXPECT_EQ(digestOf("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(digestOf(std::string(1'000'000, 'a')), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256, goesOnFromACopy) {
  Sha256 hash;
  hash.update(std::as_bytes(std::span(std::string_view("ab"))));
  Sha256 copy(hash);
  copy.update(std::as_bytes(std::span(std::string_view("c"))));
  EXPECT_EQ(digestText(copy.finish()), digestOf("abc"));
  EXPECT_EQ(digestText(hash.finish()), digestOf("ab"));
  EXPECT_EQ(digestText(hash.finish()), emptyDigest) << "starts anew";
}

TEST(HashUtility, readsTheEndsThatTheSizeTells) {
  using Hashed = std::string (*)(const std::string& text);
  const Hashed head = [](const std::string& text) { return text.substr(0, 16384); };
  const Hashed headAndTail = [](const std::string& text) {
    return text.substr(0, 16384) + text.substr(text.size() - 16384);
  };
  const Hashed headAndFrom17232 = [](const std::string& text) { return text.substr(0, 16384) + text.substr(17232); };
  const Rows<std::size_t, std::int64_t, Hashed> rows{
      {0, 0, head},
      {1, 1, head},
      {16384, 16384, head},
      {16385, 16385, head},
      {32768, 32768, head},
      {32769, 32769, headAndTail},
      {200'000, 200'000, headAndTail},
      // The size told decides, not the file's.
      {200'000, 32768, head},
      {20'000, 33'616, headAndFrom17232},
      {20'000, 1'000'000, head},
      {20'000, INT64_MAX, head},
  };
  const TemporaryTree tree;
  for (const auto& [size, told, hashed] : rows) {
    const auto content = pattern(size);
    const FileUrl url(tree.file("file", content));
    EXPECT_EQ(HashUtility::computePartialHash(url, told), digestOf(hashed(content))) << size << " told " << told;
    EXPECT_EQ(HashUtility::computeFullHash(url), digestOf(content));
  }
}

TEST(HashUtility, knowsNothingOfWhatItCannotOpen) {
  const TemporaryTree tree;
  const auto fifo = tree.pipe("fifo");
  for (const auto& path : {tree.path("missing"), tree.folder("folder"), fifo, tree.link("dangling", "nowhere")}) {
    EXPECT_EQ(HashUtility::computePartialHash(FileUrl(path), 10), std::nullopt) << path;
    EXPECT_EQ(HashUtility::computeFullHash(FileUrl(path)), std::nullopt) << path;
  }
}

}  // namespace
}  // namespace orvane::test
