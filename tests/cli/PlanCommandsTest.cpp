#include "core/base/values/Uuid.h"
#include "tests/cli/OrvanectlFixture.h"

namespace orvane::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class PlanCommands : public Orvanectl {
 public:
  PlanCommands() { home.folder("Downloads"); }

  [[nodiscard]] static Json stepOf(std::string_view folder, std::string_view action, Json filter) {
    Json step;
    step["id"] = Uuid::random().toString();
    step["targetFolder"] = folder;
    step["filter"] = std::move(filter);
    step["action"] = action;
    step["explanation"] = "because";
    return step;
  }
  [[nodiscard]] static Json planOf(Json::array_t steps) {
    Json plan;
    plan["id"] = Uuid::random().toString();
    plan["userGoal"] = "tidy";
    plan["steps"] = std::move(steps);
    plan["summary"] = "All of it.";
    plan["isDryRun"] = true;
    plan["createdAt"] = 0;
    return plan;
  }
  // The path of a plan document.
  std::string document(const Json& plan) const { return home.file("plan.json", plan.dump()); }

  const Json anySize = {{"minimumSizeBytes", 0}};
};

TEST_F(PlanCommands, validatesFromAFileAndFromStandardInput) {
  const auto good = planOf({stepOf("/home/x", "trash", anySize)});
  EXPECT_EQ(json({"plan", "validate", document(good)}).dump(), R"({"valid":true,"error":null})");

  LiveProgram program(setup({"plan", "validate", "-"}));
  program.send(good.dump());
  EXPECT_EQ(program.finish().output, "The plan is valid.\n");

  const auto bad = document(planOf({stepOf("  /usr ", "trash", anySize)}));
  EXPECT_EQ(json({"plan", "validate", bad}, 1).dump(),
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
  const auto log = recommended();
  home.file("Downloads/notes.txt");
  const auto matches = json({"plan", "preview", document(planOf({stepOf("~/Downloads", "trash", anySize)}))});
  ASSERT_EQ(matches.size(), 2U);
  EXPECT_EQ(matches[0]["explanation"], "because");
  for (const auto& match : matches) EXPECT_EQ(match["isSelected"], match["item"]["riskLabel"] == "safe");
  EXPECT_TRUE(exists(log));
  EXPECT_FALSE(exists(home.path("Library")));
}

TEST_F(PlanCommands, runsAndComesBack) {
  recommended("old.log", "log");
  home.file("Documents/letter.txt", "letter");
  auto sort = stepOf(home.path("Documents"), "move", {{"extensions", {"txt"}}});
  sort["destinationFolder"] = home.path("Documents/Letters");
  const auto file = document(planOf({stepOf(home.path("Downloads"), "trash", anySize), sort}));
  const auto summary = json({"plan", "run", file, "--yes"});
  EXPECT_EQ(summary["itemsProcessed"], 2);
  EXPECT_EQ(summary["bytesReclaimed"], 3);
  EXPECT_EQ(contentOf(home.path("Documents/Letters/letter.txt")), "letter");
  EXPECT_EQ(contentOf(trashed("old.log")), "log");
  EXPECT_EQ(json({"restore", "--last", "--yes"})["restoredCount"], 2);
  EXPECT_EQ(contentOf(home.path("Documents/letter.txt")), "letter");
  EXPECT_EQ(contentOf(home.path("Downloads/old.log")), "log");

  const auto text = run({"plan", "run", file, "--yes"});
  EXPECT_THAT(text.output,
              AllOf(HasSubstr("Step 1:   move to the Trash from ~/Downloads"), HasSubstr("2 items found, 2 selected"),
                    HasSubstr("~/Documents/letter.txt  selected: goes to ~/Documents/Letters\n"),
                    HasSubstr("Moved 1 item (3 bytes) to the Trash and 1 item into other folders.")));
}

TEST_F(PlanCommands, holdsAStepAgainstItsOwnFolderOnly) {
  const auto log = home.file("Documents/keep.log");
  recommended("go.log");
  const auto nested = home.file("Downloads/sub/inner.log");
  const auto summary =
      json({"plan", "run",
            document(planOf({stepOf("~/Downloads/sub", "review", anySize), stepOf("~/Downloads", "trash", anySize),
                             stepOf("~/Documents", "review", anySize)})),
            "--yes"});
  EXPECT_EQ(summary["itemsProcessed"], 1);
  EXPECT_TRUE(exists(log) && exists(nested));
  EXPECT_FALSE(exists(home.path("Downloads/go.log")));
}

struct Elsewhere {
  const char* name;
  std::string (*folder)(const TemporaryTree& home);
};
void PrintTo(const Elsewhere& elsewhere, std::ostream* out) {
  *out << elsewhere.name;
}
class PlanElsewhere : public PlanCommands, public testing::WithParamInterface<Elsewhere> {};

TEST_P(PlanElsewhere, changesNothing) {
  const auto outside = home.file("Elsewhere/old.log", "stays");
  const auto inside = recommended("own.log", "stays");
  const auto folder = GetParam().folder(home);
  auto move = stepOf("~/Downloads", "move", anySize);
  move["destinationFolder"] = folder;
  for (const auto& step : {stepOf(folder, "trash", anySize), move}) {
    const auto result = run({"plan", "run", document(planOf({step})), "--yes"});
    EXPECT_EQ(result.exitStatus, 1) << result.output;
    EXPECT_THAT(result.errors, StartsWith("orvanectl: "));
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
  }
  EXPECT_EQ(contentOf(outside), "stays");
  EXPECT_EQ(contentOf(inside), "stays");
  EXPECT_FALSE(exists(home.path(".local")));
  EXPECT_FALSE(exists(home.path("Elsewhere/own.log")) || exists(home.path("own.log")));
  EXPECT_EQ(json({"history"}).size(), 0U);
}
INSTANTIATE_TEST_SUITE_P(
    Folders, PlanElsewhere,
    testing::Values(Elsewhere{"the root", [](const auto&) { return std::string("/"); }},
                    Elsewhere{"/etc", [](const auto&) { return std::string("/etc"); }},
                    Elsewhere{"the home folder", [](const auto& home) { return home.path(); }},
                    Elsewhere{"the home folder by its sign", [](const auto&) { return std::string("~"); }},
                    Elsewhere{"the home folder by its parent",
                              [](const auto& home) { return home.path("Downloads/.."); }},
                    Elsewhere{"an absolute path", [](const auto& home) { return home.path("Elsewhere"); }},
                    Elsewhere{"a link out of the roots",
                              [](const auto& home) { return home.link("Downloads/out", home.path("Elsewhere")); }}));

TEST_F(PlanCommands, previewSaysWhatARunWouldLeaveAlone) {
  home.file("Elsewhere/old.log");
  const auto result = run({"plan", "preview", document(planOf({stepOf("~/Elsewhere", "trash", anySize)}))});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.errors, HasSubstr("~/Elsewhere: in none of the granted folders"));
  EXPECT_THAT(result.output, HasSubstr("~/Elsewhere/old.log  only listed\n1 item found, 0 selected"));
}

