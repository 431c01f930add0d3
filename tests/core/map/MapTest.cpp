#include "core/base/text/Json.h"
#include "core/map/MapGrowth.h"
#include "core/map/NcduFile.h"
#include "core/map/SnapshotForm.h"
#include "core/map/services/SnapshotStore.h"
#include "tests/support/MemoryPreferences.h"
#include "tests/support/TemporaryTree.h"

#include <fmt/format.h>
#include <sqlite3.h>

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

constexpr std::chrono::hours day{24};

struct Entry {
  std::string path;  // below the root; folders come before what they hold
  std::int64_t bytes;
};

StorageMap mapOf(const std::vector<Entry>& entries) {
  std::deque<StorageMap::Folder> folders(1);
  folders[0].name = "/home/you";
  std::map<std::string, StorageMap::Index> known{{"", 0}};
  for (const auto& [path, bytes] : entries) {
    const auto slash = path.rfind('/');
    auto& folder = folders.emplace_back();
    folder.parent = known.at(slash == std::string::npos ? "" : path.substr(0, slash));
    folder.name = path.substr(slash + 1);
    folder.addFile("video.mkv", {.kind = MapKind::videos}, {bytes, bytes, 1}, 3);
    known[path] = static_cast<StorageMap::Index>(folders.size() - 1);
  }
  return StorageMap(std::move(folders));
}

