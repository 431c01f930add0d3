#include "tests/cli/OrvanectlFixture.h"

#include "core/base/text/Json.h"
#include "core/rules/records/RuleFields.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace orvane::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr auto* logRule = R"({"name":"Mine","trigger":{"fileExtensions":["log"]},"action":{"type":"moveToTrash"}})";

class RulesCommand : public Orvanectl {
 public:
  void add(const std::string& json) {
    const auto result = run({"rules", "add", home.file("rule.json", json)});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
  }
};

TEST_F(RulesCommand, showsIdentitiesThatLast) {
  const auto rules = json({"rules", "list"});
  ASSERT_EQ(rules.size(), 12U);
  const auto id = rules[0]["id"].get<std::string>();
  EXPECT_EQ(run({"rules", "disable", id.substr(0, 8)}).exitStatus, 0);
  const auto after = json({"rules", "list"});
  EXPECT_EQ(after[0]["id"], id);
  EXPECT_FALSE(after[0]["isEnabled"].get<bool>());
  EXPECT_THAT(run({"rules", "delete", id}).errors, HasSubstr("built in"));
  EXPECT_THAT(run({"rules", "enable", "nothing"}).errors, HasSubstr("no rule 'nothing'"));
}

TEST_F(RulesCommand, namesEveryConditionInItsHelp) {
  const auto help = run({"rules", "add", "--help"}).output;
  for (const auto& field : ruleFields()) EXPECT_THAT(help, HasSubstr(fmt::format("\"{}\"", field.key)));
}

TEST_F(RulesCommand, makesASuggestionTheUsersOwn) {
  constexpr auto* name = "downloaded-packages";
  const auto suggested = json({"rules", "suggest"});
  ASSERT_GE(suggested.size(), 3U);
  EXPECT_EQ(suggested[0]["name"], name);
  EXPECT_EQ(suggested[0]["isAdded"], false);
  const auto rules = json({"rules", "add", "--suggested", name});
  ASSERT_EQ(rules.size(), 13U);
  EXPECT_EQ(rules[12]["isBuiltIn"], false);
  EXPECT_EQ(json({"rules", "suggest"})[0]["isAdded"], true);
  EXPECT_EQ(run({"rules", "add", "--suggested", name}).exitStatus, 2) << "it would do the same twice";
  EXPECT_EQ(run({"rules", "add", "--suggested", "none"}).exitStatus, 2);
  EXPECT_EQ(run({"rules", "add"}).exitStatus, 2);
}

TEST_F(RulesCommand, takesKnownPlacesInWhichNothingIsTooYoung) {
  constexpr double day = 86400;
  home.folder("Downloads");
  for (const char* cache : {".cache/pip", ".cache/ccache"}) {
    const auto folder = std::string(cache) + "/inner";
    for (const auto& path : {home.file(folder + "/file"), home.path(folder), home.path(cache)}) setAge(path, 70 * day);
  }
  setAge(home.path(".cache/ccache/inner/file"), day);
  EXPECT_EQ(run({"rules", "add", "--suggested", "old-caches"}).exitStatus, 0);
  constexpr auto* name = "Caches Unused for 60 Days";
  EXPECT_THAT(json({"rules", "preview", name}).dump(),
              AllOf(HasSubstr(".cache/pip\""), testing::Not(HasSubstr(".cache/ccache\""))));
  EXPECT_EQ(json({"rules", "run", name, "--yes"})["itemsProcessed"], 1);
  EXPECT_FALSE(exists(home.path(".cache/pip")));
  EXPECT_TRUE(exists(home.path(".cache/ccache/inner/file")));
  EXPECT_EQ(run({"restore", "--last", "--yes"}).exitStatus, 0);
  EXPECT_TRUE(exists(home.path(".cache/pip/inner/file")));
}

// Every suggestion is one that `rules add` would take from a file.
TEST_F(RulesCommand, suggestsOnlySoundRules) {
  for (const auto& suggestion : json({"rules", "suggest"})) {
    auto rule = suggestion["rule"];
    rule["id"] = nullptr;
    add(rule.dump());
    EXPECT_EQ(suggestion["rule"]["name"].get<std::string>().find("suggestion."), std::string::npos);
  }
}

