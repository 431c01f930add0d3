#include "core/duplicates/DuplicateFinderEngine.h"
#include "core/duplicates/HashUtility.h"
#include "core/safety/rules/PathValidator.h"
#include "platform/linux/LinuxFileStatusReader.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

using Sets = std::set<std::set<std::string>>;

// Reads the true status, and then lets something happen to the file.
class MeddlingStatusReader : public FileStatusReader {
 public:
  [[nodiscard]] std::optional<FileStatus> read(int folder, const char* name) const noexcept override {
    const auto status = m_reader.read(folder, name);
    if (afterwards) afterwards(name);
    return status;
  }
  std::function<void(const std::string& name)> afterwards;

 private:
  LinuxFileStatusReader m_reader;
};

class DuplicateFinder : public testing::Test {
 public:
  std::vector<DuplicateGroup> find(const std::vector<std::string>& roots = {""},
                                   DuplicateKeepStrategy strategy = DuplicateKeepStrategy::keepOldest) {
    std::vector<FileUrl> folders;
    for (const auto& root : roots) folders.push_back(tree.url(root));
    return engine.findDuplicates(folders, strategy);
  }
  // Paths below the tree.
  std::vector<std::string> pathsOf(const DuplicateGroup& group) {
    std::vector<std::string> result;
    for (const auto& item : group.items) result.push_back(item.url().path().substr(tree.path().size() + 1));
    return result;
  }
  Sets setsOf(const std::vector<DuplicateGroup>& groups) {
    Sets result;
    for (const auto& group : groups) {
      const auto paths = pathsOf(group);
      result.emplace(paths.begin(), paths.end());
    }
    return result;
  }
  TemporaryTree tree;
  PathValidator validator{tree.path()};
  MeddlingStatusReader statusReader;
  DuplicateFinderEngine engine{validator, statusReader};
};

TEST_F(DuplicateFinder, describesEachCopy) {
  const auto first = tree.file("one/same.txt", "hello");
  setAge(first, 1000);
  tree.file("one/other.txt", "hallo");
  tree.file("two/same copy.txt", "hello");
  const auto groups = find();
  ASSERT_EQ(groups.size(), 1U);
  EXPECT_EQ(groups[0].fileSize, 5);
  EXPECT_EQ(groups[0].hash, *HashUtility::computeFullHash(FileUrl(first)));
  EXPECT_THAT(pathsOf(groups[0]), UnorderedElementsAre("one/same.txt", "two/same copy.txt"));
  for (const auto& item : groups[0].items) {
    const auto status = *LinuxFileStatusReader().read(AT_FDCWD, item.url().path().c_str());
    EXPECT_EQ(item.relativePath(), item.url().lastPathComponent());
    EXPECT_EQ(item.fileSize(), 5);
    EXPECT_EQ(item.createdDate(), status.created->date());
    EXPECT_EQ(item.lastModifiedDate(), status.modified.date());
    EXPECT_EQ(item.lastOpenedDate(), std::nullopt);
    EXPECT_EQ(item.category(), ScanCategory::duplicates);
    EXPECT_EQ(item.riskLabel(), RiskLabel::review);
    EXPECT_FALSE(item.isCloudPlaceholder());
  }
}

TEST_F(DuplicateFinder, ordersByWastedBytesAndThenByDiscovery) {
  for (const char* name : {"big/a1", "big/a2"}) tree.sparseFile(name, 10'000'000);
  for (const char* name : {"b1", "b2", "b3", "b4", "b5"}) tree.sparseFile(name, 1'000'000);
  for (const char* name : {"d/c1", "d/c2", "d/c3", "d/c4", "d/c5"}) tree.file(name, std::string(1'000'000, 'c'));
  const auto groups = find();
  ASSERT_EQ(groups.size(), 3U);
  EXPECT_EQ(groups[0].selectedWastedBytes(), 10'000'000);
  EXPECT_EQ(groups[1].items[0].relativePath().substr(0, 1), "b");
  EXPECT_EQ(groups[2].items[0].relativePath().substr(0, 1), "c");
}

