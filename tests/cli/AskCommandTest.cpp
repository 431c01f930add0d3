#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class AskCommand : public Orvanectl {
 public:
  AskCommand() { home.folder("Downloads"); }

  std::string aged(std::string_view name, double days, std::string_view content = "1234567") const {
    auto path = home.file(name, content);
    setAge(path, days * 86400);
    return path;
  }
};

TEST_F(AskCommand, answersWithThePlanAndWhatItWouldDo) {
  const auto shot = aged("Downloads/Screenshot 1.png", 20);
  aged("Downloads/photo.png", 20);
  aged("Downloads/sub/Screenshot 2.png", 20);
  const auto answer = json({"ask", "tidy screenshots in downloads"});

  std::vector<std::string> keys;
  for (const auto& [key, value] : answer.items()) keys.push_back(key);
  EXPECT_THAT(keys, testing::ElementsAre("plan", "matches", "validationError", "provider", "usedFallback"));
  EXPECT_EQ(answer["plan"]["steps"][0]["targetFolder"], home.path("Downloads"));
  EXPECT_EQ(answer["provider"], "offline_heuristic");
  EXPECT_EQ(answer["usedFallback"], false);
  EXPECT_TRUE(answer["validationError"].is_null());
  ASSERT_EQ(answer["matches"].size(), 1U);
  const auto& match = answer["matches"][0];
  EXPECT_EQ(match["item"]["url"], FileUrl(shot).absoluteString());
  EXPECT_EQ(match["action"], "move");
  EXPECT_EQ(match["isSelected"], true);
  EXPECT_EQ(match["canExecute"], true);
  EXPECT_TRUE(exists(shot));
  EXPECT_FALSE(exists(home.path(".local")));
}

TEST_F(AskCommand, printsThePlanForPeople) {
  aged("Downloads/Screenshot 1.png", 40.5);
  aged("Downloads/setup.dmg", 40.5);
  const auto shots = run({"ask", "  clean\tscreenshots "});
  EXPECT_EQ(shots.exitStatus, 0);
  EXPECT_THAT(shots.output, AllOf(HasSubstr("Goal:     clean\\tscreenshots\n"),
                                  HasSubstr("Summary:  Find and trash old screenshots.\n"),
                                  HasSubstr("move to the Trash from ~/Downloads"), HasSubstr("30 days old or older"),
                                  HasSubstr("Move screenshots older than 30 days to Trash."),
                                  HasSubstr("7 bytes  40 days  review  ~/Downloads/Screenshot 1.png  not selected"),
                                  HasSubstr("1 item found, 0 selected")));
  EXPECT_THAT(shots.output, Not(HasSubstr("setup.dmg")));
}

TEST_F(AskCommand, showsAPlanThatCannotBeUsed) {
  const auto file = home.file("Downloads/a.txt");
  const std::string reason = "Filter criteria must specify at least one filter attribute.";
  const auto answer = json({"ask", "sort my downloads"}, 1);
  EXPECT_EQ(answer["validationError"], reason);
  EXPECT_EQ(answer["plan"]["steps"][0]["destinationFolder"], home.path("Downloads"));
  EXPECT_THAT(answer["matches"], IsEmpty());

  const auto shown = run({"ask", "sort my downloads", "--apply", "--yes"});
  EXPECT_EQ(shown.exitStatus, 1);
  EXPECT_THAT(shown.output, HasSubstr("Organize Downloads into structured categories."));
  EXPECT_THAT(shown.errors, AllOf(HasSubstr(reason), HasSubstr("'orvanectl organize FOLDER' sorts a whole folder")));
  EXPECT_TRUE(exists(file));
}

TEST_F(AskCommand, appliesWhatIsSelectedAsARunThatComesBack) {
  home.folder("Library/Caches");
  const auto log = aged("Library/Logs/old.log", 40, "precious");
  const auto young = aged("Library/Logs/new.log", 2);
  const auto answer = json({"ask", "delete old logs", "--apply", "--yes"});
  EXPECT_EQ(answer["summary"]["itemsProcessed"], 1);
  EXPECT_EQ(answer["summary"]["bytesReclaimed"], 8);
  EXPECT_FALSE(exists(log));
  EXPECT_TRUE(exists(young));
  EXPECT_EQ(json({"restore", answer["summary"]["batchId"], "--yes"})["restoredCount"], 1);
  EXPECT_EQ(contentOf(log), "precious");
}

TEST_F(AskCommand, understandsOtherLanguagesAndKeepsTheGoalAsTyped) {
  home.folder("Library/Caches");
  const auto log = aged("Library/Logs/old.log", 40, "precious");
  const auto young = aged("Library/Logs/new.log", 20);
  const auto* goal = "Lösche Protokolle, die älter als ein Monat sind";
  const auto answer = json({"ask", goal, "--apply", "--yes"});
  EXPECT_EQ(answer["plan"]["userGoal"], goal);
  EXPECT_EQ(answer["plan"]["steps"][0]["filter"]["minimumAgeDays"], 30);
  EXPECT_EQ(answer["summary"]["itemsProcessed"], 1);
  EXPECT_FALSE(exists(log));
  EXPECT_TRUE(exists(young));
}

TEST_F(AskCommand, asksBeforeItActs) {
  const auto shot = aged("Downloads/Screenshot 1.png", 40);
  for (const char* answer : {"n\n", "\n"}) {
    LiveProgram program(terminalSetup({"ask", "sort screenshots", "--apply"}));
    program.waitForOutput("[y/N] ");
    program.send(answer);
    const auto result = program.finish();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.output, HasSubstr("Nothing was moved."));
    EXPECT_TRUE(exists(shot));
  }
  LiveProgram program(terminalSetup({"ask", "sort screenshots", "--apply"}));
  program.waitForOutput("Move 1 item into other folders? [y/N] ");
  program.send("y\n");
  EXPECT_THAT(program.finish().output, HasSubstr("orvanectl restore "));
  EXPECT_TRUE(exists(home.path("Downloads/Media/Screenshots/Screenshot 1.png")));
}

TEST_F(AskCommand, leavesAloneAFileThatIsReplacedWhileItAsks) {
  const auto shot = aged("Downloads/Screenshot 1.png", 40);
  LiveProgram program(terminalSetup({"ask", "sort screenshots", "--apply"}));
  program.waitForOutput("[y/N] ");
  std::filesystem::remove(shot);
  home.file("Downloads/Screenshot 1.png", "another one");
  program.send("y\n");
  EXPECT_EQ(program.finish().exitStatus, 1);
  EXPECT_EQ(contentOf(shot), "another one");
}

TEST_F(AskCommand, saysWhichFolderIsMissing) {
  const auto result = run({"ask", "clean screenshots on my desktop"});
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(result.errors, "orvanectl: ~/Desktop: No such file or directory\n");
  EXPECT_THAT(result.output, HasSubstr("No file matches."));
}

}  // namespace
}  // namespace orvane::test
