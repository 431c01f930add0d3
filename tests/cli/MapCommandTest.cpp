#include "tests/cli/OrvanectlFixture.h"
#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>

namespace orvane::test {
namespace {

using testing::HasSubstr;

class MapCommand : public Orvanectl {
 public:
  // Of `du`, which counts folders too; it reads as `user` does.
  [[nodiscard]] std::int64_t du(Words options, LiveProgram::User user = LiveProgram::User::own,
                                const std::string& folder = "tree") const {
    LiveProgram::Setup setup{.arguments = {"/usr/bin/du"}, .environment = environment, .workingFolder = home.path()};
    setup.arguments.insert(setup.arguments.end(), options.begin(), options.end());
    setup.arguments.insert(setup.arguments.end(), {"-sxB1", home.path(folder)});
    setup.user = user;
    std::int64_t bytes = -1;
    std::istringstream(LiveProgram(setup).finish().output) >> bytes;
    return bytes;
  }
  // With the folders, which newer versions of `du` leave out.
  [[nodiscard]] std::int64_t apparentSize() const {
    const auto all = du({"--apparent-size"});
    std::int64_t folders = 0;
    const auto add = [&folders](const std::string& path) {
      struct stat status {};
      if (::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) folders += status.st_size;
    };
    add(home.path("tree"));
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path("tree"))) add(entry.path());
    home.folder("none");
    return du({"--apparent-size"}, LiveProgram::User::own, "none") > 0 ? all : all + folders;
  }
  void makeTree() const {
    home.file("tree/plain", std::string(100'000, 'x'));
    home.file("tree/empty", "");
    home.file("tree/.hidden/deep/in", std::string(5000, 'x'));
    home.file("tree/.git/objects/one", std::string(70'000, 'x'));
    home.sparseFile("tree/sparse", 50'000'000);
    home.file("tree/a/first", std::string(300'000, 'x'));
    home.folder("tree/b");
    ASSERT_EQ(::link(home.path("tree/a/first").c_str(), home.path("tree/b/second").c_str()), 0);
    ASSERT_EQ(::link(home.path("tree/a/first").c_str(), home.path("tree/a/third").c_str()), 0);
    home.link("tree/short", "plain");
    home.link("tree/long", std::string(200, 'y'));
    home.link("tree/loop", "..");
    ASSERT_EQ(::mkfifo(home.path("tree/pipe").c_str(), 0600), 0);
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
  EXPECT_EQ(map["diskBytes"], du({}));
  EXPECT_EQ(map["logicalBytes"], apparentSize());
  EXPECT_EQ(map["path"], home.path("tree"));
  EXPECT_EQ(map["state"], "yours");
  EXPECT_EQ(map["files"], 111);
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
  const auto output = run({"map", "tree"}).output;
  EXPECT_LT(output.find("large/"), output.find("small/"));
  EXPECT_THAT(output, HasSubstr("~/tree/large/film.mkv"));
}

TEST_F(MapCommand, refusesWithALine) {
  home.file("there");
  home.file("bad", "[1,2,{},[{\"name\":\"/");
  home.file("newer", "[2,0,{},[{\"name\":\"/\"}]]");
  using Refusal = std::tuple<const char*, Words, int, const char*>;
  for (const auto& [name, words, exitStatus, error] :
       {Refusal{"no such folder", {"map", "nope"}, 1, "No such file or directory"},
        Refusal{"a file", {"map", "there"}, 1, "Not a directory"},
        Refusal{"no depth", {"map", "--depth", "x"}, 2, "--depth takes a number"},
        Refusal{"no date", {"map", "--since", "2026-02-30"}, 2, "--since takes a date"},
        Refusal{"an export over a file", {"map", ".", "--export", "there"}, 2, "it is there already"},
        Refusal{"an import with a folder", {"map", ".", "--import", "bad"}, 2, "takes no FOLDER"},
        Refusal{"an import that is cut", {"map", "--import", "bad"}, 1, "ends early"},
        Refusal{"an import of another version", {"map", "--import", "newer"}, 1, "version"}}) {
    SCOPED_TRACE(name);
    const auto result = run(words);
    EXPECT_EQ(result.exitStatus, exitStatus);
    EXPECT_THAT(result.errors, HasSubstr(error));
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
  const auto result = run({"map", "tree", "--since", "2026-01-01"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.errors, HasSubstr("'orvanectl map snapshots on'"));
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
  const auto output = run({"map", "tree", "--since", "2000-01-01"}).output;
  EXPECT_THAT(output, HasSubstr("+4 MB ~/tree/a\n"));
  EXPECT_THAT(output, HasSubstr("  +4 MB videos\n"));
  EXPECT_THAT(output, HasSubstr("Most can go here:\n  1.3 MB ~/tree/Library\n"));
  const auto database = home.path(".local/share/orvane/map.db");
  struct stat status {};
  ASSERT_EQ(::stat(database.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600U);
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
  const auto result = run({"map", "tree"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.errors, HasSubstr("map.db' are damaged and kept as '"));
  EXPECT_EQ(json({"map", "snapshots"})["snapshots"].size(), 1);
}

}  // namespace
}  // namespace orvane::test
