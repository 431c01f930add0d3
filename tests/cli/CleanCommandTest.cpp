#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileLock.h"
#include "tests/cli/OrvanectlFixture.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <functional>
#include <map>

namespace orvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::UnorderedElementsAre;

class CleanCommand : public Orvanectl {
 public:
  // Paths of a dry run's items, below the home folder.
  [[nodiscard]] Words wouldMove(const Words& options) const {
    Words result;
    const auto answer = json(joined({"clean", "--dry-run"}, options));
    for (const auto& item : answer["items"]) {
      result.push_back(
          FileUrl::fromAbsoluteString(item["url"].get<std::string>())->path().substr(home.path().size() + 1));
    }
    return result;
  }
  [[nodiscard]] std::int64_t countIn(const std::string& folder) const {
    if (!exists(folder)) return 0;
    return std::distance(std::filesystem::directory_iterator(folder), {});
  }
};

TEST_F(CleanCommand, movesWhatIsRecommendedAndSaysHowToBringItBack) {
  const auto log = recommended("old.log", "1234567");
  const auto note = home.file("Downloads/note.txt");
  const auto screenshot = home.file("Downloads/Screenshot.png");
  const auto result = run({"clean", "--yes"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.errors, "");
  EXPECT_THAT(result.output,
              HasSubstr("Moved 1 item (7 bytes) to the Trash. The space is free once the Trash is emptied."));
  EXPECT_FALSE(exists(log));
  EXPECT_EQ(contentOf(trashed("old.log")), "1234567");
  EXPECT_TRUE(exists(note) && exists(screenshot));

  const auto command = result.output.find("orvanectl restore ");
  ASSERT_NE(command, std::string::npos);
  const auto runId = result.output.substr(command + 18, 36);
  EXPECT_EQ(run({"restore", runId, "--yes"}).exitStatus, 0);
  EXPECT_EQ(contentOf(log), "1234567");
}

// Folders whose grant was taken back would count again.
TEST_F(CleanCommand, movesNothingWherePreferencesCannotBeRead) {
  const auto log = recommended();
  const auto foreign = home.file("Documents/letter.txt", "not preferences");
  const auto place = home.folder(".config/orvane") + "/preferences.json";
  const std::map<std::string, std::function<void()>> obstacles{
      {"a folder", [&] { std::filesystem::create_directory(place); }},
      {"a FIFO", [&] { ASSERT_EQ(::mkfifo(place.c_str(), 0600), 0); }},
      {"a link to nowhere", [&] { std::filesystem::create_symlink(home.path("nowhere"), place); }},
      {"a link to another file", [&] { std::filesystem::create_symlink(foreign, place); }},
      {"a file that was cut off", [&] { home.file(".config/orvane/preferences.json", "{\"OrvaneKnown"); }},
  };
  for (const auto& [what, stand] : obstacles) {
    SCOPED_TRACE(what);
    stand();
    const auto kind = std::filesystem::symlink_status(place).type();
    for (const Words& words : {Words{"clean", "--yes"}, Words{"tidy", "set", "--days", "5"}}) {
      const auto result = run(words);
      EXPECT_EQ(result.exitStatus, 1) << result.output;
      EXPECT_THAT(result.errors, HasSubstr("preferences.json' cannot be read"));
    }
    EXPECT_TRUE(exists(log));
    EXPECT_EQ(run({"history"}).exitStatus, 0) << "what moved before can be seen, and brought back";
    EXPECT_EQ(std::filesystem::symlink_status(place).type(), kind);
    std::filesystem::remove(place);
  }
  EXPECT_EQ(contentOf(foreign), "not preferences");
  EXPECT_FALSE(exists(home.path("nowhere")));
  EXPECT_EQ(run({"clean", "--yes"}).exitStatus, 0);
}

TEST_F(CleanCommand, hasItsGivenJsonForm) {
  recommended();
  const auto done = json({"clean", "--yes"});
  EXPECT_TRUE(Uuid::parse(done["runId"].get<std::string>()));
  EXPECT_EQ(done.dump(),
            R"({"runId":)" + done["runId"].dump() + R"(,"itemsProcessed":1,"bytesReclaimed":7,"failures":[]})");
  EXPECT_EQ(json({"clean", "--yes"}).dump(), R"({"runId":null,"itemsProcessed":0,"bytesReclaimed":0,"failures":[]})");
}

TEST_F(CleanCommand, selectsByCategoryAndRisk) {
  recommended("a.log");
  home.file("Downloads/new.dmg");
  home.file("Downloads/Screenshot.png");
  home.file("Downloads/note.txt");
  home.file("Library/Caches/App/data");
  home.file(".Trash/x.log");
  home.file("Downloads/.Trash/y.log");
  EXPECT_THAT(wouldMove({}), UnorderedElementsAre("Downloads/a.log", "Library/Caches/App"));
  EXPECT_THAT(wouldMove({"--category", "logs"}), ElementsAre("Downloads/a.log"));
  EXPECT_THAT(wouldMove({"--category", "oldDownloads"}), ElementsAre());
  EXPECT_THAT(wouldMove({"--category", "oldDownloads", "--include-review"}), ElementsAre("Downloads/new.dmg"));
  EXPECT_THAT(wouldMove({"--category=screenshots", "--category=logs", "--include-review"}),
              UnorderedElementsAre("Downloads/a.log", "Downloads/Screenshot.png"));
  EXPECT_THAT(wouldMove({"--category", "manualReview", "--include-review"}), ElementsAre());
  EXPECT_THAT(wouldMove({"Library"}), ElementsAre("Library/Caches/App"));
}

TEST_F(CleanCommand, dryRunShowsAndStops) {
  const auto log = recommended();
  const auto result = run({"clean", "--dry-run", "--yes"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.output,
            "   Size  Category           Item\n"
            "7 bytes  System & App Logs  ~/Downloads/old.log\n"
            "Would move 1 item (7 bytes) to the Trash.\n");
  const auto dry = json({"clean", "--dry-run"});
  EXPECT_EQ(dry["totalBytes"], 7);
  EXPECT_EQ(dry["items"][0]["url"], home.url("Downloads/old.log").absoluteString());
  EXPECT_EQ(dry["items"][0]["isSelected"], true);
  EXPECT_TRUE(exists(log));
  EXPECT_TRUE(isUntouched());
}

TEST_F(CleanCommand, leavesItemsInATrashAloneAndCountsNothingTwiceWhereFoldersOverlap) {
  const auto kept = home.file("Documents/.Trash/kept.log");
  home.file("Documents/in/plain.log");
  const auto result = run({"clean", "--yes", "Documents/.Trash", "Documents", "Documents/in"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.errors,
            "orvanectl: left out: 1 item (7 bytes) in a Trash already; emptying the Trash frees the space\n");
  EXPECT_THAT(result.output, HasSubstr("Moved 1 item "));
  EXPECT_TRUE(exists(kept));
  EXPECT_TRUE(exists(trashed("plain.log")));
}

TEST_F(CleanCommand, cleansTheOtherFoldersWhereOneIsMissing) {
  const auto log = recommended();
  EXPECT_EQ(run({"clean", "--yes", "nope"}).exitStatus, 1);
  EXPECT_TRUE(exists(log)) << "nothing that was named can be scanned";
  const auto result = run({"clean", "--yes", "--json", "nope", "Downloads"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(parseJson(result.output)["itemsProcessed"], 1);
  EXPECT_THAT(result.errors, HasSubstr("~/nope: No such file"));
}

TEST_F(CleanCommand, movesNamesOfEveryKind) {
  const std::vector<std::string> names{"new\nline.log", "\xFF.log", "\xE2\x80\xAEgol.log",
                                       std::string(251, 'n') + ".log"};
  for (const auto& name : names) recommended(name);
  EXPECT_EQ(json({"clean", "--yes"})["itemsProcessed"], names.size());
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], names.size());
  for (const auto& name : names) EXPECT_TRUE(exists(home.path("Downloads/" + name)));
}

TEST_F(CleanCommand, movesWhatLiesDeeperThanOneCallReaches) {
  FileDescriptor folder(::open(home.folder("Downloads").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const std::string name(240, 'd');
  for (int depth = 0; depth < 20; ++depth) {
    ASSERT_EQ(::mkdirat(folder.get(), name.c_str(), 0755), 0);
    folder.reset(::openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  }
  {
    const FileDescriptor file(::openat(folder.get(), "old.log", O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    writeAll(file.get(), "1234567");
  }
  EXPECT_EQ(json({"clean", "--yes"})["itemsProcessed"], 1);
  EXPECT_EQ(contentOf(trashed("old.log")), "1234567");
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], 1);
}

TEST_F(CleanCommand, warnsOfSyncedFolders) {
  home.file("Dropbox/a.log");
  home.file("Dropbox/b.log");
  const auto result = run({"clean", "--yes", "Dropbox"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_EQ(result.errors,
            "Warning: 2 items are synced via Dropbox. Deleting them will also remove them from your other "
            "connected devices.\n");
}

TEST_F(CleanCommand, takesOnlyWhatIsOldAndLargeEnough) {
  constexpr double day = 86400;
  const auto old = recommended("old.log", std::string(2000, 'x'));
  const auto small = recommended("small.log", "1234567");
  recommended("new.log", std::string(2000, 'x'));
  for (const auto& file : {old, small}) setAge(file, 40 * day);
  const auto taken = [&](const Words& options) { return wouldMove(options).size(); };
  EXPECT_EQ(taken({"--larger-than", "1.5K"}), 2U);
  EXPECT_EQ(taken({"--larger-than", "2kb"}), 2U);
  EXPECT_EQ(taken({"--larger-than", "2KiB"}), 0U);
  EXPECT_EQ(taken({"--older-than", "30"}), 2U);
  EXPECT_EQ(taken({"--older-than", "30", "--larger-than", "1000"}), 1U);
  for (const auto& [option, value] :
       {std::pair{"--larger-than", "much"}, std::pair{"--larger-than", "0"}, std::pair{"--larger-than", "-1M"},
        std::pair{"--older-than", "0"}, std::pair{"--older-than", "3d"}}) {
    EXPECT_EQ(run({"clean", "--dry-run", option, value}).exitStatus, 2) << value;
  }
  // Of a folder everything in it counts.
  const auto fresh = home.file(".cache/pip/http/fresh");
  for (const char* folder : {".cache/pip/http", ".cache/pip"}) setAge(home.path(folder), 40 * day);
  EXPECT_EQ(taken({"--older-than", "30", "--category", "caches"}), 0U);
  setAge(fresh, 40 * day);
  EXPECT_EQ(taken({"--older-than", "30", "--category", "caches"}), 1U);
  std::filesystem::remove_all(home.path(".cache/pip"));
  // A saved proposal is made again by the same measure.
  const auto saved = home.path("saved.json");
  EXPECT_EQ(run({"clean", "--older-than", "30", "--larger-than", "1000", "--save", saved}).exitStatus, 0);
  setAge(home.path("Downloads/new.log"), 40 * day);
  EXPECT_EQ(json({"apply", saved, "--yes"})["itemsProcessed"], 1);
  EXPECT_TRUE(exists(small) && exists(home.path("Downloads/new.log")));
}

TEST_F(CleanCommand, takesAYesForAYesOnly) {
  for (const auto& [answer, moves] : {std::pair{"y\n", true}, std::pair{"YES\n", true}, std::pair{"\n", false},
                                      std::pair{"n\n", false}, std::pair{"yep\n", false}, std::pair{"\x04", false}}) {
    const auto log = recommended();
    const auto result =
        answered({"clean"}, "Move 1 item (7 bytes) to the Trash? [y/N]", answer, [&] { EXPECT_TRUE(exists(log)); });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(exists(log), !moves) << answer;
    EXPECT_THAT(result.output, HasSubstr(moves ? "Moved 1 item" : "Nothing was moved."));
  }
}

TEST_F(CleanCommand, reportsWhatWasDoneWhenInterrupted) {
  constexpr std::int64_t count = 2000;
  for (int i = 0; i < count; ++i) recommended(std::to_string(i) + ".log");
  const auto journalFolder = home.folder("Library/Application Support/Orvane");
  std::optional<LiveProgram> program;
  {
    // The run stops at its first checkpoint, with some of the items moved, until this lock is given up.
    const auto lock = FileLock::acquire(journalFolder + "/undo_journal.lock");
    program.emplace(setup({"clean", "--yes", "--json"}));
    while (countIn(home.path(".local/share/Trash/files")) < 512) std::this_thread::yield();
    program->signal(SIGTERM);
    program->waitForSignalsTaken();
  }
  const auto result = program->finish();
  EXPECT_EQ(result.exitStatus, 130);
  EXPECT_THAT(result.errors, HasSubstr("interrupted"));
  const auto report = parseJson(result.output);
  const auto moved = report["itemsProcessed"].get<std::int64_t>();
  EXPECT_GE(moved, 512);
  EXPECT_LT(moved, count);
  EXPECT_EQ(countIn(home.path(".local/share/Trash/files")), moved);
  EXPECT_EQ(countIn(home.path("Downloads")), count - moved);
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], moved);
  EXPECT_EQ(countIn(home.path("Downloads")), count);
}

}  // namespace
}  // namespace orvane::test