TEST_F(RulesCommand, setsStoredRulesAsideThatItCannotRead) {
  home.file(".config/orvane/preferences.json", R"({"OrvaneCleanupRules":[{"name":"half a rule"}]})");
  const auto listed = run({"rules", "list", "--json"});
  EXPECT_THAT(listed.errors, HasSubstr("kept as 'OrvaneCleanupRules.damaged-"));
  const auto id = parseJson(listed.output)[0]["id"].get<std::string>();
  const auto disabled = run({"rules", "disable", id});
  EXPECT_EQ(disabled.exitStatus, 0);
  EXPECT_EQ(disabled.errors, "");
  EXPECT_THAT(contentOf(home.path(".config/orvane/preferences.json")), HasSubstr("half a rule"));
}

TEST_F(RulesCommand, asksBeforeItDeletesARule) {
  add(logRule);
  for (const auto* command : {"delete", "reset"}) {
    Words words{"rules", command};
    if (words[1] == "delete") words.emplace_back("Mine");
    const auto result = run(words);
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_THAT(result.errors, HasSubstr("of your own, and nobody can be asked here"));
  }
  LiveProgram program(terminalSetup({"rules", "delete", "Mine"}));
  program.waitForOutput("Delete the rule 'Mine'? [y/N] ");
  program.send("n\n");
  EXPECT_EQ(program.finish().exitStatus, 0);
  EXPECT_EQ(json({"rules", "list"}).size(), 13U);
  EXPECT_EQ(json({"rules", "delete", "Mine", "--yes"}).size(), 12U);
}

TEST_F(RulesCommand, findsTheFilesOfAFolderThatIsALinkToAnotherDisk) {
  const auto file = home.file("disk/b.log", "text");
  home.link("Downloads", home.path("disk"));
  EXPECT_EQ(run({"folders", "add", "Downloads"}).exitStatus, 0);
  add(R"({"name":"Mine","trigger":{"folderPath":"~/Downloads","fileExtensions":["log"]},"action":{"type":"moveToTrash"}})");
  EXPECT_EQ(json({"rules", "run", "Mine", "--yes"})["itemsProcessed"], 1);
  EXPECT_FALSE(exists(file));
}

TEST_F(RulesCommand, grantsNoFolderOfTheSystem) {
  for (const auto* folder : {"/", "/boot", "/proc/sys", "/var/lib", ".."}) {
    const auto result = run({"folders", "add", folder});
    EXPECT_EQ(result.exitStatus, 1) << folder;
    EXPECT_THAT(result.errors, HasSubstr("protected")) << folder;
  }
}

TEST_F(RulesCommand, carriesARuleOutAndBack) {
  const auto taken = home.file("Downloads/a.tmp", "text");
  const auto kept = home.file("Downloads/b.log", "text");
  add(R"({"name":"Mine","trigger":{"folderPath":"~/Downloads","fileExtensions":["log"]},"action":{"type":"moveToTrash"}})");
  const auto preview = json({"rules", "preview", "Mine"});
  ASSERT_EQ(preview.size(), 1U);
  ASSERT_EQ(preview[0]["matches"].size(), 1U);
  EXPECT_EQ(preview[0]["notTaken"]["manualLabel"], 1);
  EXPECT_THAT(run({"rules", "preview", "Mine"}).output, HasSubstr("Not taken: 1 labelled 'manual'."));
  EXPECT_TRUE(exists(kept));
  const auto summary = json({"rules", "run", "Mine", "--yes"});
  EXPECT_EQ(summary["itemsProcessed"], 1);
  EXPECT_EQ(summary["bytesReclaimed"], 4);
  EXPECT_FALSE(exists(kept));
  EXPECT_TRUE(exists(taken));
  EXPECT_EQ(run({"restore", summary["batchId"].get<std::string>(), "--yes"}).exitStatus, 0);
  EXPECT_TRUE(exists(kept));
}

TEST_F(RulesCommand, saysHowManyOnlyTheLabelKeeps) {
  const auto paper = home.file("Documents/paper.pdf");
  add(R"({"name":"Papers","trigger":{"fileExtensions":["pdf"]},"action":{"type":"moveToTrash"}})");
  EXPECT_THAT(run({"rules", "preview", "Papers"}).output, HasSubstr("1 item would match but for the label 'manual'"));
  EXPECT_THAT(run({"rules", "run", "Papers", "--yes"}).errors, HasSubstr("but for the label 'manual'"));
  EXPECT_TRUE(exists(paper));
}

