#include "core/scanning/scan/StorageScanner.h"

#include "core/base/files/PathText.h"
#include "core/safety/rules/PathValidator.h"
#include "platform/linux/LinuxFileStatusReader.h"
#include "tests/support/TemporaryTree.h"

#include <mutex>

namespace orvane::test {
namespace {

// The events of a whole scan.
struct Result {
  std::vector<ScanEvent> events;

  [[nodiscard]] std::vector<FileItem> items() const {
    std::vector<FileItem> found;
    for (const auto& event : events) {
      if (const auto* item = std::get_if<FileItem>(&event)) found.push_back(*item);
    }
    return found;
  }
  [[nodiscard]] std::vector<std::string> relativePaths() const {
    std::vector<std::string> found;
    for (const auto& item : items()) found.emplace_back(item.relativePath());
    return found;
  }
  [[nodiscard]] FileItem item(std::string_view relativePath) const {
    for (auto& item : items()) {
      if (item.relativePath() == relativePath) return item;
    }
    throw std::runtime_error("not found: " + std::string(relativePath));
  }
};

class StorageScannerTest : public testing::Test {
 protected:
  [[nodiscard]] ScanStream start(const std::vector<FileUrl>& folders,
                                 DeveloperCaches developerCaches = DeveloperCaches::leaveOut) {
    return m_scanner.scan(folders, developerCaches);
  }
  [[nodiscard]] Result scan(const std::vector<FileUrl>& folders,
                            DeveloperCaches developerCaches = DeveloperCaches::leaveOut) {
    auto stream = start(folders, developerCaches);
    Result result;
    for (auto batch = stream.nextBatch(); !batch.empty(); batch = stream.nextBatch()) {
      std::move(batch.begin(), batch.end(), std::back_inserter(result.events));
    }
    return result;
  }
  [[nodiscard]] Result scanHome(DeveloperCaches developerCaches = DeveloperCaches::leaveOut) {
    return scan({m_tree.url("home")}, developerCaches);
  }

