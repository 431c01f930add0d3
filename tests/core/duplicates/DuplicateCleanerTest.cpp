#include "core/base/FileLock.h"
#include "core/duplicates/DuplicateCleaner.h"
#include "core/duplicates/DuplicateFinderEngine.h"
#include "platform/linux/LinuxFileStatusReader.h"
#include "tests/support/SafetyFixture.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <barrier>
#include <filesystem>
#include <random>
#include <set>
#include <thread>

namespace orvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class DuplicateCleaning : public SafetyFixture {
 public:
  std::string file(std::string_view name, std::string_view content = "content") const {
    return tree.file("Downloads/" + std::string(name), content);
  }
  std::vector<DuplicateGroup> find(DuplicateKeepStrategy strategy = DuplicateKeepStrategy::keepShortestPath) {
    return engine.findDuplicates({tree.url("Downloads")}, strategy);
  }
  DuplicateCleanup clean(const std::vector<DuplicateGroup>& groups) {
    return DuplicateCleaner(mover, *journal).clean(groups, roots());
  }
  // Of the files in ~/Downloads; what is in the Trash does not count.
  std::multiset<std::string> contents() const {
    std::multiset<std::string> result;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(tree.path("Downloads"))) {
      if (entry.is_regular_file() && !entry.is_symlink()) result.insert(contentOf(entry.path()));
    }
    return result;
  }

  LinuxFileStatusReader statusReader;
  DuplicateFinderEngine engine{validator, statusReader};
};

TEST_F(DuplicateCleaning, movesCopiesAsOneRunThatComesBack) {
  file("a");
  const auto copy = file("copy of a");
  const auto other = file("sub/copy of a");
  const auto groups = find();
  const auto result = clean(groups);
  EXPECT_EQ(result.filesMoved, 2);
  EXPECT_EQ(result.bytesFreed, 14);
  EXPECT_EQ(result.closingText(), "Cleaned 2 duplicate files, freeing 14 bytes.");
  EXPECT_EQ(DuplicateCleanup::title, "Duplicate Cleanup");
  EXPECT_TRUE(exists(tree.path("Downloads/a")));
  EXPECT_FALSE(exists(copy) || exists(other));
  const auto entries = journal->getEntries(result.runId.value());
  ASSERT_THAT(entries, SizeIs(2));
  EXPECT_EQ(entries[0].action, JournalAction::trashed);
  EXPECT_EQ(entries[0].checksum, groups[0].hash);
  EXPECT_EQ(journal->restoreRun(*result.runId).restoredCount, 2);
  EXPECT_TRUE(exists(copy) && exists(other));
}

TEST_F(DuplicateCleaning, doesNothingWithoutASelection) {
  file("a");
  file("bb");
  auto groups = find();
  for (auto& item : groups[0].items) item.setSelected(false);
  EXPECT_EQ(clean(groups).runId, std::nullopt);
  EXPECT_THAT(journal->getRuns(), SizeIs(0));
}

TEST_F(DuplicateCleaning, keepsOneOfAGroupWhoseItemsAreAllSelected) {
  file("a");
  file("bb");
  auto groups = find();
  for (auto& item : groups[0].items) item.setSelected(true);
  EXPECT_EQ(clean(groups).filesMoved, 1);
  EXPECT_THAT(contents(), SizeIs(1));
}

TEST_F(DuplicateCleaning, keepsOneWhereTwoGroupsKeepDifferentCopies) {
  file("a");
  file("bb");
  auto groups = find();
  groups.push_back(groups[0]);
  groups[1].items[0].setSelected(!groups[1].items[0].isSelected());
  groups[1].items[1].setSelected(!groups[1].items[1].isSelected());
  EXPECT_EQ(clean(groups).filesMoved, 1);
  EXPECT_THAT(contents(), SizeIs(1));
}

struct Change {
  const char* name;
  void (*apply)(const std::string& kept, const std::string& copy);
  const char* reason;
};

class Leaves : public DuplicateCleaning, public testing::WithParamInterface<Change> {};

