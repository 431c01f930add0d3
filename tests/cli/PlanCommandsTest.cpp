#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

class PlanCommands : public Orvanectl {
 public:
  PlanCommands() { home.folder("Downloads"); }
};

TEST_F(PlanCommands, validatesFromAFileAndFromStandardInput) {
  const auto file = plan({stepOf("/home/x", "trash")});
  EXPECT_EQ(json({"plan", "validate", file}).dump(), R"({"valid":true,"error":null})");
  LiveProgram program(setup({"plan", "validate", "-"}));
  program.send(contentOf(file));
  EXPECT_EQ(program.finish().output, "The plan is valid.\n");
  EXPECT_EQ(json({"plan", "validate", plan({stepOf("  /usr ", "trash")})}, 1).dump(),
            R"({"valid":false,"error":"Target folder is protected and prohibited: /usr"})");
}

TEST_F(PlanCommands, refusesWhatIsNoPlanInOneLine) {
  const auto target = recommended();
  for (const auto& text : {std::string("{"), std::string("[]"), std::string(5'000'000, ' '), std::string(100'000, '['),
                           std::string(R"({"id":"x","id":"y"})"), std::string("{\"a\x1b\":1,\"a\x1b\":1}")}) {
    const auto file = home.file("plan.json", text);
    EXPECT_EQ(run({"plan", "validate", file}).exitStatus, 1);
    for (const Words& words : {Words{"plan", "preview", file}, Words{"plan", "run", file, "--yes"}}) {
      const auto result = run(words);
      EXPECT_EQ(result.exitStatus, 1);
      EXPECT_EQ(result.output, "");
      EXPECT_THAT(result.errors, StartsWith("orvanectl: "));
      EXPECT_LT(result.errors.size(), 500U);
      EXPECT_EQ(json(words, 1)["valid"], false);
    }
  }
  EXPECT_EQ(json({"plan", "validate", home.file("plan.json", std::string(5'000'000, ' '))}, 1).dump(),
            R"({"valid":false,"error":"it is longer than 4.2 MB"})");
  EXPECT_THAT(run({"plan", "validate", "missing.json"}).errors, HasSubstr("missing.json: No such file"));
  EXPECT_TRUE(exists(target));
}

TEST_F(PlanCommands, previewsWithoutChangingAnything) {
  recommended();
  home.file("Downloads/notes.txt");
  const auto matches = json({"plan", "preview", plan({stepOf("~/Downloads", "trash")})});
  ASSERT_EQ(matches.size(), 2U);
  EXPECT_EQ(matches[0]["explanation"], "because");
  for (const auto& match : matches) EXPECT_EQ(match["isSelected"], match["item"]["riskLabel"] == "safe");
  EXPECT_TRUE(holds({"Downloads/old.log"}, {"Library"}));
}

TEST_F(PlanCommands, runsAndComesBack) {
  recommended("old.log", "log");
  home.file("Documents/letter.txt", "letter");
  auto sort = stepOf(home.path("Documents"), "move", {{"extensions", {"txt"}}});
  sort["destinationFolder"] = home.path("Documents/Letters");
  const auto file = plan({stepOf(home.path("Downloads"), "trash"), sort});
  const auto summary = json({"plan", "run", file, "--yes"});
  EXPECT_TRUE(tells(summary, {{"itemsProcessed", 2}, {"bytesReclaimed", 3}}));
  EXPECT_EQ(contentOf(home.path("Documents/Letters/letter.txt")), "letter");
  EXPECT_EQ(contentOf(trashed("old.log")), "log");
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], 2);
  EXPECT_EQ(contentOf(home.path("Documents/letter.txt")), "letter");
  EXPECT_EQ(contentOf(home.path("Downloads/old.log")), "log");

  EXPECT_THAT(run({"plan", "run", file, "--yes"}),
              Says("Step 1:   move to the Trash from ~/Downloads", "2 items found, 2 selected",
                   "~/Documents/letter.txt  selected: goes to ~/Documents/Letters\n",
                   "Moved 1 item (3 bytes) to the Trash and 1 item into other folders."));
}

TEST_F(PlanCommands, holdsAStepAgainstItsOwnFolderOnly) {
  home.files({"Documents/keep.log", "Downloads/go.log", "Downloads/sub/inner.log"});
  const auto summary = json(
      {"plan", "run",
       plan({stepOf("~/Downloads/sub", "review"), stepOf("~/Downloads", "trash"), stepOf("~/Documents", "review")}),
       "--yes"});
  EXPECT_EQ(summary["itemsProcessed"], 1);
  EXPECT_TRUE(holds({"Documents/keep.log", "Downloads/sub/inner.log"}, {"Downloads/go.log"}));
}

TEST_F(PlanCommands, changeNothingElsewhere) {
  const auto outside = home.file("Elsewhere/old.log", "stays");
  const auto inside = recommended("own.log", "stays");
  for (const auto& folder : Words{"/", "/etc", home.path(), "~", home.path("Downloads/.."), home.path("Elsewhere"),
                                  home.link("Downloads/link out", home.path("Elsewhere"))}) {
    SCOPED_TRACE(folder);
    auto move = stepOf("~/Downloads", "move");
    move["destinationFolder"] = folder;
    for (const auto& step : {stepOf(folder, "trash"), move}) {
      const auto result = run({"plan", "run", plan({step}), "--yes"});
      EXPECT_EQ(result.exitStatus, 1) << result.output;
      EXPECT_THAT(result.errors, StartsWith("orvanectl: "));
      EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
    }
    EXPECT_EQ(contentOf(outside) + contentOf(inside), "staysstays");
  }
  EXPECT_TRUE(holds({}, {".local", "Elsewhere/own.log", "own.log"}));
  EXPECT_EQ(json({"history"}).size(), 0U);
}

TEST_F(PlanCommands, previewSaysWhatARunWouldLeaveAlone) {
  home.file("Elsewhere/old.log");
  const auto result = run({"plan", "preview", plan({stepOf("~/Elsewhere", "trash")})});
  EXPECT_THAT(result.errors, HasSubstr("~/Elsewhere: in none of the granted folders"));
  EXPECT_THAT(result, Says("~/Elsewhere/old.log  only listed\n1 item found, 0 selected"));
}

TEST_F(PlanCommands, sayNothingSelectedIsNothingMoved) {
  const auto notes = home.file("Downloads/notes.txt");
  const auto file = plan({stepOf("~/Downloads", "trash")});
  EXPECT_THAT(run({"plan", "run", file, "--yes"}), Says("Nothing is selected"));
  EXPECT_EQ(json({"plan", "run", file, "--yes"})["itemsProcessed"], 0);
  EXPECT_TRUE(exists(notes));
  EXPECT_EQ(json({"history"}).size(), 0U);
}

}  // namespace
}  // namespace orvane::test