struct WrongRule {
  const char* json;
  const char* error;
};

TEST_F(RulesCommand, namesWhatIsWrongWithARule) {
  const WrongRule cases[] = {
      {"[]", "must be an object"},
      {R"({"trigger":{},"action":{"type":"reviewOnly"}})", "\"name\""},
      {R"({"name":"a","trigger":{"fileExtension":["pdf"]},"action":{"type":"reviewOnly"}})", "\"fileExtension\""},
      {R"({"name":"a","trigger":{"fileExtensions":[".pdf"]},"action":{"type":"reviewOnly"}})", "\"fileExtensions\""},
      {R"({"name":"a","trigger":{"minimumAgeDays":-1},"action":{"type":"reviewOnly"}})", "\"minimumAgeDays\""},
      {R"({"name":"a","trigger":{"folderPath":"Downloads"},"action":{"type":"reviewOnly"}})", "\"folderPath\""},
      {R"({"name":"a","trigger":{"categories":["none"]},"action":{"type":"reviewOnly"}})", "\"none\""},
      {R"({"name":"a","trigger":{},"action":{"type":"shred"}})", "\"type\""},
      {R"({"name":"a","trigger":{},"action":{"type":"moveToFolder"}})", "\"path\""},
      {R"({"name":"a","trigger":{"minimumAgeDays":1},"action":{"type":"moveToFolder","path":"Logs"}})", "\"path\""},
      {R"({"name":"a","trigger":{},"action":{"type":"moveToTrash"}})", "every file"},
      {R"({"name":"a","trigger":{"folderPath":"~/","minimumAgeDays":0},"action":{"type":"moveToTrash"}})",
       "every file"},
  };
  for (const auto& row : cases) {
    const auto result = run({"rules", "add", home.file("rule.json", row.json)});
    EXPECT_EQ(result.exitStatus, 1) << row.json;
    EXPECT_THAT(result.errors, HasSubstr(row.error)) << row.json;
  }
  EXPECT_EQ(json({"rules", "list"}).size(), 12U);
}

TEST_F(RulesCommand, worksInTheGrantedFoldersOnly) {
  home.folder("Downloads");
  home.folder("Documents");
  const auto outside = home.file("Other/b.log", "text");
  EXPECT_EQ(json({"folders", "list"}), (Json{home.path("Downloads"), home.path("Documents")}));
  EXPECT_EQ(json({"folders", "add", home.path("Other")}).size(), 3U);
  home.folder("Other/inside");
  const auto nested = run({"folders", "add", home.path("Other/inside")});
  EXPECT_EQ(nested.errors, "orvanectl: ~/Other/inside is covered by ~/Other: it counts once\n");
  EXPECT_EQ(json({"folders", "remove", home.path("Other/inside")}).size(), 3U);
  EXPECT_EQ(json({"folders", "remove", home.path("Downloads")}).size(), 2U);
  EXPECT_EQ(run({"folders", "remove", home.path("Downloads")}).exitStatus, 1);
  EXPECT_EQ(run({"folders", "add", "/etc"}).exitStatus, 1);
  EXPECT_THAT(run({"clean", "--dry-run"}).output, HasSubstr("b.log"));
  EXPECT_TRUE(exists(outside));
}

TEST_F(RulesCommand, showsTheFilesBeforeItMovesThem) {
  home.file("Downloads/b.log", "text");
  add(logRule);
  EXPECT_THAT(run({"rules", "run", "Mine", "--yes"}).output, HasSubstr("~/Downloads/b.log"));
}

