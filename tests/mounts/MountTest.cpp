// The Trash and the mover on real mounts. The whole program lives in a mount namespace of its own.

#include "core/map/MapWalk.h"
#include "core/organizer/propose/FolderOrganizerEngine.h"
#include "platform/linux/LinuxTrashUsage.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/MemoryPreferences.h"
#include "tests/support/SafetyFixture.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/xattr.h>

#include <cstring>

namespace orvane::test {
namespace {

bool haveMounts = false;

class MountTest : public SafetyFixture {
 protected:
  void SetUp() override {
    if (!haveMounts) GTEST_SKIP() << "this system allows no mount namespaces";
    volume = tree.folder("volume");
    mountTmpfs("size=64m,mode=755");
  }
  void TearDown() override { ::umount2(volume.c_str(), MNT_DETACH); }

  void mountTmpfs(const char* options) const {
    ::umount2(volume.c_str(), MNT_DETACH);
    ASSERT_EQ(::mount("tmpfs", volume.c_str(), "tmpfs", 0, options), 0) << std::strerror(errno);
  }

  MoveOutcome carryOut(const MoveRequest& wanted) {
    CleanupRun run(mover, *journal, Boundary({FileUrl(volume), tree.url("Downloads")}));
    lastRun = run.id();
    return run.carryOut(std::vector{wanted}).front();
  }
  MoveOutcome trashOne(const std::string& path) { return carryOut(request(path)); }
  MoveOutcome moveOne(const std::string& path, const std::string& folder) {
    auto wanted = request(path);
    wanted.destinationFolder = FileUrl(folder);
    return carryOut(wanted);
  }

  static void expectThatItStays(const MoveOutcome& outcome, const std::string& path, const char* reason) {
    EXPECT_EQ(outcome.result, MoveResult::failed) << outcome.destination.path();
    EXPECT_THAT(outcome.error, HasSubstr(reason));
    EXPECT_TRUE(exists(path));
  }
  static void bind(const std::string& folder, const std::string& place) {
    ASSERT_EQ(::mount(folder.c_str(), place.c_str(), nullptr, MS_BIND, nullptr), 0) << std::strerror(errno);
  }
  // The Trash at the top of the volume.
  [[nodiscard]] std::string topTrash() const { return volume + "/.Trash-" + std::to_string(::geteuid()); }

