#include "tests/cli/OrvanectlFixture.h"
#include "tests/support/LocalServer.h"

namespace orvane::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class TidyCommand : public Orvanectl {
 public:
  TidyCommand() { home.folder("Downloads"); }
  // New here, and last changed before the settle time.
  std::string arrive(const std::string& name) const {
    const auto path = home.file("Downloads/" + name);
    setAge(path, 300);
    return path;
  }
};

TEST_F(TidyCommand, showsAndChangesSettings) {
  EXPECT_EQ(json({"tidy", "show"})["folderPaths"][1], home.path("Downloads"));
  EXPECT_EQ(json({"tidy", "enable"})["isEnabled"], true);
  EXPECT_EQ(json({"tidy", "disable"})["isEnabled"], false);
  home.folder("a");
  home.folder("b");
  const auto settings = json({"tidy", "set", "--days", "30", "--folder", "a", "--folder", "b", "--ai-topics", "off"});
  EXPECT_EQ(settings["recentsDays"], 30);
  EXPECT_EQ(settings["folderPaths"], Json::array({home.path("a"), home.path("b")}));
  EXPECT_EQ(settings["useAITopics"], false);
  EXPECT_EQ(json({"tidy", "set", "--days", "1"})["folderPaths"].size(), 2U);
  EXPECT_THAT(run({"tidy", "show"}).output,
              AllOf(HasSubstr("Recent for        1 day\n"), HasSubstr("~/b"), HasSubstr("Last run          never")));
  EXPECT_THAT(run({"tidy", "set", "--ai-topics", "on"}).output, HasSubstr("no model on this machine is set up"));
}

TEST_F(TidyCommand, refusesSettingsThatMakeNoSense) {
  for (const Words& words : {Words{"--days", "0"}, Words{"--days", "31"}, Words{"--days", "3x"}, Words{"--days", ""},
                             Words{"--folder", "missing"}, Words{"--folder", "/etc"}, Words{"--folder", "."},
                             Words{"--ai-topics", "maybe"}, Words{}}) {
    Words all{"tidy", "set"};
    all.insert(all.end(), words.begin(), words.end());
    EXPECT_EQ(run(all).exitStatus, 2) << testing::PrintToString(words);
  }
  EXPECT_EQ(json({"tidy", "show"})["recentsDays"], 3);
}

TEST_F(TidyCommand, runsAndComesBack) {
  const auto path = arrive("new.pdf");
  EXPECT_EQ(run({"tidy", "run"}).exitStatus, 2) << "nobody can be asked";
  const auto report = json({"tidy", "run", "--yes"});
  EXPECT_EQ(report["result"]["movedToRecents"], 1);
  EXPECT_EQ(report["result"]["sorted"], 0);
  EXPECT_EQ(report["statusMessage"], "Moved 1 new item to Recents and sorted 0. Undo anytime in History.");
  EXPECT_TRUE(exists(home.path("Downloads/Recents/new.pdf")));
  EXPECT_EQ(json({"restore", report["result"]["batchIDs"][0].get<std::string>(), "--yes"})["restoredCount"], 1);
  EXPECT_TRUE(exists(path));
  EXPECT_EQ(json({"tidy", "show"})["lastRunMovedCount"], 1);
  EXPECT_EQ(run({"tidy", "run", "--yes"}).output, "Everything is tidy.\n");
}

TEST_F(TidyCommand, leavesAloneWhatWasBroughtBackUntilItChanges) {
  const auto kept = arrive("kept.pdf");
  const auto changed = arrive("changed.pdf");
  const auto numbered = arrive("report.pdf");
  EXPECT_EQ(json({"tidy", "run", "--yes"})["result"]["movedToRecents"], 3);
  // Its place is taken when it comes back.
  home.file("Downloads/report.pdf", "another");
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], 3);
  std::filesystem::remove(numbered);
  const auto again = run({"tidy", "run", "--yes"});
  EXPECT_EQ(again.output, "Everything is tidy.\n");
  EXPECT_THAT(again.errors, HasSubstr("left alone: 3 items (21 bytes) brought back before and not changed since"));

  home.file("Downloads/changed.pdf", "written to since");
  EXPECT_EQ(json({"tidy", "run", "--yes"})["result"]["movedToRecents"], 0) << "it may still be changing";
  EXPECT_EQ(json({"tidy", "run", "--yes", "--returned"})["result"]["movedToRecents"], 2);
  EXPECT_TRUE(exists(changed));
  EXPECT_FALSE(exists(kept));
}