TEST_F(RulesCommand, carriesOutNoStoredRuleThatWouldTakeEverything) {
  const auto file = home.file("Downloads/b.log", "text");
  add(logRule);
  auto stored = json({"rules", "list"});
  stored.back()["trigger"] = Json::object();
  home.file(".config/orvane/preferences.json", jsonText(Json{{"OrvaneCleanupRules", stored}}));
  const auto result = run({"rules", "run", "Mine", "--yes"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.errors, AllOf(HasSubstr("'Mine'"), HasSubstr("every file")));
  EXPECT_THAT(json({"rules", "preview", "Mine"})[0]["refused"].get<std::string>(), HasSubstr("every file"));
  EXPECT_TRUE(exists(file));
}

TEST_F(RulesCommand, countsFilesThatAreInTheirPlace) {
  const auto moved = home.file("Downloads/a.log", "text");
  const auto kept = home.file("Downloads/Logs/b.log", "text");
  add(R"({"name":"Sort","trigger":{"fileExtensions":["log"]},)"
      R"("action":{"type":"moveToFolder","path":"~/Downloads/Logs"}})");
  const auto preview = json({"rules", "preview", "Sort"});
  EXPECT_EQ(preview[0]["matches"].size(), 1U);
  EXPECT_EQ(preview[0]["inPlace"], 1);
  EXPECT_THAT(run({"rules", "preview", "Sort"}).output, HasSubstr("1 item in place already."));
  const auto result = run({"rules", "run", "Sort", "--yes"});
  EXPECT_THAT(result.output, HasSubstr("Moved 1 item into other folders."));
  EXPECT_THAT(result.errors, HasSubstr("Sort: left out: 1 item (4 bytes) in place already"));
  EXPECT_FALSE(exists(moved));
  EXPECT_TRUE(exists(kept));
}

TEST_F(RulesCommand, movesWhatWasShownAndNothingElse) {
  const auto shown = home.file("Downloads/shown.log", "text");
  const auto replaced = home.file("Downloads/replaced.log", "text");
  const auto written = home.file("Downloads/written.log", "text");
  add(logRule);
  LiveProgram program(terminalSetup({"rules", "run", "Mine"}));
  program.waitForOutput("Move 3 items (12 bytes) to the Trash? [y/N] ");
  std::filesystem::remove(replaced);
  home.file("Downloads/replaced.log", "text");
  home.file("Downloads/written.log", "more");
  const auto arrived = home.file("Downloads/arrived.log", "text");
  program.send("y\n");
  const auto result = program.finish();
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_THAT(result.output, AllOf(HasSubstr("replaced.log"), HasSubstr("written.log"), HasSubstr("Moved 1 item ")));
  EXPECT_FALSE(exists(shown));
  for (const auto& file : {replaced, written, arrived}) EXPECT_TRUE(exists(file)) << file;
}

TEST_F(RulesCommand, savesARunThatIsAppliedLater) {
  const auto shown = home.file("Downloads/shown.log", "text");
  add(R"({"name":"Sort","trigger":{"fileExtensions":["log"]},)"
      R"("action":{"type":"moveToFolder","path":"~/Downloads/Logs"}})");
  EXPECT_EQ(run({"rules", "run", "Sort", "--save", home.path("saved.json")}).exitStatus, 0);
  const auto arrived = home.file("Downloads/arrived.log", "text");
  EXPECT_TRUE(exists(shown));
  EXPECT_EQ(run({"apply", home.path("saved.json"), "--yes"}).exitStatus, 0);
  EXPECT_EQ(contentOf(home.path("Downloads/Logs/shown.log")), "text");
  EXPECT_TRUE(exists(arrived));
}

TEST_F(RulesCommand, warnsOfItemsThatAreSynced) {
  home.file("Dropbox/b.log", "text");
  EXPECT_EQ(run({"folders", "add", home.path("Dropbox")}).exitStatus, 0);
  add(logRule);
  EXPECT_THAT(run({"rules", "run", "Mine", "--yes"}).errors, HasSubstr("synced via Dropbox"));
  EXPECT_FALSE(exists(home.path("Dropbox/b.log")));
}

TEST_F(RulesCommand, keepsTheLastFolderUnderWhateverNames) {
  home.folder("Downloads");
  home.folder("Documents");
  std::filesystem::create_symlink(home.path("Documents"), home.path("link"));
  const auto all = run({"folders", "remove", home.path("Downloads"), home.path("Documents"), home.path("link")});
  EXPECT_EQ(all.exitStatus, 1);
  EXPECT_EQ(json({"folders", "list"}).size(), 2U);
  EXPECT_EQ(json({"folders", "remove", home.path("Documents"), home.path("link")}), (Json{home.path("Downloads")}));
}

}  // namespace
}  // namespace orvane::test