TEST_F(DuplicateFinder, searchesWhereItIsTold) {
  const std::map<bool, std::vector<std::string>> placesBySearched{
      {true,
       {"plain/deep/er/file", "Node_Modules/file", "vendors/file", "vendor", "Library/Caches/file", "\xFF\xFE name"}},
      {false,
       {".hidden", ".hidden folder/file", "node_modules/file", "a/Pods/b/file", "DerivedData/file", "venv/file",
        "vendor/file", ".git/file", "My.photoslibrary/file", "Some.app/Contents/file", ".photo.jpg.icloud",
        "two..dots"}},
  };
  int number = 0;
  for (const auto& [isSearched, places] : placesBySearched) {
    for (const auto& place : places) {
      const auto root = "root" + std::to_string(++number);
      tree.file(root + "/reference", "content");
      tree.file(root + "/" + place, "content");
      EXPECT_EQ(find({root}).size(), isSearched ? 1U : 0U) << place;
    }
  }
}

TEST_F(DuplicateFinder, skipsRootsOfCachesAndDevelopers) {
  for (const char* folder : {"Library/Caches", "Library/Developer/x", "Library/Other", "Music"}) {
    tree.file(std::string(folder) + "/a", folder);
    tree.file(std::string(folder) + "/b", folder);
  }
  EXPECT_EQ(setsOf(find({"Library/Caches", "Library/Developer/x", "Library/Other", "missing", "Music"})),
            (Sets{{"Library/Other/a", "Library/Other/b"}, {"Music/a", "Music/b"}}));
  EXPECT_THAT(engine.findDuplicates({FileUrl(), tree.url("Music/a")}, DuplicateKeepStrategy::keepOldest), IsEmpty());
}

TEST_F(DuplicateFinder, takesOneFileForOneHoweverOftenItIsListed) {
  const auto file = tree.file("a/file", "content");
  fs::create_hard_link(file, tree.path("a/second name"));
  tree.link("a/link", "file");
  tree.link("link to folder", "a");
  EXPECT_THAT(find({"", "a", "a", "link to folder"}), IsEmpty());
  tree.file("b/copy", "content");
  const auto groups = find({"b", "", "a"});
  ASSERT_EQ(groups.size(), 1U);
  EXPECT_EQ(groups[0].items.size(), 2U);
  EXPECT_EQ(pathsOf(groups[0])[0], "b/copy");
}

TEST_F(DuplicateFinder, isNotHeldUpByWhatIsNoFileOrEmpty) {
  tree.pipe("pipe");
  tree.pipe("pipe2");
  for (const auto* name : {"empty", "empty too"}) tree.file(name, "");
  for (const auto* name : {"a", "b"}) tree.file(name, "x");
  EXPECT_EQ(setsOf(find()), (Sets{{"a", "b"}}));
}

