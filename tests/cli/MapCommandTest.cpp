#include "tests/cli/OrvanectlFixture.h"
#include "tests/support/ChildProcess.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>

namespace orvane::test {
namespace {

class MapCommand : public Orvanectl {
 public:
  // Of `du`, which counts folders too; it reads as `user` does.
  [[nodiscard]] std::int64_t du(const Words& options, LiveProgram::User user = LiveProgram::User::own) const {
    auto program = setup({});
    program.arguments = joined(joined({"/usr/bin/du"}, options), {"-sxB1", home.path("tree")});
    program.user = user;
    std::int64_t bytes = -1;
    std::istringstream(LiveProgram(program).finish().output) >> bytes;
    return bytes;
  }
  void makeTree() const {
    home.file("tree/plain", std::string(100'000, 'x'));
    home.file("tree/empty", "");
    home.file("tree/.hidden/deep/in", std::string(5000, 'x'));
    home.file("tree/.git/objects/one", std::string(70'000, 'x'));
    home.sparseFile("tree/sparse", 50'000'000);
    home.file("tree/a/first", std::string(300'000, 'x'));
    home.folder("tree/b");
    for (const auto* name : {"tree/b/second", "tree/a/third"}) {
      std::filesystem::create_hard_link(home.path("tree/a/first"), home.path(name));
    }
    home.link("tree/short", "plain");
    home.link("tree/long", std::string(200, 'y'));
    home.link("tree/loop", "..");
    home.pipe("tree/pipe");
    for (int i = 0; i < 100; ++i) home.file("tree/many/" + std::to_string(i) + ".jpg", std::string(i * 100, 'x'));
    std::string deep = "tree";
    for (int i = 0; i < 60; ++i) deep += "/level";
    home.file(deep + "/bottom", "1");
  }
  static Json childNamed(const Json& folder, std::string_view name) {
    for (const auto& child : folder["children"]) {
      if (child["path"].get<std::string>().ends_with("/" + std::string(name))) return child;
    }
    return {};
  }
};

TEST_F(MapCommand, addsUpWhatDuAddsUp) {
  makeTree();
  const auto map = json({"map", "tree", "--depth", "0"});
  EXPECT_TRUE(tells(map, {{"path", home.path("tree")},
                          {"diskBytes", du({})},
                          {"logicalBytes", du({"--apparent-size"})},
                          {"files", 111},
                          {"state", "yours"}}));
  EXPECT_TRUE(map["children"].empty() && map["grownBytes"].is_null());
  EXPECT_TRUE(isUntouched());
}

TEST_F(MapCommand, showsEachFolderForWhatItIsAndCountsAFileOnceUnderTheFirst) {
  makeTree();
  home.file("tree/Library/Caches/app/data", std::string(90'000, 'x'));
  const auto map = json({"map", "tree", "--depth", "2"});
  EXPECT_EQ(childNamed(map, ".git")["state"], "protected");
  EXPECT_EQ(childNamed(map, "many")["state"], "yours");
  EXPECT_EQ(childNamed(childNamed(map, "Library"), "Caches")["state"], "reclaimable");
  EXPECT_EQ(childNamed(map, "a")["files"], 1);
  EXPECT_EQ(childNamed(map, "b")["files"], 0);
}

TEST_F(MapCommand, showsKnownPlacesInHiddenFoldersAsReclaimable) {
  for (const auto* file : {".cache/thumbnails/large/one.png", ".ssh/id_ed25519", ".config/program/settings",
                           ".config/Code/CachedData/1/.git/blob", ".local/share/Steam/logs/a",
                           ".local/share/Steam/userdata/1/save", ".local/share/Trash/files/old/a"}) {
    home.file(file, std::string(90'000, 'x'));
  }
  const auto map = json({"map", ".", "--depth", "6"});
  const auto stateOf = [&](const std::string& path) {
    auto folder = map;
    std::istringstream names(path);
    for (std::string name; std::getline(names, name, '/');) folder = childNamed(folder, name);
    return folder["state"];
  };
  for (const auto* place :
       {".cache/thumbnails", ".config/Code/CachedData", ".config/Code/CachedData/1/.git", ".local/share/Steam/logs"}) {
    EXPECT_EQ(stateOf(place), "reclaimable") << place;
  }
  for (const auto* place : {".ssh", ".config", ".config/program", ".local", ".local/share/Steam/userdata/1"}) {
    EXPECT_EQ(stateOf(place), "protected") << place;
  }
  EXPECT_EQ(stateOf(".local/share/Trash/files/old"), "yours") << "nothing frees it but the file manager";
}

TEST_F(MapCommand, countsFoldersThatMayNotBeReadAsUnknown) {
  if (::geteuid() != 0) GTEST_SKIP() << "becomes another user";
  makeTree();
  ASSERT_EQ(::chmod(home.path("tree/many").c_str(), 0700), 0);
  const auto map = parseJson(runAsNobody({"map", "tree", "--json"}).output);
  EXPECT_EQ(map["diskBytes"], du({}, LiveProgram::User::nobody));
  EXPECT_EQ(childNamed(map, "many")["state"], "unreadable");
  EXPECT_THAT(runAsNobody({"map", "tree"}).output, HasSubstr(" 1 could not be read: what they hold is unknown."));
}

TEST_F(MapCommand, namesTheLargestFoldersAndFilesFirst) {
  home.file("tree/small/a", std::string(10'000, 'x'));
  home.file("tree/large/film.mkv", std::string(900'000, 'x'));
  EXPECT_THAT(run({"map", "tree"}).output, testing::ContainsRegex("large/(.|\n)*small/(.|\n)*~/tree/large/film.mkv"));
}

TEST_F(MapCommand, refusesWithALine) {
  home.file("there");
  home.file("bad", "[1,2,{},[{\"name\":\"/");
  home.file("newer", "[2,0,{},[{\"name\":\"/\"}]]");
  for (const auto& [words, exitStatus, error] :
       Rows<Words, int, const char*>{{{"nope"}, 1, "No such file or directory"},
                                     {{"there"}, 1, "Not a directory"},
                                     {{"--depth", "x"}, 2, "--depth takes a number"},
                                     {{"--since", "2026-02-30"}, 2, "--since takes a date"},
                                     {{".", "--export", "there"}, 2, "it is there already"},
                                     {{".", "--import", "bad"}, 2, "takes no FOLDER"},
                                     {{"--import", "bad"}, 1, "ends early"},
                                     {{"--import", "newer"}, 1, "version"}}) {
    const auto result = run(joined({"map"}, words));
    EXPECT_THAT(result, Fails(exitStatus, error));
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(contentOf(home.path("there")), "content");
  }
}

TEST_F(MapCommand, exportsWhatNcduReadsAndImportsWhatNcduWrote) {
  if (::access("/usr/bin/ncdu", X_OK) != 0) GTEST_SKIP() << "ncdu is not installed";
  makeTree();
  home.file("tree/odd \"\\\n\x01\xFF name", std::string(20'000, 'x'));
  ASSERT_EQ(run({"map", "tree", "--export", "ours.json"}).exitStatus, 0);
  // ncdu writes again what it read of ours.
  ASSERT_EQ(runProgram({"/usr/bin/ncdu", "-f", home.path("ours.json"), "-o", home.path("again.json")}).exitStatus, 0);
  ASSERT_EQ(runProgram({"/usr/bin/ncdu", "-x", "-o", home.path("theirs.json"), home.path("tree")}).exitStatus, 0);
  const auto own = json({"map", "tree", "--depth", "3"});
  for (const auto* name : {"ours.json", "again.json", "theirs.json"}) {
    const auto map = json({"map", "--import", name, "--depth", "3"});
    for (const auto* key : {"path", "diskBytes", "logicalBytes"}) EXPECT_EQ(map[key], own[key]) << name << key;
    EXPECT_EQ(map["children"].size(), own["children"].size()) << name;
    EXPECT_EQ(childNamed(map, "many")["files"], 100) << name;
    // Each name of the file that has several.
    const auto text = contentOf(home.path(name));
    int names = 0;
    for (auto at = text.find("hlnkc"); at != std::string::npos; at = text.find("hlnkc", at + 1)) ++names;
    EXPECT_EQ(names, 3) << name;
  }
}

TEST_F(MapCommand, remembersNothingUntilAsked) {
  makeTree();
  EXPECT_EQ(run({"map", "tree"}).exitStatus, 0);
  EXPECT_EQ(json({"map", "snapshots"}), (Json{{"enabled", false}, {"snapshots", Json::array()}}));
  EXPECT_THAT(run({"map", "tree", "--since", "2026-01-01"}), Fails(1, "'orvanectl map snapshots on'"));
  EXPECT_TRUE(isUntouched());
}

TEST_F(MapCommand, tellsWhatGrewSinceASnapshot) {
  makeTree();
  ASSERT_EQ(run({"map", "snapshots", "on"}).exitStatus, 0);
  const auto before = json({"map", "tree"});
  home.file("tree/a/new.mkv", std::string(4'000'000, 'x'));
  const auto after = json({"map", "tree", "--since", "2100-01-01"});
  EXPECT_EQ(after["grownBytes"], after["diskBytes"].get<std::int64_t>() - before["diskBytes"].get<std::int64_t>());
  EXPECT_EQ(childNamed(after, "a")["grownBytes"], after["grownBytes"]);
  EXPECT_EQ(childNamed(after, "b")["grownBytes"], 0);
  // The folder inside was part of that snapshot; a folder outside was not.
  EXPECT_TRUE(json({"map", "tree/a", "--since", "2100-01-01"})["grownBytes"].is_number_integer());
  home.folder("other");
  EXPECT_EQ(run({"map", "other", "--since", "2100-01-01"}).exitStatus, 1);
  home.file("tree/a/newer.mkv", std::string(4'000'000, 'x'));
  home.file("tree/Library/Caches/one/data", std::string(700'000, 'x'));
  home.file("tree/Library/Caches/two/data", std::string(600'000, 'x'));
  home.file("tree/logs/old.log", std::string(90'000, 'x'));
  EXPECT_THAT(run({"map", "tree", "--since", "2000-01-01"}),
              Says("+4 MB ~/tree/a\n", "  +4 MB videos\n", "Most can go here:\n  1.3 MB ~/tree/Library\n"));
  const auto database = std::filesystem::status(home.path(".local/share/orvane/map.db"));
  EXPECT_EQ(database.permissions(), std::filesystem::perms(0600));
  ASSERT_EQ(run({"map", "snapshots", "clear"}).exitStatus, 0);
  EXPECT_TRUE(json({"map", "snapshots"})["snapshots"].empty());
  ASSERT_EQ(run({"map", "snapshots", "off"}).exitStatus, 0);
  EXPECT_EQ(run({"map", "tree"}).exitStatus, 0);
  EXPECT_TRUE(json({"map", "snapshots"})["snapshots"].empty());
}

TEST_F(MapCommand, goesOnWithoutADatabaseThatCannotBeUsed) {
  home.file("tree/in", "1");
  ASSERT_EQ(run({"map", "snapshots", "on"}).exitStatus, 0);
  home.file(".local/share/orvane/map.db", std::string(8192, 'z'));
  EXPECT_THAT(run({"map", "tree"}), Fails(0, "map.db' are damaged and kept as '"));
  EXPECT_EQ(json({"map", "snapshots"})["snapshots"].size(), 1);
}

}  // namespace
}  // namespace orvane::test