class SnapshotStoreTest : public testing::Test {
 public:
  void add(SnapshotStore& to, const StorageMap& map, Date date, std::int64_t freeBytes = 1000) const {
    auto snapshot = snapshotOf(map, date);
    snapshot.freeBytes = freeBytes;
    to.add(snapshot);
  }
  TemporaryTree tree;
  MemoryPreferences preferences;
  std::string path = tree.path("data/orvane/map.db");
  SnapshotStore store{path, preferences};
  Date now = dateFromUnix(1'790'000'000);
};

TEST_F(SnapshotStoreTest, writesNothingWhileItIsOff) {
  add(store, mapOf({{"a", 5}}), now);
  EXPECT_THAT(store.moments(now), IsEmpty());
  store.setWarned(now);
  store.clear();
  EXPECT_FALSE(exists(tree.path("data")));
  EXPECT_FALSE(store.choice().has_value());
}

TEST_F(SnapshotStoreTest, givesBackWhatItWasGiven) {
  store.setOn(true);
  add(store, mapOf({{"a", 5}, {"a.b", 6}, {"a/b", 7}, {"a/b/\xFF", 8}, {"c", 9}}), now);
  const auto moments = SnapshotStore(path, preferences).moments(now);
  ASSERT_EQ(moments.size(), 1);
  const auto snapshot = store.read(moments[0].id);
  ASSERT_TRUE(snapshot.has_value());
  EXPECT_THAT(snapshot->folders,
              ElementsAre(Pair("/home/you", 35), Pair("/home/you/a", 20), Pair("/home/you/a.b", 6),
                          Pair("/home/you/a/b", 15), Pair("/home/you/a/b/\xFF", 8), Pair("/home/you/c", 9)));
  EXPECT_THAT(snapshot->kinds, ElementsAre(Pair("videos", 35)));
  EXPECT_EQ(snapshot->taken, now);
}

TEST_F(SnapshotStoreTest, thinsAYearToDaysWeeksAndMonths) {
  store.setOn(true);
  for (int hour = 0; hour < 5; ++hour) add(store, mapOf({{"a", 100 + hour}}), now + std::chrono::hours(hour));
  ASSERT_EQ(store.moments(now + day).size(), 1);
  EXPECT_EQ(store.moments(now + day)[0].diskBytes, 104);
  std::vector<MapMoment> moments;
  for (int i = 0; i <= 1600; ++i) {
    const auto date = now + i * std::chrono::hours(12);
    moments.push_back({.id = i + 1, .taken = date});
    const auto drop = momentsToDrop(moments, date);
    std::erase_if(moments, [&](const MapMoment& moment) { return std::ranges::count(drop, moment.id) > 0; });
  }
  const auto last = now + 800 * day;
  const auto within = [&](int from, int to) {
    return std::ranges::count_if(moments, [&](const MapMoment& moment) {
      const auto age = (last - moment.taken).count() / 86400;
      return age >= from && age < to;
    });
  };
  EXPECT_EQ(within(0, 31), 31);
  EXPECT_NEAR(static_cast<double>(within(31, 366)), 48, 2);
  EXPECT_NEAR(static_cast<double>(within(366, 801)), 14.5, 2);
}

TEST_F(SnapshotStoreTest, findsWhatGrewOverAYear) {
  store.setOn(true);
  std::vector<Entry> entries{{"Projects", 1000}, {"Projects/one", 2000}, {"Projects/two", 3000}, {"Videos", 50'000}};
  for (int i = 0; i < 365; ++i) {
    entries[1].bytes += 100;
    if (i == 360) entries[3].bytes -= 20'000;
    if (i % 14 == 0 || i > 350) add(store, mapOf(entries), now + i * day);
  }
  const auto moments = store.moments(now + 365 * day);
  const auto then = [&](int days) {
    const auto* moment = momentBefore(moments, "/home/you", now + days * day);
    return store.read(moment->id).value();
  };
  const auto map = mapOf(entries);
  // The last week lost a film and gained in one project.
  auto growth = growthSince(map, then(358)).value();
  EXPECT_EQ(growth.bytes, 6 * 100 - 20'000);
  EXPECT_EQ(growth.byFolder[*map.find("/home/you/Projects")], 600);
  // Since the beginning: nothing is older than the first.
  growth = growthSince(map, then(-100)).value();
  EXPECT_EQ(growth.byFolder[*map.find("/home/you/Videos")], -20'000);
  entries[3].bytes += 20'000;
  growth = growthSince(mapOf(entries), then(358)).value();
  ASSERT_EQ(growth.folders.size(), 1);
  EXPECT_EQ(map.pathOf(growth.folders[0].folder), "/home/you/Projects/one");
  ASSERT_EQ(growth.kinds.size(), 1);
  EXPECT_EQ(growth.kinds[0].bytes, 600);
}

TEST_F(SnapshotStoreTest, claimsNoGrowthOfFoldersThatWereTooSmallToRemember) {
  std::vector<Entry> entries;
  for (std::size_t i = 0; i < foldersRemembered + 500; ++i) entries.push_back({fmt::format("f{}", i), 1000});
  const auto then = snapshotOf(mapOf(entries), now);
  EXPECT_EQ(then.folders.size(), foldersRemembered);
  EXPECT_EQ(then.left, 1000);
  entries.back().bytes = 1500;
  entries[entries.size() - 2].bytes = 900;
  const auto map = mapOf(entries);
  const auto growth = growthSince(map, then).value();
  EXPECT_EQ(growth.byFolder[entries.size()], 500);
  EXPECT_EQ(growth.byFolder[entries.size() - 1], std::nullopt);
}

TEST_F(SnapshotStoreTest, passesOverDatesFromBeforeTheClockWasSetBack) {
  store.setOn(true);
  add(store, mapOf({{"a", 5}}), now + 400 * day);
  add(store, mapOf({{"a", 6}}), now);
  const auto moments = store.moments(now + day);
  ASSERT_EQ(moments.size(), 1);
  EXPECT_EQ(moments[0].diskBytes, 6);
  EXPECT_EQ(store.moments(now + 401 * day).size(), 2);
}

TEST_F(SnapshotStoreTest, setsADamagedDatabaseAsideAndBeginsANewOne) {
  store.setOn(true);
  tree.file("data/orvane/map.db", std::string(20'000, 'z'));
  add(store, mapOf({{"a", 5}}), now);
  EXPECT_EQ(store.moments(now).size(), 1);
  EXPECT_THAT(store.takeNotices(), ElementsAre(HasSubstr("are damaged and kept as")));
  EXPECT_EQ(filesBelow(tree.path("data")).size(), 2);
}

TEST_F(SnapshotStoreTest, leavesADatabaseOfAnotherVersionAlone) {
  store.setOn(true);
  tree.folder("data/orvane");
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
  sqlite3_exec(database, "CREATE TABLE snapshots(x); PRAGMA user_version=99", nullptr, nullptr, nullptr);
  sqlite3_close(database);
  const auto content = contentOf(path);
  add(store, mapOf({{"a", 5}}), now);
  EXPECT_THAT(store.moments(now), IsEmpty());
  EXPECT_THAT(store.takeNotices(), Each(HasSubstr("another version")));
  EXPECT_EQ(contentOf(path), content);
}

TEST_F(SnapshotStoreTest, refusesToFollowALinkAtItsPlace) {
  store.setOn(true);
  const auto other = tree.file("other", "");
  tree.link("data/orvane/map.db", other);
  add(store, mapOf({{"a", 5}}), now);
  EXPECT_EQ(contentOf(other), "");
  EXPECT_EQ(store.takeNotices().size(), 1);
}

TEST(SnapshotForm, refusesTextThatIsNone) {
  MapSnapshot given;
  given.root = "/r";
  given.folders = {{"/r", 9}, {"/r/a", 5}, {"/r/a/b", 300}};
  const auto packed = packedFolders(given);
  std::mt19937 random(7);
  for (int i = 0; i < 2000; ++i) {
    auto text = packed;
    text[random() % text.size()] = static_cast<char>(random());
    text.resize(random() % (text.size() + 1));
    MapSnapshot read;
    read.root = "/r";
    if (!unpackFolders(text, read)) {
      EXPECT_TRUE(read.folders.empty());
    }
  }
}

TEST(DaysUntilFull, followTheRateOfTwoWeeks) {
  const auto now = dateFromUnix(1'790'000'000);
  // free bytes by days ago, free bytes now, days left
  const Rows<const char*, std::vector<std::pair<int, std::int64_t>>, std::int64_t, std::optional<double>> rows{
      {"steady", {{10, 1000}}, 500, 10.0},
      {"slow", {{10, 1000}}, 900, std::nullopt},
      {"freed", {{10, 1000}}, 2000, std::nullopt},
      {"older ones do not count", {{40, 9000}, {5, 1000}}, 990, std::nullopt},
      {"too fresh", {{0, 1000}}, 500, std::nullopt},
      {"nothing known", {}, 500, std::nullopt},
      {"free was not told", {{12, -1}, {4, 800}}, 400, 4.0},
  };
  for (const auto& [name, freeByDaysAgo, freeNow, days] : rows) {
    std::vector<MapMoment> moments;
    for (const auto& [ago, bytes] : freeByDaysAgo) {
      moments.push_back({.id = 1, .taken = now - ago * day, .root = "/home/you", .freeBytes = bytes});
    }
    EXPECT_EQ(daysUntilFull(moments, "/home/you", freeNow, now), days) << name;
  }
}

}  // namespace
}  // namespace orvane::test