  TemporaryTree m_tree;
  PathValidator m_validator{m_tree.path("home")};
  LinuxFileStatusReader m_reader;
  StorageScanner m_scanner{m_validator, m_reader};
};

TEST_F(StorageScannerTest, listsFilesWithEverythingKnownOfThem) {
  const auto path = m_tree.sparseFile("home/Downloads/setup.dmg", 5000);
  setAge(path, 3600);
  const auto result = scanHome();
  ASSERT_EQ(result.items().size(), 1U);
  const auto item = result.items().front();
  EXPECT_EQ(item.url().path(), path);
  EXPECT_EQ(item.relativePath(), "Downloads/setup.dmg");
  EXPECT_EQ(item.fileSize(), 5000);
  EXPECT_EQ(item.category(), ScanCategory::oldDownloads);
  EXPECT_EQ(item.riskLabel(), RiskLabel::review);
  EXPECT_FALSE(item.isSelected());
  EXPECT_FALSE(item.isCloudPlaceholder());
  const auto now = ReferenceClock::now();
  EXPECT_NEAR((now - item.lastModifiedDate()).count(), 3600, 60);
  EXPECT_NEAR((now - item.lastOpenedDate().value()).count(), 3600, 60);
  EXPECT_NEAR((now - item.createdDate()).count(), 0, 60);
  EXPECT_EQ(result.events.back(), ScanEvent(ScanCompleted{1, 5000}));
}

TEST_F(StorageScannerTest, findsNothingWhereThereIsNothing) {
  const auto file = m_tree.file("home/file");
  EXPECT_THAT(scan({m_tree.url("home/missing"), FileUrl(file), FileUrl()}).events,
              ElementsAre(ScanEvent(ScanCompleted{0, 0})));
  EXPECT_THAT(scan({}).events, ElementsAre(ScanEvent(ScanCompleted{0, 0})));
}

TEST_F(StorageScannerTest, leavesOutWhatIsHiddenBundledOrBulk) {
  for (const char* path : {"project/node_modules/a/b.js", "project/vendor/x", "project/Pods/x", "project/venv/x",
                           ".hidden/x", ".hiddenFile", "My.app/Contents/x", "Pictures/Lib.PHOTOSLIBRARY/x", "kept/x"}) {
    m_tree.file("home/" + std::string(path));
  }
  EXPECT_THAT(scanHome().relativePaths(), ElementsAre("kept/x"));
}

TEST_F(StorageScannerTest, leavesOutWhatIsProtected) {
  for (const char* path :
       {"Library/Mail/x", "Library/Mailbox/x", "a..b/x", "a..b.txt", "Pictures/odd \xff\xfe\n name"}) {
    m_tree.file("home/" + std::string(path));
  }
  EXPECT_THAT(scanHome().relativePaths(), UnorderedElementsAre("Library/Mailbox/x", "Pictures/odd \xff\xfe\n name"));
  // The home folder is refused as a target, what it holds is not.
  EXPECT_THAT(scan({m_tree.url()}).relativePaths(),
              UnorderedElementsAre("home/Library/Mailbox/x", "home/Pictures/odd \xff\xfe\n name"));
}

TEST_F(StorageScannerTest, reportsCacheFoldersAsAWhole) {
  const Rows<const char*, std::int64_t> sizes{{"org.app/deep/a", 1000}, {"org.app/.hidden", 1000}, {"org.app/b", 500},
                                              {"Google/c", 70},         {"Bundle.app/d", 3},       {"loose", 9}};
  for (const auto& [path, size] : sizes) m_tree.sparseFile("home/Library/Caches/" + std::string(path), size);
  m_tree.sparseFile("home/project/Caches/x/e", 9);
  setAge(m_tree.path("home/Library/Caches/org.app"), 86400);
  const auto result = scanHome();
  EXPECT_THAT(result.relativePaths(),
              UnorderedElementsAre("Library/Caches/org.app", "Library/Caches/Google", "Library/Caches/Bundle.app",
                                   "Library/Caches/loose", "project/Caches/x/e"));
  const auto app = result.item("Library/Caches/org.app");
  EXPECT_EQ(app.fileSize(), 1500);
  EXPECT_EQ(app.category(), ScanCategory::caches);
  EXPECT_TRUE(app.isSelected());
  EXPECT_NEAR((ReferenceClock::now() - app.lastModifiedDate()).count(), 86400, 60);
  EXPECT_EQ(result.item("Library/Caches/Google").category(), ScanCategory::browserCaches);
  EXPECT_EQ(result.events.back(), ScanEvent(ScanCompleted{5, 1500 + 70 + 3 + 9 + 9}));
}

TEST_F(StorageScannerTest, reportsDeveloperCachesOnlyWhenAsked) {
  m_tree.sparseFile("home/Library/Developer/Xcode/DerivedData/App/x", 10);
  m_tree.sparseFile("home/Library/Developer/CoreSimulator/Caches/dyld/x", 20);
  m_tree.sparseFile("home/Library/Developer/Xcode/UserData/x", 30);
  EXPECT_THAT(scanHome().relativePaths(), ElementsAre("Library/Developer/Xcode/UserData/x"));
  const auto result = scanHome(DeveloperCaches::include);
  // A folder of build products is never entered, wanted or not: its name decides first.
  EXPECT_THAT(result.relativePaths(),
              UnorderedElementsAre("Library/Developer/Xcode/UserData/x", "Library/Developer/CoreSimulator/Caches"));
  const auto caches = result.item("Library/Developer/CoreSimulator/Caches");
  EXPECT_EQ(caches.fileSize(), 20);
  EXPECT_EQ(caches.category(), ScanCategory::developerCaches);
  const auto below = scan({m_tree.url("home/Library/Developer/Xcode/DerivedData")}, DeveloperCaches::include);
  EXPECT_THAT(below.relativePaths(), ElementsAre("App"));
}

TEST_F(StorageScannerTest, neverFollowsLinksButListsThoseThatStayInside) {
  m_tree.file("home/real/file");
  m_tree.file("other/secret");
  m_tree.link("home/inside", m_tree.path("home/real"));
  m_tree.link("home/outside", m_tree.path("other"));
  m_tree.link("home/hosts", "/etc/hosts");
  m_tree.link("home/dangling", "nothing");
  m_tree.link("home/loop", "loop");
  m_tree.link("home/real/up", "..");
  const auto result = scanHome();
  EXPECT_THAT(result.relativePaths(), UnorderedElementsAre("real/file", "inside", "dangling", "loop"));
  EXPECT_EQ(result.item("inside").fileSize(), static_cast<std::int64_t>(m_tree.path("home/real").size()));
}

TEST_F(StorageScannerTest, scansARootThatIsALinkUnderItsOwnName) {
  m_tree.file("data/Caches/x");
  m_tree.link("home/granted", m_tree.path("data"));
  const auto item = scan({m_tree.url("home/granted")}).items().at(0);
  EXPECT_EQ(item.url(), m_tree.url("home/granted/Caches/x"));
  EXPECT_EQ(item.relativePath(), "Caches/x");
}

TEST_F(StorageScannerTest, skipsSpecialFilesButCountsThem) {
  m_tree.folder("home");
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(::mkfifo(m_tree.path("home/pipe" + std::to_string(i)).c_str(), 0600), 0);
  }
  const auto result = scanHome();
  ASSERT_EQ(result.events.size(), 2U);
  EXPECT_EQ(std::get<ScanProgress>(result.events[0]).itemsScanned, 100);
  EXPECT_THAT(std::get<ScanProgress>(result.events[0]).currentPath, StartsWith("pipe"));
}

TEST_F(StorageScannerTest, goesThroughRootsInOrderAndFoldersDepthFirst) {
  m_tree.files({"home/b/2/x", "home/b/1/y", "home/b/z", "home/a/w"});
  const auto result = scan({m_tree.url("home/b"), m_tree.url("home/a"), m_tree.url("home/b/1")});
  const auto paths = result.relativePaths();
  ASSERT_EQ(paths.size(), 5U);
  EXPECT_EQ(paths[0], "z");
  EXPECT_THAT(std::vector(paths.begin() + 1, paths.begin() + 3), UnorderedElementsAre("2/x", "1/y"));
  EXPECT_EQ(paths[3], "w");
  EXPECT_EQ(paths[4], "y");
}

// Every folder's findings stand together and directly before those of its subfolders, and the figures add up.
void expectConsistent(const Result& result, std::int64_t examined) {
  std::set<std::string> left;
  std::vector<std::string> open;
  std::int64_t items = 0;
  std::int64_t bytes = 0;
  std::int64_t lastProgress = 0;
  for (const auto& event : result.events) {
    if (const auto* item = std::get_if<FileItem>(&event)) {
      ++items;
      bytes += item->fileSize();
      const std::string folder(parentPath(item->url().path()));
      while (!open.empty() && !isSameOrInside(folder, open.back())) {
        left.insert(open.back());
        open.pop_back();
      }
      EXPECT_FALSE(left.contains(folder)) << folder;
      if (open.empty() || open.back() != folder) open.push_back(folder);
    } else if (const auto* progress = std::get_if<ScanProgress>(&event)) {
      EXPECT_EQ(progress->itemsScanned, lastProgress + 100);
      EXPECT_EQ(progress->bytesFound, bytes);
      lastProgress = progress->itemsScanned;
    }
  }
  EXPECT_EQ(lastProgress, examined / 100 * 100);
  EXPECT_EQ(result.events.back(), ScanEvent(ScanCompleted{items, bytes}));
}

TEST_F(StorageScannerTest, streamsABigTreeInOneOrderWithExactFigures) {
  std::int64_t entries = 0;
  for (int i = 0; i < 40; ++i) {
    const std::string folder = "home/" + std::to_string(i % 7) + "/f" + std::to_string(i);
    for (int j = 0; j < 30 + i; ++j, ++entries) {
      m_tree.sparseFile(folder + "/deep/file" + std::to_string(j), j);
    }
    entries += 2;  // the folder and the one inside
  }
  entries += 7;
  for (int i = 0; i < 2500; ++i, ++entries) m_tree.sparseFile("home/0/many" + std::to_string(i), 1);
  const auto result = scanHome();
  expectConsistent(result, entries);
  const auto again = scanHome();
  EXPECT_EQ(again.relativePaths(), result.relativePaths());
}

TEST_F(StorageScannerTest, showsEveryFindingToADigestBeforeItIsHandedOver) {
  for (int i = 0; i < 3000; ++i) m_tree.sparseFile("home/" + std::to_string(i % 9) + "/" + std::to_string(i), i);
  for (int i = 0; i < 1500; ++i) m_tree.sparseFile("home/8/big" + std::to_string(i), 1);
  m_tree.file("home/Library/Caches/app/file", "12345");
  const auto expected = scanHome();
  std::mutex mutex;
  std::vector<std::string> taken;
  const auto takeEven = [&](std::vector<ScanEvent>& findings) {
    const std::lock_guard lock(mutex);
    std::erase_if(findings, [&](const ScanEvent& event) {
      const auto& item = std::get<FileItem>(event);
      if (item.fileSize() % 2 != 0) return false;
      taken.emplace_back(item.relativePath());
      return true;
    });
  };
  Result rest;
  auto stream = m_scanner.scan({m_tree.url("home")}, DeveloperCaches::leaveOut, takeEven);
  for (auto batch = stream.nextBatch(); !batch.empty(); batch = stream.nextBatch()) {
    std::ranges::move(batch, std::back_inserter(rest.events));
  }
  EXPECT_EQ(taken.size(), 1500U);
  for (const auto& path : rest.relativePaths()) taken.push_back(path);
  EXPECT_THAT(taken, testing::UnorderedElementsAreArray(expected.relativePaths()));
  EXPECT_EQ(rest.events.back(), expected.events.back());
  std::vector<std::int64_t> scanned;
  for (const auto& event : rest.events) {
    if (const auto* progress = std::get_if<ScanProgress>(&event)) scanned.push_back(progress->itemsScanned);
  }
  EXPECT_EQ(scanned.size(), 45U);
  EXPECT_TRUE(std::ranges::is_sorted(scanned));
  EXPECT_EQ(scanned.back(), 4500);
}

TEST_F(StorageScannerTest, endsWithCancelledWhenStoppedAlsoByAnotherThread) {
  for (int i = 0; i < 1500; ++i) m_tree.file("home/" + std::to_string(i % 50) + "/" + std::to_string(i));
  auto stream = start({m_tree.url("home")});
  ASSERT_FALSE(stream.nextBatch().empty());
  stream.cancel();
  EXPECT_THAT(stream.nextBatch(), ElementsAre(ScanEvent(ScanCancelled{})));
  EXPECT_THAT(stream.nextBatch(), IsEmpty());
  for (int round = 0; round < 20; ++round) {
    auto beside = start({m_tree.url("home")});
    const std::jthread canceller([&] { beside.cancel(); });
    ScanEvent last;
    for (auto batch = beside.nextBatch(); !batch.empty(); batch = beside.nextBatch()) last = batch.back();
    EXPECT_TRUE(std::holds_alternative<ScanCancelled>(last) || std::holds_alternative<ScanCompleted>(last));
    // One that is dropped stops.
    auto dropped = start({m_tree.url("home")});
    if (round % 2 == 0) {
      EXPECT_FALSE(dropped.nextBatch().empty());
    }
  }
}

// Makes nested folders whose path no single call accepts, two at each level so that some wait while others are read.
void makeDeepTree(const std::string& top, int depth) {
  FileDescriptor folder(::open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const std::string name(120, 'd');
  for (int i = 0; i < depth; ++i) {
    EXPECT_EQ(::mkdirat(folder.get(), "side", 0755), 0);
    const FileDescriptor side(::openat(folder.get(), "side", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const FileDescriptor file(::openat(side.get(), "file", O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    writeAll(file.get(), "seven b");
    EXPECT_EQ(::mkdirat(folder.get(), name.c_str(), 0755), 0);
    folder = FileDescriptor(::openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  }
}

TEST_F(StorageScannerTest, goesDeeperThanAPathMayBeLongAndEndsWhereDecidingFromPathsWouldTakeForEver) {
  for (const int depth : {200, 400}) {
    m_tree.folder("home/deep");
    makeDeepTree(m_tree.path("home/deep"), depth);
    const auto events = scanHome().events;
    const auto* end = std::get_if<ScanCompleted>(&events.back());
    ASSERT_NE(end, nullptr);
    if (depth == 200) {
      EXPECT_EQ(*end, (ScanCompleted{depth, depth * 7}));
    } else {
      EXPECT_GT(end->totalItems, 200);
      EXPECT_LT(end->totalItems, depth);
    }
    EXPECT_EQ(StorageScanner::fastFolderSize(m_tree.path("home/deep")), depth * 7) << "whole folders at any depth";
    fs::remove_all(m_tree.path("home/deep"));
  }
}

TEST(FastFolderSize, countsVisibleRegularFilesOnly) {
  const TemporaryTree tree;
  const Rows<const char*, std::int64_t> sizes{{"a", 100}, {"deep/er/b", 20}, {"My.app/c", 3}, {"vendor/d", 4}};
  for (const auto& [path, size] : sizes) tree.sparseFile("top/" + std::string(path), size);
  for (const char* path : {".hidden", ".folder/x", "node_modules/x", "Pods/x", "deep/Lib.photoslibrary/x"}) {
    tree.sparseFile("top/" + std::string(path), 100'000);
  }
  tree.sparseFile("outside/x", 100'000);
  tree.link("top/link", tree.path("outside"));
  tree.link("top/fileLink", tree.path("outside/x"));
  EXPECT_EQ(StorageScanner::fastFolderSize(tree.path("top")), 127);
  // The folder asked for is opened whatever its name.
  EXPECT_EQ(StorageScanner::fastFolderSize(tree.path("top/node_modules")), 100'000);
  tree.link("toTop", tree.path("top"));
  EXPECT_EQ(StorageScanner::fastFolderSize(tree.path("toTop")), 127);
  EXPECT_EQ(StorageScanner::fastFolderSize(tree.path("missing")), 0);
  EXPECT_EQ(StorageScanner::fastFolderSize(tree.path("top/a")), 0);
}

TEST(FastFolderSize, addsUpManyFoldersOnSeveralThreads) {
  const TemporaryTree tree;
  for (int i = 0; i < 300; ++i) tree.sparseFile(std::to_string(i % 10) + "/" + std::to_string(i) + "/x", i);
  EXPECT_EQ(StorageScanner::fastFolderSize(tree.path()), 300 * 299 / 2);
}

TEST(FastFolderSizeDeathTest, endsTheProcessOnOverflow) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  // The file systems of tests hold files of 8 exabytes seldom, so the sum is made of what they do hold.
  const TemporaryTree tree("/dev/shm");
  constexpr std::int64_t huge = INT64_MAX - 4096;
  const FileDescriptor probe(::open(tree.path("a").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
  if (::ftruncate(probe.get(), huge) != 0) GTEST_SKIP() << "no file system for files this large";
  tree.sparseFile("b", huge);
  EXPECT_DEATH(static_cast<void>(StorageScanner::fastFolderSize(tree.path())), "overflow");
}

}  // namespace
}  // namespace orvane::test