TEST_P(Leaves, theCopyWhere) {
  const auto kept = file("a", std::string(200'000, 'x'));
  const auto copy = file("copy", std::string(200'000, 'x'));
  setAge(copy, 100);
  const auto groups = find();
  ASSERT_THAT(groups, SizeIs(1));
  GetParam().apply(kept, copy);
  const auto before = contents();
  const auto result = clean(groups);
  EXPECT_EQ(result.filesMoved, 0);
  EXPECT_EQ(contents(), before);
  ASSERT_THAT(result.outcomes, SizeIs(1));
  EXPECT_THAT(DuplicateCleanup::failureLine(result.outcomes[0]), HasSubstr("Failed to trash duplicate " + copy + ": "));
  EXPECT_THAT(result.outcomes[0].error, HasSubstr(GetParam().reason));
  EXPECT_THAT(journal->getRuns(), SizeIs(0));
}

void write(const std::string& path, std::int64_t offset, std::string_view text) {
  const FileDescriptor descriptor(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
  ASSERT_EQ(::pwrite(descriptor.get(), text.data(), text.size(), offset), static_cast<ssize_t>(text.size()));
}

INSTANTIATE_TEST_SUITE_P(
    Changes, Leaves,
    testing::Values(
        Change{"copyWasWritten", [](const auto&, const auto& copy) { write(copy, 100'000, "y"); }, "changed since"},
        Change{"copyGrew", [](const auto&, const auto& copy) { write(copy, 200'000, "y"); }, "changed since"},
        Change{"copyIsGone", [](const auto&, const auto& copy) { std::filesystem::remove(copy); }, "File not found"},
        Change{"copyBecameALink",
               [](const auto& kept, const auto& copy) {
                 std::filesystem::remove(copy);
                 std::filesystem::create_symlink(kept, copy);
               },
               "changed since"},
        // Same size, same time, other content: only reading tells.
        Change{"copyWasReplacedUnnoticed",
               [](const auto&, const auto& copy) {
                 const auto time = std::filesystem::last_write_time(copy);
                 write(copy, 199'999, "y");
                 std::filesystem::last_write_time(copy, time);
               },
               "not the same as the copy to keep"},
        Change{"keptWasWritten", [](const auto& kept, const auto&) { write(kept, 3, "y"); }, "not the same"},
        Change{"keptShrank", [](const auto& kept, const auto&) { std::filesystem::resize_file(kept, 5); },
               "not the same"},
        Change{"keptIsGone", [](const auto& kept, const auto&) { std::filesystem::remove(kept); }, "no other copy"},
        Change{"keptBecameTheCopy",
               [](const auto& kept, const auto& copy) {
                 std::filesystem::remove(kept);
                 std::filesystem::create_hard_link(copy, kept);
               },
               "the very file"},
        Change{"keptBecameALinkToTheCopy",
               [](const auto& kept, const auto& copy) {
                 std::filesystem::remove(kept);
                 std::filesystem::create_symlink(copy, kept);
               },
               "no other copy"},
        Change{"keptBecameAPipe",
               [](const auto& kept, const auto&) {
                 std::filesystem::remove(kept);
                 ASSERT_EQ(::mkfifo(kept.c_str(), 0600), 0);
               },
               "no other copy"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(DuplicateCleaning, countsNoCopyInTheTrash) {
  tree.file(".local/share/Trash/files/old");
  file("a");
  const auto copy = file("copy");
  auto groups = engine.findDuplicates({tree.url(".local/share/Trash/files"), tree.url("Downloads")},
                                      DuplicateKeepStrategy::keepOldest);
  ASSERT_THAT(groups, SizeIs(1));
  ASSERT_EQ(groups[0].items[0].relativePath(), "old");
  for (auto& item : groups[0].items) item.setSelected(item.relativePath() != "old");
  const auto result = clean(groups);
  EXPECT_EQ(result.filesMoved, 0);
  EXPECT_THAT(result.outcomes[0].error, HasSubstr("no other copy"));
}

TEST_F(DuplicateCleaning, takesAnotherCopyThatStaysForTheOneThatIsGone) {
  const auto first = file("a");
  file("bb");
  file("ccc");
  auto groups = find();
  for (auto& item : groups[0].items) item.setSelected(item.relativePath() == "ccc");
  std::filesystem::remove(first);
  EXPECT_EQ(clean(groups).filesMoved, 1);
  EXPECT_THAT(contents(), SizeIs(1));
}

TEST_F(DuplicateCleaning, movesNothingOutsideTheRoots) {
  tree.file("Elsewhere/copy of a");
  file("a");
  const auto groups =
      engine.findDuplicates({tree.url("Downloads"), tree.url("Elsewhere")}, DuplicateKeepStrategy::keepShortestPath);
  const auto result = clean(groups);
  EXPECT_EQ(result.filesMoved, 0);
  EXPECT_EQ(result.outcomes[0].result, MoveResult::refused);
  EXPECT_TRUE(exists(tree.path("Elsewhere/copy of a")));
}

TEST_F(DuplicateCleaning, givesUpItsTurnWhenStopped) {
  file("a");
  file("bb");
  const auto groups = find();
  const auto other = FileLock::acquire(journalFolder() + "/" + std::string(DuplicateCleaner::lockName));
  std::stop_source stop;
  DuplicateCleanup result;
  std::jthread waiting(
      [&] { result = DuplicateCleaner(mover, *journal).clean(groups, roots(), {}, stop.get_token()); });
  stop.request_stop();
  waiting.join();
  ASSERT_THAT(result.outcomes, SizeIs(1));
  EXPECT_EQ(result.outcomes[0].result, MoveResult::cancelled);
  EXPECT_THAT(contents(), SizeIs(2));
}

// Two cleanups that keep different copies go on at the same time: of every group one copy stays.
TEST_F(DuplicateCleaning, keepsOneWhenTwoCleanAtOnce) {
  constexpr int pairs = 60;
  for (int i = 0; i < pairs; ++i) {
    file("a" + std::to_string(i), "content " + std::to_string(i));
    file("copy of a" + std::to_string(i), "content " + std::to_string(i));
  }
  const auto first = find();
  auto second = first;
  for (auto& group : second) {
    for (auto& item : group.items) item.setSelected(!item.isSelected());
  }
  std::barrier start(2);
  std::vector<DuplicateCleanup> results(2);
  {
    const auto run = [&](const std::vector<DuplicateGroup>& groups, DuplicateCleanup& result) {
      LinuxTrash ownTrash(trashPath());
      LinuxFileMover ownFileMover;
      TrashMover ownMover(ownTrash, ownFileMover, validator);
      UndoJournal ownJournal(ownTrash, ownFileMover, validator, FileUrl(journalFolder()));
      start.arrive_and_wait();
      result = DuplicateCleaner(ownMover, ownJournal).clean(groups, roots());
    };
    std::jthread one([&] { run(first, results[0]); });
    std::jthread two([&] { run(second, results[1]); });
  }
  EXPECT_EQ(results[0].filesMoved + results[1].filesMoved, pairs);
  const auto left = contents();
  EXPECT_THAT(left, SizeIs(pairs));
  for (int i = 0; i < pairs; ++i) EXPECT_EQ(left.count("content " + std::to_string(i)), 1U) << i;
}

// Whatever happens between search and cleaning, no content is only in the Trash afterwards.
class Race : public DuplicateCleaning, public testing::WithParamInterface<unsigned> {
 public:
  std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random); }
  std::string content() { return std::string(20'000, static_cast<char>('a' + below(3))) + std::string(below(3), 'z'); }

  void meddle(const std::vector<std::string>& paths) {
    namespace fs = std::filesystem;
    const auto& path = paths[below(paths.size())];
    const auto& other = paths[below(paths.size())];
    if (!fs::exists(path) || path == other) return;
    switch (below(7)) {
      case 0:
        return write(path, static_cast<std::int64_t>(below(20'000)), "!");
      case 1:
        fs::remove(path);
        return;
      case 2:
        return fs::resize_file(path, below(20'000));
      case 3:
        return fs::rename(path, other);
      case 4:
        fs::remove(other);
        return fs::create_hard_link(path, other);
      case 5:
        fs::remove(other);
        return fs::create_symlink(path, other);
      default: {
        // What keeps its time and its size.
        const auto time = fs::last_write_time(path);
        write(path, static_cast<std::int64_t>(below(20'000)), "?");
        fs::last_write_time(path, time);
      }
    }
  }

  std::mt19937 random{GetParam()};
};

TEST_P(Race, losesNoContent) {
  std::vector<std::string> paths;
  for (int i = 0; i < 40; ++i) paths.push_back(file("f" + std::to_string(i), content()));
  const auto groups = find(allDuplicateKeepStrategies.at(below(2)));
  for (int i = 0; i < 25; ++i) meddle(paths);
  const auto before = contents();
  const auto result = clean(groups);
  const auto after = contents();
  EXPECT_EQ(std::set(before.begin(), before.end()), std::set(after.begin(), after.end()));
  EXPECT_GT(result.filesMoved, 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Race, testing::Range(1U, 21U));

}  // namespace
}  // namespace orvane::test