TEST_F(TidyCommand, proposesNothingThatCouldNotMove) {
  const auto climbing = arrive("a..b.pdf");
  const auto open = arrive("~$letter.docx");
  arrive("new.pdf");
  const auto result = run({"tidy", "run", "--yes"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.output, HasSubstr("Moved 1 new item to Recents"));
  EXPECT_THAT(result.errors,
              AllOf(HasSubstr("left out: 1 item (7 bytes) that may not be moved ("), HasSubstr("a..b.pdf")));
  EXPECT_TRUE(exists(climbing));
  EXPECT_TRUE(exists(open));
}

TEST_F(TidyCommand, showsAtATerminalWhatItWillDoAndAsks) {
  const auto path = arrive("new.pdf");
  LiveProgram refused(terminalSetup({"tidy", "run"}));
  refused.waitForOutput("Move 1 item? [y/N] ");
  refused.send("n\n");
  const auto result = refused.finish();
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_TRUE(exists(path));
  EXPECT_EQ(json({"tidy", "show"}).contains("lastRunDate"), false);

  LiveProgram consenting(terminalSetup({"tidy", "run"}));
  consenting.waitForOutput("Recents (1 item");
  consenting.waitForOutput("[y/N] ");
  consenting.send("y\n");
  EXPECT_EQ(consenting.finish().exitStatus, 0);
  EXPECT_FALSE(exists(path));
}

TEST_F(TidyCommand, movesWhatItShowedAndNothingElse) {
  home.folder("Dropbox");
  EXPECT_EQ(run({"tidy", "set", "--folder", "Downloads", "--folder", "Dropbox"}).exitStatus, 0);
  const auto replaced = arrive("replaced.pdf");
  arrive("same.pdf");
  setAge(home.file("Dropbox/note.txt"), 300);
  setAge(home.file("Downloads/folder/in.txt"), 300);
  setAge(home.path("Downloads/folder"), 300);
  LiveProgram program(terminalSetup({"tidy", "run"}));
  program.waitForOutput("Move 4 items? [y/N] ");
  std::filesystem::remove(replaced);
  home.file("Downloads/replaced.pdf", "another one");
  arrive("arrived.pdf");
  std::filesystem::rename(home.path("Downloads/folder"), home.path("other"));
  home.file("Downloads/folder/in.txt", "another");
  program.send("y\n");
  const auto result = program.finish();
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.output,
              AllOf(HasSubstr("Warning: 'note.txt' is synced via Dropbox."),
                    HasSubstr("Downloads/replaced.pdf' has changed since it was looked at."),
                    HasSubstr("Downloads/folder' has changed since it was looked at."),
                    Not(HasSubstr("Trash operation failed")), HasSubstr("Moved 2 new items to Recents and sorted 0.")));
  EXPECT_EQ(contentOf(replaced), "another one");
  EXPECT_TRUE(exists(home.path("Downloads/arrived.pdf")));
  EXPECT_EQ(contentOf(home.path("Downloads/folder/in.txt")), "another");
  EXPECT_TRUE(exists(home.path("Downloads/Recents/same.pdf")));
}

TEST_F(TidyCommand, namesTheFoldersThatItCannotTidy) {
  arrive("new.pdf");
  std::filesystem::remove_all(home.path("Desktop"));
  const auto result = run({"tidy", "run", "--yes"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.errors, HasSubstr("~/Desktop: No such file or directory"));
}

TEST_F(TidyCommand, namesTheServersProblem) {
  const LocalServer server([](const auto&) { return LocalServer::answer(200, "{}"); });
  home.file(".config/orvane/preferences.json", "{\"OrvaneLocalModelEndpoint\":\"" + server.url() + "\"}");
  EXPECT_THAT(run({"tidy", "show"}).output, HasSubstr("Topics            on\n"));
  home.file(".config/orvane/preferences.json", R"({"OrvaneLocalModelEndpoint":"http://10.0.0.1"})");
  EXPECT_THAT(run({"tidy", "show"}).output, HasSubstr("names may only be sent to this machine"));
}

}  // namespace
}  // namespace orvane::test