TEST_F(DuplicateFinder, findsManyFilesThatDifferLate) {
  constexpr int count = 300;
  const std::string beginning(17'000, 'x');
  for (int i = 0; i < count; ++i) tree.file("file " + std::to_string(i), beginning + std::to_string(1000 + i / 3));
  const auto groups = find();
  EXPECT_EQ(groups.size(), count / 3U);
  for (const auto& group : groups) EXPECT_EQ(group.items.size(), 3U);
}

TEST_F(DuplicateFinder, leavesOutAFileThatChangesDuringTheSearch) {
  const Rows<const char*, void (*)(const std::string& path)> changes{
      {"shrinks", [](const std::string& path) { fs::resize_file(path, 10); }},
      {"grows", [](const std::string& path) { std::ofstream(path, std::ios::app) << "more"; }},
      {"vanishes", [](const std::string& path) { fs::remove(path); }},
      {"becomes another",
       [](const std::string& path) {
         std::ofstream(path + ".new") << std::string(fs::file_size(path), 'o');
         fs::rename(path + ".new", path);
       }},
      {"becomes a pipe",
       [](const std::string& path) {
         fs::remove(path);
         ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
       }},
      {"becomes a link",
       [](const std::string& path) {
         fs::rename(path, path + ".moved");
         fs::create_symlink(path + ".moved", path);
       }},
  };
  for (const auto& row : changes) {
    SCOPED_TRACE(std::get<0>(row));
    fs::remove_all(tree.path("root"));
    for (const std::string name : {"s1", "s2", "changing small"}) tree.file("root/" + name, std::string(1000, 's'));
    for (const std::string name : {"l1", "l2", "changing large"}) tree.file("root/" + name, std::string(100'000, 'l'));
    statusReader.afterwards = [&](const std::string& name) {
      if (name.starts_with("changing")) std::get<1>(row)(tree.path("root/" + name));
    };
    EXPECT_EQ(setsOf(find({"root"})), (Sets{{"root/s1", "root/s2"}, {"root/l1", "root/l2"}}));
  }
}

constexpr std::int64_t terabyte = 1'000'000'000'000;

TEST_F(DuplicateFinder, tellsHugeFilesOfNothingApartWithoutReadingThem) {
  tree.sparseFile("middle", terabyte);
  writeAt(tree.path("middle"), terabyte / 2, "x");
  tree.sparseFile("end", terabyte);
  writeAt(tree.path("end"), terabyte - 1, "x");
  tree.sparseFile("nothing", terabyte);
  EXPECT_THAT(find(), IsEmpty());
}

TEST_F(DuplicateFinder, comparesHolesWithZeros) {
  constexpr std::int64_t size = 3'000'000;
  const std::string content = std::string(1'000'000, '\0') + "data" + std::string(size - 1'000'004, '\0');
  tree.file("written", content);
  tree.sparseFile("sparse", size);
  writeAt(tree.path("sparse"), 1'000'000, "data");
  tree.sparseFile("empty", size);
  const auto groups = find();
  EXPECT_EQ(setsOf(groups), (Sets{{"written", "sparse"}}));
  EXPECT_EQ(groups.at(0).hash, *HashUtility::computeFullHash(tree.url("written")));
}

TEST_F(DuplicateFinder, comesToNothingWhenStopped) {
  tree.file("a", "x");
  tree.file("b", "x");
  EXPECT_THAT(engine.findDuplicates({tree.url()}, DuplicateKeepStrategy::keepOldest, stopped()), IsEmpty());

  // A digest of terabytes takes longer than anybody waits.
  tree.sparseFile("one", terabyte);
  tree.sparseFile("two", terabyte);
  std::stop_source source;
  DuplicateProgress last;
  const auto groups =
      engine.findDuplicates({tree.url()}, DuplicateKeepStrategy::keepOldest, source.get_token(), [&](const auto& told) {
        last = told;
        if (told.stage == DuplicateProgress::Stage::comparingContents) source.request_stop();
      });
  EXPECT_THAT(groups, IsEmpty());
  EXPECT_EQ(last.filesFound, 4);
  EXPECT_EQ(last.filesLeft, 2);
  EXPECT_GT(last.bytesLeft, 0);
}

// Files of few sizes with few contents each, which differ at places where a shortcut would not look.
class Corpus : public DuplicateFinder, public testing::WithParamInterface<unsigned> {
 public:
  void make() {
    std::mt19937 random(GetParam());
    const auto below = [&](std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random); };
    const std::vector<std::size_t> sizes{1, 2, 4096, 16384, 16385, 32768, 32769, 131072, 131073, 300'000};
    for (int i = 0; i < 400; ++i) {
      const auto size = sizes[below(sizes.size())];
      std::string content(size, 'a');
      const std::vector<std::size_t> places{0, size - 1, size / 2, size / 3, std::min<std::size_t>(16384, size - 1)};
      if (below(3) != 0) content[places[below(places.size())]] = static_cast<char>('b' + below(2));
      const auto path = tree.file(
          "f" + std::to_string(below(5)) + "/g" + std::to_string(below(5)) + "/" + std::to_string(i), content);
      if (below(10) == 0) fs::create_hard_link(path, path + " link");
    }
  }
  // The files that a set of names means. Of two names of one file only one counts, and each program says which.
  void add(const std::set<std::string>& names, Sets& sets) const {
    std::set<std::string> files;
    for (const auto& name : names) files.insert(std::to_string(statusOf(name).st_ino));
    if (files.size() > 1) sets.insert(files);
  }
};

TEST_P(Corpus, hasTheSameSetsAsForJdupes) {
  make();
  const auto result = runProgram({"jdupes", "-q", "-r", tree.path()});
  ASSERT_EQ(result.exitStatus, 0) << result.errors;
  Sets theirs;
  std::set<std::string> set;
  std::istringstream lines(result.output + "\n\n");
  for (std::string line; std::getline(lines, line);) {
    if (line.empty()) {
      add(std::exchange(set, {}), theirs);
    } else {
      set.insert(line);
    }
  }
  Sets own;
  for (const auto& group : find()) {
    std::set<std::string> names;
    for (const auto& item : group.items) names.insert(item.url().path());
    add(names, own);
  }
  ASSERT_GT(theirs.size(), 10U);
  EXPECT_EQ(own, theirs);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Corpus, Values(1U, 2U, 3U));

}  // namespace
}  // namespace orvane::test