  std::string volume;
};

TEST_F(MountTest, anItemGoesToTheTrashOfItsOwnVolumeAndComesBack) {
  const auto path = tree.file("volume/deep/a file", "x");
  const auto outcome = trashOne(path);
  ASSERT_EQ(outcome.result, MoveResult::moved) << outcome.error;
  const auto top = topTrash();
  EXPECT_EQ(outcome.destination.path(), top + "/files/a file");
  const auto run = lastRun;
  EXPECT_EQ(trashOne(top + "/files/a file").result, MoveResult::failed) << "it is there already";
  EXPECT_TRUE(contentOf(top + "/info/a file.trashinfo").starts_with("[Trash Info]\nPath=deep/a%20file\nDeletionDate="));
  EXPECT_EQ(statusOf(top).st_mode & 07777, 0700U);
  EXPECT_EQ(journal->restoreRun(run).restoredCount, 1);
  EXPECT_EQ(contentOf(path), "x");
  EXPECT_FALSE(exists(top + "/info/a file.trashinfo"));
}

TEST_F(MountTest, theContentOfTheTrashCountsOnceOnEveryVolume) {
  const LinuxTrashUsage usage(trashPath());
  const auto before = usage.read({});
  const auto again = tree.folder("again");
  bind(volume, again);
  EXPECT_EQ(trashOne(tree.file("volume/folder/a", "12345")).result, MoveResult::moved);
  EXPECT_EQ(trashOne(tree.file("Downloads/b", "123")).result, MoveResult::moved);
  const auto after = usage.read({});
  EXPECT_EQ(after.count - before.count, 2);
  EXPECT_EQ(after.bytes - before.bytes, 8);
  EXPECT_TRUE(after.oldest.has_value());
  EXPECT_EQ(::umount2(again.c_str(), MNT_DETACH), 0);
}

TEST_F(MountTest, aDiskThatNeverAnswersHoldsUpNoCountOfTheTrash) {
  const FileDescriptor fuse(::open("/dev/fuse", O_RDWR | O_CLOEXEC));
  const auto silent = tree.folder("silent");
  const auto options = "fd=" + std::to_string(fuse.get()) + ",rootmode=40000,user_id=0,group_id=0";
  if (!fuse || ::mount("silent", silent.c_str(), "fuse.silent", 0, options.c_str()) != 0) {
    GTEST_SKIP() << "no file systems of programs here: " << std::strerror(errno);
  }
  EXPECT_EQ(trashOne(tree.file("Downloads/b", "123")).result, MoveResult::moved);
  const LinuxTrashUsage usage(trashPath(), {.look = std::chrono::milliseconds(300), .content = {}});
  for (int i = 0; i < 2; ++i) {
    const auto totals = usage.read({});
    EXPECT_GE(totals.unansweredDisks, 1);
    EXPECT_GE(totals.count, 1);
  }
  EXPECT_EQ(::umount2(silent.c_str(), MNT_DETACH), 0);
}

TEST_F(MountTest, theSharedTopTrashIsUsedOnlyWhenItIsStickyAndNoLink) {
  const auto shared = volume + "/.Trash";
  const auto own = shared + "/" + std::to_string(::geteuid());
  for (const mode_t mode : {01777U, 0777U}) {
    mountTmpfs("size=1m,mode=755");
    ASSERT_EQ(::mkdir(shared.c_str(), 0777), 0);
    ASSERT_EQ(::chmod(shared.c_str(), mode), 0);
    const auto place = trashOne(tree.file("volume/one")).destination.path();
    EXPECT_EQ(place, (mode == 01777U ? own : topTrash()) + "/files/one");
    if (mode == 01777U) {
      EXPECT_THAT(contentOf(own + "/info/one.trashinfo"), HasSubstr("Path=one\n"));
    }
  }
  mountTmpfs("size=1m,mode=755");
  tree.link("volume/.Trash", tree.folder("Elsewhere"));
  EXPECT_EQ(trashOne(tree.file("volume/three")).destination.path(), topTrash() + "/files/three");
  EXPECT_TRUE(fs::is_empty(tree.path("Elsewhere")));
}

TEST_F(MountTest, aTopTrashThatOthersCouldTamperWithIsRefused) {
  const auto path = tree.file("volume/a");
  fs::create_symlink(tree.folder("Elsewhere"), topTrash());
  expectThatItStays(trashOne(path), path, "has no Trash that can be used");
  fs::remove(topTrash());
  ASSERT_EQ(::mkdir(topTrash().c_str(), 0777), 0);
  ASSERT_EQ(::chmod(topTrash().c_str(), 0777), 0);
  expectThatItStays(trashOne(path), path, "has no Trash that can be used");
}

TEST_F(MountTest, aReadOnlyVolumeKeepsItsItems) {
  const auto path = tree.file("volume/a");
  ASSERT_EQ(::mount(nullptr, volume.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
  expectThatItStays(trashOne(path), path, "Read-only file system");
}

TEST_F(MountTest, aVolumeWithoutRoomForTheRecordKeepsItsItems) {
  mountTmpfs("size=1m,nr_inodes=6,mode=755");
  const auto path = tree.file("volume/a");
  // Root, file, Trash, files, info: the record would be the next.
  tree.file("volume/b");
  expectThatItStays(trashOne(path), path, "No space left on device");
}

TEST_F(MountTest, aFullHomeStopsTheRunBeforeAnythingMoves) {
  ASSERT_EQ(::mount("tmpfs", tree.folder("State").c_str(), "tmpfs", 0, "size=64k,mode=755"), 0);
  tree.sparseFile("State/ballast", 0);
  std::ofstream(tree.path("State/ballast")) << std::string(128 * 1024, 'x');
  const auto path = tree.file("volume/a");
  expectThatItStays(trashOne(path), path, "No space left on device");
  ::umount2(tree.path("State").c_str(), MNT_DETACH);
}

TEST_F(MountTest, aBindMountOfTheSameVolumeHasItsOwnTop) {
  tree.file("Downloads/inner/a");
  const auto bound = tree.folder("bound");
  bind(tree.path("Downloads/inner"), bound);
  CleanupRun run(mover, *journal, Boundary({FileUrl(bound)}));
  const auto outcome = run.carryOut(std::vector{request(bound + "/a")}).front();
  EXPECT_EQ(outcome.destination.path(), bound + "/.Trash-" + std::to_string(::geteuid()) + "/files/a") << outcome.error;
  EXPECT_EQ(journal->restoreRun(run.id()).restoredCount, 1);
  EXPECT_TRUE(exists(bound + "/a"));
  ::umount2(bound.c_str(), MNT_DETACH);
}

TEST_F(MountTest, foldersNestedTooDeeplyStayWhereTheyAre) {
  const auto top = tree.folder("Downloads/deep");
  EXPECT_TRUE(nestedFolders(top, "d", 1100));
  expectThatItStays(moveOne(top, volume), top, "nested too deeply");
  EXPECT_TRUE(fs::is_empty(volume)) << "a part of the copy stayed";
  EXPECT_EQ(trashOne(top).result, MoveResult::moved);
}

// As when the run was cut off between the copy and the Trash.
TEST_F(MountTest, aCopyWhoseOriginalNeverLeftIsSetAsideByTheRestore) {
  if (statusOf(tree.path()).st_dev != statusOf("/").st_dev)
    GTEST_SKIP() << "the volume of temporary files has a Trash of its own";
  const auto source = tree.file("Downloads/report.txt", "words");
  // The home Trash cannot be used.
  tree.file(".local/share/Trash", "in the way");
  expectThatItStays(moveOne(source, volume + "/Sorted"), source, "the original stays where it is");
  EXPECT_EQ(contentOf(volume + "/Sorted/report.txt"), "words");
  EXPECT_EQ(journal->remainingCount(lastRun), 1);
  const auto result = journal->restoreRun(lastRun);
  EXPECT_THAT(result.warnings, IsEmpty());
  EXPECT_EQ(result.restoredCount, 1);
  EXPECT_EQ(contentOf(source), "words");
  EXPECT_FALSE(exists(tree.path("Downloads/report (restored 1).txt")));
  EXPECT_EQ(contentOf(topTrash() + "/files/report.txt"), "words");
  EXPECT_EQ(journal->remainingCount(lastRun), 0);
}

TEST_F(MountTest, aCopyWhoseOriginalCannotBeReachedStaysAndSaysSo) {
  const auto copy = moveOne(tree.file("Downloads/a"), volume).destination;
  fs::rename(tree.path(".local/share"), tree.path("Unplugged"));
  const auto result = journal->restoreRun(lastRun);
  EXPECT_THAT(result.warnings, Contains(HasSubstr("its original cannot be reached now")));
  EXPECT_TRUE(exists(copy.path()));
  fs::rename(tree.path("Unplugged"), tree.path(".local/share"));
  EXPECT_EQ(journal->restoreRun(lastRun).restoredCount, 1);
  EXPECT_TRUE(exists(tree.path("Downloads/a")));
}

TEST_F(MountTest, aMoveToAnotherVolumeCopiesEverythingAndIsUndone) {
  const auto source = tree.folder("Downloads/project");
  tree.file("Downloads/project/a", std::string(3'000'000, 'a'));
  fs::create_hard_link(source + "/a", source + "/b");
  tree.link("Downloads/project/link", "a");
  tree.sparseFile("Downloads/project/sparse", 20'000'000);
  tree.file("Downloads/project/sub/private", "p");
  ASSERT_EQ(::chmod((source + "/sub/private").c_str(), 0400), 0);
  ASSERT_EQ(::setxattr((source + "/a").c_str(), "user.note", "keep", 4, 0), 0);
  setAge(source + "/a", 1000.5);
  setAge(source, 2000.5);
  const auto before = statusOf(source);

  const auto outcome = moveOne(source, volume + "/Sorted");
  ASSERT_EQ(outcome.result, MoveResult::moved) << outcome.error;
  const auto copy = volume + "/Sorted/project";
  EXPECT_EQ(outcome.destination.path(), copy);
  EXPECT_FALSE(exists(source));
  EXPECT_EQ(contentOf(copy + "/b"), std::string(3'000'000, 'a'));
  EXPECT_EQ(fs::hard_link_count(copy + "/a"), 2U);
  EXPECT_EQ(fs::read_symlink(copy + "/link"), "a");
  EXPECT_EQ(statusOf(copy + "/sparse").st_size, 20'000'000);
  EXPECT_LT(statusOf(copy + "/sparse").st_blocks * 512, 1'000'000);
  EXPECT_EQ(statusOf(copy + "/sub/private").st_mode & 07777, 0400U);
  EXPECT_EQ(statusOf(copy).st_mtim.tv_nsec, before.st_mtim.tv_nsec);

  const auto entries = journal->getEntries(lastRun);
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].action, JournalAction::moved);
  EXPECT_EQ(entries[1].action, JournalAction::trashed);
  const auto result = journal->restoreRun(lastRun);
  EXPECT_THAT(result.warnings, IsEmpty());
  EXPECT_EQ(result.restoredCount, 1);
  EXPECT_EQ(statusOf(source).st_ino, before.st_ino);
  EXPECT_FALSE(exists(copy));
  EXPECT_EQ(journal->getRuns().size(), 2U);
}

TEST_F(MountTest, eitherHalfOfAMoveToAnotherVolumeBringsBothBack) {
  for (const std::size_t half : {0U, 1U}) {
    const auto source = tree.file("Downloads/report.txt", "words");
    ASSERT_EQ(moveOne(source, volume + "/Sorted").result, MoveResult::moved);
    const auto result = restoreOne(journal->getEntries(lastRun).at(half).id);
    EXPECT_THAT(result.warnings, IsEmpty());
    EXPECT_EQ(result.restoredCount, 1);
    EXPECT_EQ(contentOf(source), "words");
    EXPECT_FALSE(exists(volume + "/Sorted/report.txt"));
    const auto runs = journal->getRuns();
    EXPECT_TRUE(std::ranges::any_of(runs, [&](const auto& run) { return run.runId == lastRun && run.isRestored; }));
  }
}

TEST_F(MountTest, aCopyStaysUntilItsOriginalIsBack) {
  const auto source = tree.file("Downloads/folder/report.txt", "words");
  ASSERT_EQ(moveOne(source, volume + "/Sorted").result, MoveResult::moved);
  const auto copy = volume + "/Sorted/report.txt";
  // Nothing can come back to a folder that is none any more.
  fs::remove(tree.path("Downloads/folder"));
  tree.file("Downloads/folder", "in the way");
  const auto failed = journal->restoreRun(lastRun);
  EXPECT_EQ(failed.restoredCount, 0);
  EXPECT_EQ(failed.warnings.size(), 1U);
  EXPECT_EQ(contentOf(copy), "words");
  EXPECT_EQ(journal->remainingCount(lastRun), 2);
  fs::remove(tree.path("Downloads/folder"));
  EXPECT_EQ(journal->restoreRun(lastRun).restoredCount, 1);
  EXPECT_EQ(contentOf(source), "words");
  EXPECT_FALSE(exists(copy));
  EXPECT_EQ(journal->remainingCount(lastRun), 0);
}

// A restore that was killed with the original back, before and after its copy was set aside.
TEST_F(MountTest, aRestoreOfCopiesThatWasKilledIsFinishedWithoutTwins) {
  for (const bool wasSetAside : {false, true}) {
    SCOPED_TRACE(wasSetAside);
    const auto source = tree.file("Downloads/report.txt", "words");
    ASSERT_EQ(moveOne(source, volume + "/Sorted").result, MoveResult::moved);
    const auto entries = journal->getEntries(lastRun);
    ASSERT_EQ(entries.size(), 2U);
    const auto back = intentToRestore(entries[1]);
    const FileUrl asidePlace(topTrash() + "/files/report.txt");
    auto aside = intentFor({}, entries[0].trashedURL, asidePlace);
    aside.entry.runId = Uuid::random();
    aside.entry.originalURL = entries[0].trashedURL;
    aside.entry.trashedURL = asidePlace;
    aside.settles = entries[0];
    aside.settles->action = JournalAction::restored;
    leaveLog({back, aside});
    fs::rename(back.source.path(), back.destination.path());
    fs::create_directories(asidePlace.deletingLastPathComponent().path());
    if (wasSetAside) fs::rename(aside.source.path(), asidePlace.path());
    reopenJournal();
    EXPECT_EQ(journal->remainingCount(lastRun), wasSetAside ? 0 : 1);
    const auto result = journal->restoreRun(lastRun);
    EXPECT_EQ(journal->remainingCount(lastRun), 0);
    EXPECT_THAT(result.warnings, IsEmpty());
    EXPECT_EQ(result.restoredCount, 0);
    EXPECT_EQ(contentOf(source), "words");
    EXPECT_FALSE(exists(tree.path("Downloads/report (restored 1).txt")));
    EXPECT_FALSE(exists(entries[0].trashedURL.path()));
    EXPECT_EQ(contentOf(asidePlace.path()), "words");
    for (const auto& entry : journal->getEntries(lastRun)) EXPECT_EQ(entry.action, JournalAction::restored);
    fs::remove(source);
    mountTmpfs("size=64m,mode=755");
  }
}

TEST_F(MountTest, anOrganizedBatchGoesOnWhenOneItemDoesNotFit) {
  MemoryPreferences preferences;
  CategoryPreferencesStore learned(preferences);
  FolderOrganizerEngine engine(learned, mover, validator);
  mountTmpfs("size=1m,mode=755");
  tree.file("Downloads/a.pdf", "first");
  const auto large = tree.file("Downloads/b.pdf", std::string(3 << 20, 'x'));
  tree.file("Downloads/c.pdf", "last");

  const auto groups = engine.analyzeFolder(tree.url("Downloads"), FileUrl(volume), Subfolders::keepWhole,
                                           OrganizationStrategy::byCategory);
  const auto execution = engine.carryOut(groups, *journal, Boundary({FileUrl(volume), tree.url("Downloads")}));
  EXPECT_EQ(execution.summary.itemsProcessed, 2);
  ASSERT_EQ(execution.outcomes.size(), 3U);
  EXPECT_EQ(execution.outcomes[1].result, MoveResult::failed);
  EXPECT_EQ(fs::file_size(large), 3U << 20);
  const auto papers = volume + "/Documents/PDFs";
  EXPECT_EQ(contentOf(papers + "/a.pdf"), "first");
  EXPECT_EQ(contentOf(papers + "/c.pdf"), "last");
  EXPECT_EQ(std::distance(fs::directory_iterator(papers), {}), 2) << "no half file, under whatever name";
  EXPECT_FALSE(exists(tree.path("Downloads/a.pdf")));

  journal->restoreRun(execution.summary.batchId);
  EXPECT_EQ(contentOf(tree.path("Downloads/a.pdf")), "first");
  EXPECT_EQ(contentOf(tree.path("Downloads/c.pdf")), "last");
}

TEST_F(MountTest, anItemWhoseFolderMayNotBeChangedStaysWithAClearReason) {
  if (::geteuid() != 0) GTEST_SKIP() << "drops privileges, so it needs some";
  const auto path = tree.file("Downloads/locked/a");
  ASSERT_EQ(::chmod(tree.path().c_str(), 0755), 0);
  for (const auto* each : {"", "Downloads", "State"}) ASSERT_EQ(::chown(tree.path(each).c_str(), 65534, 65534), 0);
  tree.folder(".local");
  ASSERT_EQ(::chown(tree.path(".local").c_str(), 65534, 65534), 0);
  EXPECT_TRUE(withoutPrivileges([&] {
    UndoJournal own(trash, fileMover, validator, FileUrl(journalFolder()));
    CleanupRun run(mover, own, roots());
    const auto outcome = run.carryOut(std::vector{request(path)}).front();
    return outcome.result == MoveResult::failed && outcome.error.find("Permission denied") != std::string::npos;
  }));
  EXPECT_TRUE(exists(path));
  EXPECT_TRUE(fs::is_empty(trashPath() + "/info"));
}

void enterMountNamespace() {
  const bool isRoot = ::geteuid() == 0;
  const auto user = ::geteuid();
  const auto group = ::getegid();
  if (::unshare(isRoot ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0) return;
  if (!isRoot) {
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user << " " << user << " 1";
    std::ofstream("/proc/self/gid_map") << group << " " << group << " 1";
  }
  haveMounts = ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// A mount of the tree inside itself would never end, and would count what it shows twice.
TEST_F(MountTest, theMapCountsEachFolderOnceAndNamesOtherFileSystems) {
  tree.file("home/data/file", std::string(100'000, 'x'));
  const auto other = tree.folder("home/other");
  const auto loop = tree.folder("home/data/loop");
  const MapWalk walk(validator, SystemProfile::none(), ReferenceClock::now());
  const auto before = walk.map(tree.path("home"), {})->folder(StorageMap::top).total;
  bind(volume, other);
  bind(tree.path("home"), loop);
  tree.file("volume/elsewhere", std::string(50'000, 'x'));
  const auto map = walk.map(tree.path("home"), {});
  ::umount2(loop.c_str(), MNT_DETACH);
  ::umount2(other.c_str(), MNT_DETACH);
  ASSERT_TRUE(map.has_value());
  for (const auto* place : {"home/other", "home/data/loop"}) {
    const auto folder = map->find(tree.path(place));
    ASSERT_TRUE(folder.has_value()) << place;
    EXPECT_EQ(map->folder(*folder).state, MapState::otherFileSystem) << place;
    EXPECT_EQ(map->folder(*folder).total, MapSum()) << place;
  }
  EXPECT_EQ(map->folder(StorageMap::top).total.files, before.files);
  EXPECT_LE(map->folder(StorageMap::top).total.diskBytes, before.diskBytes);
}

}  // namespace
}  // namespace orvane::test

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  orvane::test::enterMountNamespace();
  return RUN_ALL_TESTS();
}
