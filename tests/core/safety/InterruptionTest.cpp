// Interrupts a cleanup at every system call that changes something, starts again, and looks whether every item is whole
// in exactly one place that the journal knows.

#include "tests/support/ChildProcess.h"
#include "tests/support/SafetyFixture.h"

#include <filesystem>
#include <map>
#include <set>

namespace orvane {
namespace {

namespace fs = std::filesystem;
using test::contentOf;
using test::exists;

struct Interruption {
  const char* name;
  const char* action;  // of the driver
  const char* systemCall;
  const char* injection;  // as strace takes it
};

void PrintTo(const Interruption& interruption, std::ostream* out) {
  *out << interruption.name;
}

class InterruptionTest : public testing::TestWithParam<Interruption> {};

// One home, one interrupted action, and what has to hold afterwards.
class Scene : public test::SafetyFixture {
 public:
  explicit Scene(int items = 5) : itemCount(items) {
    for (int i = 0; i < itemCount; ++i) {
      const auto name = std::to_string(i);
      if (i == 3) {
        tree.file("Downloads/3/inner", contentFor(i));
      } else {
        tree.file("Downloads/" + name, contentFor(i));
      }
    }
  }
  void TestBody() override {}

  static std::string contentFor(int item) { return "content of item " + std::to_string(item); }

  [[nodiscard]] int drive(const std::string& action, const std::string& systemCall = {},
                          const std::string& injection = {}) const {
    std::vector<std::string> arguments{ORVANE_MOVE_DRIVER, tree.path(), action};
    if (!systemCall.empty()) {
      const std::vector<std::string> strace{"strace", "-f",
                                            "-o",     tree.path("trace"),
                                            "-e",     "trace=" + systemCall,
                                            "-e",     "inject=" + systemCall + ":" + injection};
      arguments.insert(arguments.begin(), strace.begin(), strace.end());
    }
    // A leak check cannot run in a process that is being traced.
    return test::runProgram(arguments, {{"ASAN_OPTIONS", "detect_leaks=0"}}).exitStatus;
  }

  // Whether the last drive() was disturbed at all.
  [[nodiscard]] bool wasInterrupted() const {
    const auto trace = contentOf(tree.path("trace"));
    return trace.find("INJECTED") != std::string::npos || trace.find("killed by SIGKILL") != std::string::npos;
  }

  void expectEverythingAccountedFor() {
    std::multimap<std::string, JournalEntry> away;  // by where the item was
    for (const auto& run : journal->getRuns()) {
      for (const auto& entry : journal->getEntries(run.runId)) {
        if (entry.action != JournalAction::restored) away.emplace(entry.originalURL.path(), entry);
      }
    }
    std::set<std::string> places;
    for (int i = 0; i < itemCount; ++i) {
      const auto origin = tree.path("Downloads/" + std::to_string(i));
      int copies = whole(origin, i) ? 1 : 0;
      const auto [first, last] = away.equal_range(origin);
      for (auto found = first; found != last; ++found) {
        const auto& place = found->second.trashedURL.path();
        EXPECT_TRUE(whole(place, i)) << "journalled at " << place << " but not there";
        ++copies;
        places.insert(place);
      }
      EXPECT_EQ(copies, 1) << "item " << i;
    }
    for (const auto* folder : {".local/share/Trash/files", "Sorted"}) {
      for (const auto& place : entriesOf(tree.path(folder))) {
        EXPECT_TRUE(places.contains(place)) << "no journal entry for " << place;
      }
    }
    for (const auto& record : entriesOf(trashPath() + "/info")) {
      const auto name = fs::path(record).stem().string();
      EXPECT_TRUE(exists(trashPath() + "/files/" + name)) << "a record without an item: " << record;
    }
    for (const auto& file : entriesOf(journalFolder())) {
      EXPECT_FALSE(file.ends_with(".log") || file.ends_with(".unclear")) << "left behind: " << file;
    }
  }

  const int itemCount;

