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
  home.files({"Downloads/note.txt", "Downloads/Screenshot.png"});
  const auto result = run({"clean", "--yes"});
  EXPECT_EQ(result.errors, "");
  EXPECT_THAT(result, Says("Moved 1 item (7 bytes) to the Trash. The space is free once the Trash is emptied."));
  EXPECT_EQ(contentOf(trashed("old.log")), "1234567");
  EXPECT_TRUE(holds({"Downloads/note.txt", "Downloads/Screenshot.png"}, {"Downloads/old.log"}));

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
      EXPECT_THAT(run(words), Fails(1, "preferences.json' cannot be read"));
    }
    EXPECT_TRUE(exists(log));
    EXPECT_EQ(run({"history"}).exitStatus, 0) << "what moved before can be seen, and brought back";
    EXPECT_EQ(std::filesystem::symlink_status(place).type(), kind);
    std::filesystem::remove(place);
  }
  EXPECT_EQ(contentOf(foreign), "not preferences");
  EXPECT_TRUE(holds({}, {"nowhere"}));
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
  home.files({"Downloads/a.log", "Downloads/new.dmg", "Downloads/Screenshot.png", "Downloads/note.txt",
              "Library/Caches/App/data", ".Trash/x.log", "Downloads/.Trash/y.log"});
  for (const auto& [options, items] :
       Rows<Words, Words>{{{}, {"Downloads/a.log", "Library/Caches/App"}},
                          {{"--category", "logs"}, {"Downloads/a.log"}},
                          {{"--category", "oldDownloads"}, {}},
                          {{"--category", "oldDownloads", "--include-review"}, {"Downloads/new.dmg"}},
                          {{"--category=screenshots", "--category=logs", "--include-review"},
                           {"Downloads/a.log", "Downloads/Screenshot.png"}},
                          {{"--category", "manualReview", "--include-review"}, {}},
                          {{"Library"}, {"Library/Caches/App"}}}) {
    EXPECT_THAT(wouldMove(options), testing::UnorderedElementsAreArray(items)) << testing::PrintToString(options);
  }
}

TEST_F(CleanCommand, dryRunShowsAndStops) {
  const auto log = recommended();
  EXPECT_THAT(run({"clean", "--dry-run", "--yes"}), Says("   Size  Category           Item\n"
                                                         "7 bytes  System & App Logs  ~/Downloads/old.log\n"
                                                         "Would move 1 item (7 bytes) to the Trash.\n"));
  const auto dry = json({"clean", "--dry-run"});
  EXPECT_EQ(dry["totalBytes"], 7);
  EXPECT_TRUE(tells(dry["items"][0], {{"url", FileUrl(log).absoluteString()}, {"isSelected", true}}));
  EXPECT_TRUE(exists(log));
  EXPECT_TRUE(isUntouched());
}

TEST_F(CleanCommand, leavesItemsInATrashAloneAndCountsNothingTwiceWhereFoldersOverlap) {
  home.files({"Documents/.Trash/kept.log", "Documents/in/plain.log"});
  const auto result = run({"clean", "--yes", "Documents/.Trash", "Documents", "Documents/in"});
  EXPECT_EQ(result.errors,
            "orvanectl: left out: 1 item (7 bytes) in a Trash already; emptying the Trash frees the space\n");
  EXPECT_THAT(result, Says("Moved 1 item "));
  EXPECT_TRUE(holds({"Documents/.Trash/kept.log", ".local/share/Trash/files/plain.log"}));
}

TEST_F(CleanCommand, cleansTheOtherFoldersWhereOneIsMissing) {
  const auto log = recommended();
  EXPECT_EQ(run({"clean", "--yes", "nope"}).exitStatus, 1);
  EXPECT_TRUE(exists(log)) << "nothing that was named can be scanned";
  EXPECT_THAT(run({"clean", "--yes", "nope", "Downloads"}), Fails(1, "~/nope: No such file"));
  EXPECT_FALSE(exists(log));
}

TEST_F(CleanCommand, movesNamesOfEveryKindThatAScanFindsByTheirUrls) {
  Words names{"new\nline.log", "esc\x1b[31m.log", "\xE2\x80\xAEgol.log",
              "\xFF\xFE.log",  "a\\b\".log",      std::string(251, 'n') + ".log"};
  Words urls;
  for (auto& name : names) {
    name.insert(0, "Downloads/");
    home.file(name);
    urls.push_back(home.url(name).absoluteString());
  }
  EXPECT_THAT(wouldMove({}), testing::UnorderedElementsAreArray(names));
  Words found;
  for (const auto& [path, item] : scanned({"scan", "--json"})) found.push_back(item["url"]);
  EXPECT_THAT(found, testing::UnorderedElementsAreArray(urls));
  EXPECT_EQ(json({"clean", "--yes"})["itemsProcessed"], names.size());
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], names.size());
  EXPECT_TRUE(holds(names));
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
  for (const auto* wrong :
       {"--larger-than=much", "--larger-than=0", "--larger-than=-1M", "--older-than=0", "--older-than=3d"}) {
    EXPECT_EQ(run({"clean", "--dry-run", wrong}).exitStatus, 2) << wrong;
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
    EXPECT_THAT(
        answered({"clean"}, "Move 1 item (7 bytes) to the Trash? [y/N]", answer, [&] { EXPECT_TRUE(exists(log)); }),
        Says(moves ? "Moved 1 item" : "Nothing was moved."));
    EXPECT_EQ(exists(log), !moves) << answer;
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
  EXPECT_THAT(result, Fails(130, "interrupted"));
  const auto report = parseJson(result.output);
  const auto moved = report["itemsProcessed"].get<std::int64_t>();
  EXPECT_THAT(moved, AllOf(testing::Ge(512), testing::Lt(count)));
  EXPECT_EQ(countIn(home.path(".local/share/Trash/files")), moved);
  EXPECT_EQ(countIn(home.path("Downloads")), count - moved);
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], moved);
  EXPECT_EQ(countIn(home.path("Downloads")), count);
}

}  // namespace
}  // namespace orvane::test
