// The desktop's own tools see, and bring back, what Orvane put into the Trash.

#include "tests/support/ChildProcess.h"
#include "tests/support/SafetyFixture.h"

#include <sys/stat.h>

namespace orvane {
namespace {

using test::contentOf;
using test::exists;

class DesktopTrashTest : public test::SafetyFixture {
 protected:
  // In a session of its own, so that the machine's is never touched.
  test::ChildResult inSession(const std::string& command) const {
    tree.folder("runtime");
    ::chmod(tree.path("runtime").c_str(), 0700);
    return test::runProgram({"dbus-run-session", "--", "sh", "-c", command},
                            {{"HOME", tree.path()},
                             {"XDG_DATA_HOME", tree.path(".local/share")},
                             {"XDG_RUNTIME_DIR", tree.path("runtime")},
                             {"LC_ALL", "C.UTF-8"}});
  }
};

TEST_F(DesktopTrashTest, gioListsAndRestoresWhatOrvaneTrashed) {
  const auto plain = tree.file("Downloads/50% of it.txt", "half");
  const auto folder = tree.folder("Downloads/folder");
  tree.file("Downloads/folder/inner");
  clean({plain, folder});
  const auto listed = inSession("gio trash --list");
  ASSERT_EQ(listed.exitStatus, 0) << listed.errors;
  EXPECT_THAT(listed.output, testing::HasSubstr("trash:///50%25%20of%20it.txt\t" + plain));
  EXPECT_THAT(listed.output, testing::HasSubstr("trash:///folder\t" + folder));

  const auto restored = inSession("gio trash --restore 'trash:///50%25%20of%20it.txt'");
  EXPECT_EQ(restored.exitStatus, 0) << restored.errors;
  EXPECT_EQ(contentOf(plain), "half");
  // The journal then brings back the rest, and says what it no longer finds.
  const auto result = journal->restoreRun(lastRun);
  EXPECT_EQ(result.restoredCount, 1);
  EXPECT_THAT(result.warnings, testing::ElementsAre("Item was emptied from Trash or moved: 50% of it.txt"));
  EXPECT_TRUE(exists(folder + "/inner"));
}

TEST_F(DesktopTrashTest, trashCliListsWhatOrvaneTrashed) {
  const auto path = tree.file("Downloads/caf\xc3\xa9 #1.txt");
  clean({path});
  const auto listed = inSession("trash-list");
  ASSERT_EQ(listed.exitStatus, 0) << listed.errors;
  EXPECT_THAT(listed.output, testing::HasSubstr(" " + path + "\n"));
}

TEST_F(DesktopTrashTest, namesThatGioTookAreNotTakenAgain) {
  tree.file("Downloads/same.txt", "gio's");
  ASSERT_EQ(inSession("gio trash \"$HOME/Downloads/same.txt\"").exitStatus, 0);
  const auto outcome = clean({tree.file("Downloads/same.txt", "ours")}).front();
  ASSERT_EQ(outcome.result, MoveResult::moved) << outcome.error;
  EXPECT_EQ(contentOf(trashPath() + "/files/same.txt"), "gio's");
  EXPECT_EQ(contentOf(outcome.destination.path()), "ours");
}

}  // namespace
}  // namespace orvane