 private:
  static bool whole(const std::string& place, int item) {
    const auto file = item == 3 ? place + "/inner" : place;
    return exists(file) && contentOf(file) == contentFor(item);
  }
  static std::vector<std::string> entriesOf(const std::string& folder) {
    std::vector<std::string> result;
    if (!exists(folder)) return result;
    for (const auto& entry : fs::directory_iterator(folder)) result.push_back(entry.path().string());
    return result;
  }
};

TEST_P(InterruptionTest, leavesEveryItemWholeAndJournalled) {
  const auto& [name, action, systemCall, injection] = GetParam();
  const bool restoring = std::string_view(action) == "restore";
  int interrupted = 0;
  for (int when = 1; when < 400; ++when) {
    SCOPED_TRACE(std::string(systemCall) + " number " + std::to_string(when));
    Scene scene;
    if (restoring) {
      ASSERT_EQ(scene.drive("trash"), 0);
    }
    const int status = scene.drive(action, systemCall, std::string(injection) + ":when=" + std::to_string(when));
    ASSERT_NE(status, 127) << "strace is missing";
    scene.reopenJournal();
    scene.expectEverythingAccountedFor();
    if (HasFailure()) return;
    // The next attempt finishes what is left.
    EXPECT_EQ(scene.drive(action), 0);
    scene.reopenJournal();
    scene.expectEverythingAccountedFor();
    for (int i = 0; i < scene.itemCount; ++i) {
      EXPECT_EQ(exists(scene.tree.path("Downloads/" + std::to_string(i))), restoring);
    }
    if (!scene.wasInterrupted()) break;
    ++interrupted;
  }
  EXPECT_GT(interrupted, 0) << "the action never makes this call: the row tests nothing";
}

// Several groups, and the journal rewritten between them.
TEST(LongRunTest, killedInTheMiddleLosesNothing) {
  for (const int when : {7, 512, 1025}) {
    SCOPED_TRACE("renameat2 number " + std::to_string(when));
    Scene scene(1300);
    EXPECT_NE(0, scene.drive("trash", "renameat2", "signal=KILL:when=" + std::to_string(when)));
    ASSERT_TRUE(scene.wasInterrupted());
    scene.reopenJournal();
    scene.expectEverythingAccountedFor();
    EXPECT_NE(0, scene.drive("restore", "renameat2", "signal=KILL:when=" + std::to_string(when / 2)));
    scene.reopenJournal();
    scene.expectEverythingAccountedFor();
    EXPECT_EQ(scene.drive("restore"), 0);
    scene.reopenJournal();
    for (int i = 0; i < scene.itemCount; ++i) {
      ASSERT_TRUE(exists(scene.tree.path("Downloads/" + std::to_string(i)))) << i;
    }
  }
}

constexpr const char* kill = "signal=KILL";
constexpr const char* inputOutputError = "error=EIO";
constexpr const char* fullDisk = "error=ENOSPC";

INSTANTIATE_TEST_SUITE_P(
    Kill, InterruptionTest,
    testing::Values(
        Interruption{"trash_openat", "trash", "openat", kill}, Interruption{"trash_write", "trash", "write", kill},
        Interruption{"trash_link", "trash", "link", kill}, Interruption{"trash_linkat", "trash", "linkat", kill},
        Interruption{"trash_mkdir", "trash", "mkdir", kill}, Interruption{"trash_mkdirat", "trash", "mkdirat", kill},
        Interruption{"trash_renameat2", "trash", "renameat2", kill},
        Interruption{"trash_rename", "trash", "rename", kill}, Interruption{"trash_unlink", "trash", "unlink", kill},
        Interruption{"trash_fsync", "trash", "fsync", kill},
        Interruption{"trash_fdatasync", "trash", "fdatasync", kill}, Interruption{"move_write", "move", "write", kill},
        Interruption{"move_renameat2", "move", "renameat2", kill}, Interruption{"move_fsync", "move", "fsync", kill},
        Interruption{"restore_write", "restore", "write", kill},
        Interruption{"restore_renameat2", "restore", "renameat2", kill},
        Interruption{"restore_unlinkat", "restore", "unlinkat", kill},
        Interruption{"restore_unlink", "restore", "unlink", kill},
        Interruption{"restore_fsync", "restore", "fsync", kill},
        Interruption{"restore_fdatasync", "restore", "fdatasync", kill}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(Fail, InterruptionTest,
                         testing::Values(Interruption{"trash_fsync", "trash", "fsync", inputOutputError},
                                         Interruption{"trash_fdatasync", "trash", "fdatasync", inputOutputError},
                                         Interruption{"trash_write", "trash", "write", fullDisk},
                                         Interruption{"trash_linkat", "trash", "linkat", fullDisk},
                                         Interruption{"trash_renameat2", "trash", "renameat2", inputOutputError},
                                         Interruption{"trash_rename", "trash", "rename", inputOutputError},
                                         Interruption{"move_renameat2", "move", "renameat2", inputOutputError},
                                         Interruption{"restore_write", "restore", "write", fullDisk},
                                         Interruption{"restore_fsync", "restore", "fsync", inputOutputError},
                                         Interruption{"restore_renameat2", "restore", "renameat2", inputOutputError}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace orvane
