// Interrupts a cleanup at every system call that changes something, starts again, and looks whether every item is whole
// in exactly one place that the journal knows.

#include "tests/support/ChildProcess.h"
#include "tests/support/SafetyFixture.h"

namespace orvane::test {
namespace {

struct Interruption {
  std::string action;  // of the driver
  std::string systemCall;
  std::string injection;  // as strace takes it
};

class InterruptionTest : public testing::TestWithParam<Interruption> {};

// One home, one interrupted action, and what has to hold afterwards.
class Scene : public SafetyFixture {
 public:
  explicit Scene(int items = 5) : itemCount(items) {
    for (int i = 0; i < itemCount; ++i) {
      tree.file("Downloads/" + std::to_string(i) + (i == 3 ? "/inner" : ""), contentFor(i));
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
    return runProgram(arguments, {{"ASAN_OPTIONS", "detect_leaks=0"}}).exitStatus;
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
  const auto& [action, systemCall, injection] = GetParam();
  const bool restoring = action == "restore";
  int interrupted = 0;
  for (int when = 1; when < 400; ++when) {
    SCOPED_TRACE(systemCall + " number " + std::to_string(when));
    Scene scene;
    if (restoring) {
      ASSERT_EQ(scene.drive("trash"), 0);
    }
    const int status = scene.drive(action, systemCall, injection + ":when=" + std::to_string(when));
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

std::vector<Interruption> interruptions() {
  const Rows<const char*, const char*, std::vector<std::string>> rows{
      {"trash",
       "signal=KILL",
       {"openat", "write", "link", "linkat", "mkdir", "mkdirat", "renameat2", "rename", "unlink", "fsync",
        "fdatasync"}},
      {"move", "signal=KILL", {"write", "renameat2", "fsync"}},
      {"restore", "signal=KILL", {"write", "renameat2", "unlinkat", "unlink", "fsync", "fdatasync"}},
      {"trash", "error=EIO", {"fsync", "fdatasync", "renameat2", "rename"}},
      {"move", "error=EIO", {"renameat2"}},
      {"restore", "error=EIO", {"fsync", "renameat2"}},
      {"trash", "error=ENOSPC", {"write", "linkat"}},
      {"restore", "error=ENOSPC", {"write"}},
  };
  std::vector<Interruption> result;
  for (const auto& [action, injection, systemCalls] : rows) {
    for (const auto& call : systemCalls) result.push_back({action, call, injection});
  }
  return result;
}

std::string nameOf(const testing::TestParamInfo<Interruption>& row) {
  const auto& injection = row.param.injection;
  return row.param.action + "_" + row.param.systemCall + "_" + injection.substr(injection.find('=') + 1);
}

INSTANTIATE_TEST_SUITE_P(Each, InterruptionTest, testing::ValuesIn(interruptions()), nameOf);

}  // namespace
}  // namespace orvane::test
