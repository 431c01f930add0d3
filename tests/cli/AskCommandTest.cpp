#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

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

  EXPECT_THAT(keysOf(answer), ElementsAre("plan", "matches", "validationError", "provider", "usedFallback",
                                          "understood", "doubt", "reading", "room"));
  EXPECT_TRUE(tells(answer, {{"provider", "offline_heuristic"}, {"usedFallback", false}}));
  EXPECT_TRUE(answer["validationError"].is_null());
  ASSERT_EQ(answer["matches"].size(), 1U);
  EXPECT_TRUE(tells(answer["matches"][0], {{"item", {{"url", FileUrl(shot).absoluteString()}}},
                                           {"action", "move"},
                                           {"isSelected", true},
                                           {"canExecute", true}}));
  EXPECT_TRUE(holds({"Downloads/Screenshot 1.png"}, {".local"}));
}

TEST_F(AskCommand, printsThePlanForPeople) {
  aged("Downloads/Screenshot 1.png", 40.5);
  aged("Downloads/setup.dmg", 40.5);
  const auto shots = run({"ask", "  clean\tscreenshots "});
  EXPECT_THAT(shots, Says("Goal:     clean\\tscreenshots\n", "Summary:  Find and trash old screenshots.\n",
                          "move to the Trash from ~/Downloads", "30 days old or older",
                          "Move screenshots older than 30 days to Trash.", "1 item found, 0 selected",
                          "7 bytes  40 days  review  ~/Downloads/Screenshot 1.png  not selected"));
  EXPECT_THAT(shots.output, Not(HasSubstr("setup.dmg")));
}

TEST_F(AskCommand, showsAPlanThatCannotBeUsed) {
  const auto file = home.file("Downloads/a.txt");
  const std::string reason = "Filter criteria must specify at least one filter attribute.";
  const auto answer = json({"ask", "sort my downloads"}, 1);
  EXPECT_EQ(answer["validationError"], reason);
  EXPECT_THAT(answer["matches"], IsEmpty());

  const auto shown = run({"ask", "sort my downloads", "--apply", "--yes"});
  EXPECT_THAT(shown.output, HasSubstr("Organize Downloads into structured categories."));
  EXPECT_THAT(shown, Fails(1, reason, "'orvanectl organize FOLDER' sorts a whole folder"));
  EXPECT_TRUE(exists(file));
}

TEST_F(AskCommand, appliesWhatIsSelectedAsARunThatComesBackAndKeepsTheGoalAsTyped) {
  home.folder("Library/Caches");
  const auto log = aged("Library/Logs/old.log", 40, "precious");
  aged("Library/Logs/new.log", 20);
  const auto* goal = "Lösche Protokolle, die älter als ein Monat sind";
  const auto answer = json({"ask", goal, "--apply", "--yes"});
  EXPECT_EQ(answer["plan"]["userGoal"], goal);
  EXPECT_EQ(answer["plan"]["steps"][0]["filter"]["minimumAgeDays"], 30);
  EXPECT_TRUE(tells(answer["summary"], {{"itemsProcessed", 1}, {"bytesReclaimed", 8}}));
  EXPECT_TRUE(holds({"Library/Logs/new.log"}, {"Library/Logs/old.log"}));
  EXPECT_EQ(json({"restore", answer["summary"]["batchId"], "--yes"})["restoredCount"], 1);
  EXPECT_EQ(contentOf(log), "precious");
}

TEST_F(AskCommand, savesThePlanAsARuleThatIsPreviewed) {
  const auto shot = aged("Downloads/Screenshot 1.png", 40);
  aged("Downloads/Screenshot 2.png", 2);
  const auto saved = json({"ask", "clean screenshots", "--save-rule", "Old shots"});
  EXPECT_TRUE(tells(saved["rule"], {{"name", "Old shots"}, {"trigger", {{"minimumAgeDays", 30}}}}));
  EXPECT_EQ(saved["preview"]["matches"].size(), 1U);
  EXPECT_TRUE(exists(shot)) << "a rule is saved, and nothing moved";
  EXPECT_EQ(json({"rules", "run", "Old shots", "--yes"})["itemsProcessed"], 1);

  for (const auto& [prompt, name, status, reason] :
       {std::tuple("sort screenshots", "Sorted", 1, "a folder for each kind"),
        std::tuple("sort my downloads", "Sorted", 2, "orvanectl organize"),
        std::tuple("clean logs", " ", 1, "\"name\" must not be empty")}) {
    const auto refused = run({"ask", prompt, "--save-rule", name});
    EXPECT_EQ(refused.exitStatus, status);
    EXPECT_THAT(refused.errors, HasSubstr(reason));
    EXPECT_THAT(run({"rules", "list"}).output, Not(HasSubstr("Sorted")));
  }
}

TEST_F(AskCommand, saysWhichFolderIsMissing) {
  const auto result = run({"ask", "clean screenshots on my desktop"});
  EXPECT_THAT(result, Fails(1, "orvanectl: ~/Desktop: No such file or directory\n"));
  EXPECT_THAT(result.output, HasSubstr("No file matches."));
}

TEST_F(AskCommand, saysWhatWasRead) {
  aged("Library/Logs/old.log", 40);
  const auto text = run({"ask", "Delete logs, older than a month"}).output;
  EXPECT_THAT(text, AllOf(HasSubstr("Read:     Delete → to the Trash\n"), HasSubstr("logs → ~/Library/Logs\n"),
                          HasSubstr("older than a month → 30 days\n"), Not(HasSubstr("Not understood"))));
  EXPECT_THAT(run({"ask", "delete old pizza boxes"}),
              Says("old → 30 days\n", "no folder named: ~/Downloads\n", "meant nothing: pizza boxes\n",
                   "“pizza”, “boxes” may change"));
  const auto answer = json({"ask", "Delete logs"});
  EXPECT_EQ(answer["understood"], true);
  EXPECT_EQ(answer["reading"][1], parseJson(R"({"text":"logs","meaning":"logs","value":")" + home.path("Library/Logs") +
                                            R"(","counts":true})"));
}