TEST_F(PlanCommands, aSavedRunIsAppliedLaterAsItWasShown) {
  home.file("Downloads/a.pdf", "a");
  home.file("Downloads/b.pdf", "b");
  auto sort = stepOf("~/Downloads", "move", anySize);
  sort["destinationFolder"] = "~/Downloads";
  EXPECT_EQ(run({"plan", "run", document(planOf({sort})), "--save", "saved.json"}).exitStatus, 0);
  EXPECT_TRUE(exists(home.path("Downloads/a.pdf")) && isUntouched());
  home.file("Downloads/b.pdf", "changed");
  home.file("Downloads/late.pdf");
  const auto report = json({"apply", "saved.json", "--yes"}, 1);
  EXPECT_EQ(report["itemsProcessed"], 1);
  EXPECT_EQ(report["failures"][0]["path"], home.path("Downloads/b.pdf"));
  EXPECT_EQ(contentOf(home.path("Downloads/Documents/PDFs/a.pdf")), "a");
  EXPECT_TRUE(exists(home.path("Downloads/late.pdf")));
}

TEST_F(PlanCommands, movesWhatWasShownAndNothingThatChangedSince) {
  home.file("Downloads/replaced.pdf");
  home.file("Downloads/same.pdf");
  auto sort = stepOf("~/Downloads", "move", anySize);
  sort["destinationFolder"] = "~/Downloads";
  LiveProgram program(terminalSetup({"plan", "run", document(planOf({sort}))}));
  program.waitForOutput("[y/N] ");
  std::filesystem::remove(home.path("Downloads/replaced.pdf"));
  home.file("Downloads/replaced.pdf", "another one");
  home.file("Downloads/late.pdf");
  program.send("y\n");
  const auto result = program.finish();
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.output, AllOf(HasSubstr("Move 2 items into other folders?"),
                                   HasSubstr("same.pdf      selected: goes to ~/Downloads/Documents/PDFs")));
  EXPECT_TRUE(exists(home.path("Downloads/Documents/PDFs/same.pdf")));
  EXPECT_EQ(contentOf(home.path("Downloads/replaced.pdf")), "another one");
  EXPECT_TRUE(exists(home.path("Downloads/late.pdf")));
}

TEST_F(PlanCommands, sayNothingSelectedIsNothingMoved) {
  const auto notes = home.file("Downloads/notes.txt");
  const auto file = document(planOf({stepOf("~/Downloads", "trash", anySize)}));
  EXPECT_THAT(run({"plan", "run", file, "--yes"}).output, HasSubstr("Nothing is selected"));
  const auto summary = json({"plan", "run", file, "--yes"});
  EXPECT_EQ(summary["itemsProcessed"], 0);
  EXPECT_EQ(summary["bytesReclaimed"], 0);
  EXPECT_TRUE(exists(notes));
  EXPECT_EQ(json({"history"}).size(), 0U);
}

}  // namespace
}  // namespace orvane::test
