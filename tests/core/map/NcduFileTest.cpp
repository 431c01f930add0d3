#include "core/map/NcduFile.h"

#include "core/base/text/Json.h"
#include "tests/support/Testing.h"

namespace orvane::test {
namespace {

// Hands the text over in small pieces, so that every token is cut somewhere.
StorageMap mapFrom(std::string_view text) {
  return readNcdu(
      [&](std::span<char> place) {
        const auto count = std::min({text.size(), place.size(), std::size_t{7}});
        std::copy_n(text.begin(), count, place.begin());
        text.remove_prefix(count);
        return count;
      },
      SystemProfile::none(), ReferenceClock::now());
}

std::string document(std::string_view tree) {
  return "[1,2,{\"progname\":\"ncdu\",\"nested\":[{\"a\":[1,2]},null]}," + std::string(tree) + "]";
}

TEST(NcduFile, countsSizesOfEveryEntryAndLinkedFilesOnce) {
  const auto map = mapFrom(document(R"([{"name":"/srv","dsize":4096,"dev":1},
    {"name":"a","asize":5,"dsize":8},{"name":"h1","ino":7,"nlink":2,"dsize":100},
    [{"name":"sub"},{"name":"h2","ino":7,"nlink":2,"dsize":100},{"name":"h3","dev":2,"ino":7,"hlnkc":true,"dsize":1}],
    [{"name":"closed","read_error":true}],{"name":"net","excluded":"otherfs"},{"name":"skip","excluded":"pattern"}])"));
  EXPECT_EQ(map.folder(StorageMap::top).total, (MapSum{4205, 5, 4}));
  EXPECT_EQ(map.rootPath(), "/srv");
  EXPECT_EQ(map.folder(*map.find("/srv/closed")).state, MapState::unreadable);
  EXPECT_EQ(map.folder(*map.find("/srv/net")).state, MapState::otherFileSystem);
  EXPECT_EQ(map.pathOf(*map.find("/srv/sub")), "/srv/sub");
}

TEST(NcduFile, holdsSizesWithinTheirRange) {
  const auto map = mapFrom(document(R"([{"name":"/"},{"name":"a","dsize":99999999999999999999999},
    {"name":"b","dsize":9223372036854775807},{"name":"c","dsize":-5,"asize":1.5e3}])"));
  EXPECT_EQ(map.folder(StorageMap::top).total.diskBytes, INT64_MAX);
  EXPECT_EQ(map.folder(StorageMap::top).total.logicalBytes, 1);
}

TEST(NcduFile, readsTreesDeeperThanAnyStack) {
  std::string tree;
  constexpr int depth = 200'000;
  for (int i = 0; i < depth; ++i) tree += "[{\"name\":\"d\",\"dsize\":1},";
  tree += "{\"name\":\"f\"}";
  tree.append(depth, ']');
  const auto map = mapFrom(document(tree));
  EXPECT_EQ(map.folderCount(), depth);
  EXPECT_EQ(map.folder(StorageMap::top).total.diskBytes, depth);
}

TEST(NcduFile, readsBackEveryNameThatItWrites) {
  const std::string name = "q\" b\\ n\n e\x01 d\x7F l\xFF u\xC3\xA9";
  std::deque<StorageMap::Folder> folders(1);
  folders[0].name = "/top";
  folders[0].addFile(name, {}, {10, 20, 1}, 5);
  std::string text;
  writeNcdu(StorageMap(std::move(folders)), ReferenceClock::now(), [&](std::string_view piece) { text += piece; });
  const auto map = mapFrom(text);
  const auto& top = map.folder(StorageMap::top);
  ASSERT_EQ(top.files.size(), 1);
  EXPECT_EQ(top.nameOf(top.files[0]), name);
  EXPECT_EQ(top.total, (MapSum{10, 20, 1}));
}

TEST(NcduFile, refusesMalformedText) {
  for (const auto* text : {"", "{}", "[1]", "[1,2,{}]", "[2,0,{},[{\"name\":\"/\"}]]", "[1,2,{},[]]", "[1,2,{},[{}]]",
                           "[1,2,{},[{\"name\":\"/\"}]", "[1,2,{},[{\"name\":\"/\"}]]x",
                           "[1,2,{},[{\"name\":\"/\"},5]]", "[1,2,{},[{\"name\":\"/\"},{\"name\":\"a/b\"},]]",
                           "[1,2,{},[{\"name\":\"/\"}}]", "[1,2,{},[{\"name\":\"\\ud800\"}]]",
                           "[1,2,{},[{\"name\":\"a\\u0000b\"}]]", "[1,2,{},[{\"name\":\"/\",\"dsize\":-}]]",
                           "[1,2,{},[{\"name\":tru}]]", "[1,2,{},[{\"name\":\"/\"},[{\"name\":\"../etc\"}]]]"}) {
    EXPECT_THROW(static_cast<void>(mapFrom(text)), JsonError) << text;
  }
}

// A folder keeps its largest files by name, however many come.
TEST(StorageMapFolder, keepsTheLargestFiles) {
  StorageMap::Folder folder;
  for (int i = 0; i < 10'000; ++i) {
    folder.addFile("file" + std::to_string((i * 7919) % 10'000), {}, {(i * 7919) % 10'000, 0, 1}, 3);
  }
  std::vector<std::string> names;
  for (const auto& file : folder.files) names.emplace_back(folder.nameOf(file));
  EXPECT_THAT(names, UnorderedElementsAre("file9999", "file9998", "file9997"));
  EXPECT_LT(folder.fileNames.size(), 1000U);
  EXPECT_EQ(folder.slices.at(0).sum.files, 10'000);
}

}  // namespace
}  // namespace orvane::test