TEST_F(AskCommand, selectsAndMovesNothingThatItDidNotUnderstand) {
  home.folder("Library/Caches");
  const auto log = aged("Downloads/old.log", 400);
  for (const auto* request : {"delete emails older than a year", "don't delete files older than a year",
                              "which files are older than a year", "delete files older than a year?"}) {
    SCOPED_TRACE(request);
    const auto answer = json({"ask", request});
    ASSERT_EQ(answer["matches"].size(), 1U);
    EXPECT_FALSE(answer["understood"].get<bool>() || answer["matches"][0]["isSelected"].get<bool>());
    EXPECT_THAT(run({"ask", request}), Says("Not understood; here is the closest\n"));
    EXPECT_THAT(run({"ask", request, "--apply", "--yes"}), Fails(2, "--anyway"));
    EXPECT_TRUE(exists(log));
  }
  EXPECT_EQ(
      json({"ask", "delete emails older than a year", "--apply", "--anyway", "--yes"})["summary"]["itemsProcessed"], 1);
  EXPECT_FALSE(exists(log));
}

TEST_F(AskCommand, namesTheCommandThatDoesIt) {
  const auto answer = json({"ask", "uninstall zoom"});
  EXPECT_EQ(answer["room"], parseJson(R"({"room":"uninstall","command":"orvanectl apps uninstall zoom"})"));
  EXPECT_THAT(run({"ask", "find duplicates in downloads"}),
              Says("Another command does this: orvanectl duplicates ~/Downloads.\n"));
  EXPECT_THAT(run({"ask", "uninstall zoom", "--apply", "--yes"}), Fails(2, "orvanectl apps uninstall zoom"));
}

TEST_F(AskCommand, takesThePlacesOfAProgramWholeAndNothingElse) {
  home.folder("Library/Caches");
  home.file(".cache/pip/http/a", "1234567");
  home.files({".npm/_cacache/a", ".config/discord/Cache/a"});
  const auto answer = json({"ask", "clear pip cache", "--apply", "--yes"});
  EXPECT_EQ(answer["understood"], true);
  ASSERT_EQ(answer["matches"].size(), 1U);
  EXPECT_EQ(answer["matches"][0]["item"]["url"], FileUrl(home.path(".cache/pip")).absoluteString());
  EXPECT_EQ(answer["summary"]["bytesReclaimed"], 7);
  EXPECT_TRUE(holds({".npm/_cacache/a"}, {".cache/pip"}));
  EXPECT_EQ(run({"restore", "--last", "--yes"}).exitStatus, 0);
  EXPECT_TRUE(exists(home.path(".cache/pip/http/a")));
  EXPECT_THAT(json({"ask", "delete npm logs"})["matches"], IsEmpty()) << "its cache is none";
  // As the scan labels it.
  EXPECT_EQ(json({"ask", "delete discord cache"})["matches"][0]["isSelected"], false);
  EXPECT_EQ(run({"folders", "known", "off"}).exitStatus, 0);
  EXPECT_EQ(json({"ask", "clear pip cache"})["understood"], false);
}

TEST_F(AskCommand, takesBuildFoldersOfIdleProjects) {
  for (const auto* name : {"Documents/old", "Documents/new"}) {
    const std::string folder = name;
    const auto days = folder.ends_with("old") ? 100.0 : 3.0;
    aged(folder + "/package.json", days);
    aged(folder + "/node_modules/a/index.js", days);
    aged(folder + "/node_modules.txt", days);
  }
  const auto matches = json({"ask", "remove old node_modules"})["matches"];
  ASSERT_EQ(matches.size(), 1U);
  EXPECT_EQ(matches[0]["item"]["relativePath"], "old/node_modules");
  EXPECT_EQ(matches[0]["isSelected"], false) << "as the scan labels it";
  EXPECT_EQ(json({"ask", "delete node_modules"})["matches"].size(), 2U);
}

TEST_F(AskCommand, saysWhatLiesBesideAndTakesItOnRequest) {
  home.folder("Library/Caches");
  home.file(".cache/mozilla/a", "1234567");
  home.file(".cache/other/a", "12345");
  EXPECT_THAT(
      run({"ask", "clear browser caches"}),
      Says("Browser Caches of programs are a category of their own: 7 bytes. Add them with --with browserCaches.\n"));
  const auto answer = json({"ask", "clear browser caches", "--with", "browserCaches", "--apply", "--yes"});
  EXPECT_EQ(answer["summary"]["bytesReclaimed"], 7);
  EXPECT_TRUE(holds({".cache/other/a"}, {".cache/mozilla"}));
}

TEST_F(AskCommand, aSavedFileTakesNoPlaceThatIsNone) {
  home.file(".cache/pip/http/a");
  const auto file = home.path("proposal.json");
  EXPECT_EQ(run({"ask", "clear pip cache", "--save", file}).exitStatus, 0);
  const auto kept = home.file(".config/app/settings");
  auto text = contentOf(file);
  for (auto at = text.find(".cache/pip"); at != std::string::npos; at = text.find(".cache/pip")) {
    text.replace(at, 10, ".config/app");
  }
  home.file("changed.json", text);
  EXPECT_EQ(json({"apply", "--yes", home.path("changed.json")}, 1)["itemsProcessed"], 0);
  EXPECT_TRUE(exists(kept));
}

}  // namespace
}  // namespace orvane::test
