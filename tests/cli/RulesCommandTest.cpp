#include "core/rules/records/RuleFields.h"
#include "tests/cli/OrvanectlFixture.h"

#include <fmt/format.h>

namespace orvane::test {
namespace {

constexpr auto* logRule = R"({"name":"Mine","trigger":{"fileExtensions":["log"]},"action":{"type":"moveToTrash"}})";
constexpr auto* logsOfDownloads =
    R"({"name":"Mine","trigger":{"folderPath":"~/Downloads","fileExtensions":["log"]},"action":{"type":"moveToTrash"}})";

class RulesCommand : public Orvanectl {};

TEST_F(RulesCommand, showsIdentitiesThatLast) {
  const auto rules = json({"rules", "list"});
  ASSERT_EQ(rules.size(), 12U);
  const auto id = rules[0]["id"].get<std::string>();
  EXPECT_EQ(run({"rules", "disable", id.substr(0, 8)}).exitStatus, 0);
  EXPECT_TRUE(tells(json({"rules", "list"})[0], {{"id", id}, {"isEnabled", false}}));
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
  EXPECT_TRUE(tells(suggested[0], {{"name", name}, {"isAdded", false}}));
  const auto rules = json({"rules", "add", "--suggested", name});
  ASSERT_EQ(rules.size(), 13U);
  EXPECT_EQ(rules[12]["isBuiltIn"], false);
  EXPECT_EQ(json({"rules", "suggest"})[0]["isAdded"], true);
  EXPECT_EQ(run({"rules", "add", "--suggested", name}).exitStatus, 2) << "it would do the same twice";
  EXPECT_EQ(run({"rules", "add", "--suggested", "none"}).exitStatus, 2);
  EXPECT_EQ(run({"rules", "add"}).exitStatus, 2);
  // Every suggestion is one that `rules add` would take from a file.
  for (const auto& suggestion : suggested) {
    auto rule = suggestion["rule"];
    rule["id"] = nullptr;
    addRule(rule.dump());
    EXPECT_EQ(suggestion["rule"]["name"].get<std::string>().find("suggestion."), std::string::npos);
  }
}

TEST_F(RulesCommand, setsStoredRulesAsideThatItCannotRead) {
  home.file(".config/orvane/preferences.json", R"({"OrvaneCleanupRules":[{"name":"half a rule"}]})");
  const auto listed = run({"rules", "list", "--json"});
  EXPECT_THAT(listed.errors, HasSubstr("kept as 'OrvaneCleanupRules.damaged-"));
  const auto id = parseJson(listed.output)[0]["id"].get<std::string>();
  EXPECT_EQ(run({"rules", "disable", id}).errors, "");
  EXPECT_THAT(contentOf(home.path(".config/orvane/preferences.json")), HasSubstr("half a rule"));
}

TEST_F(RulesCommand, asksBeforeItDeletesARule) {
  addRule(logRule);
  for (const Words& words : {Words{"rules", "delete", "Mine"}, Words{"rules", "reset"}}) {
    EXPECT_THAT(run(words), Fails(2, "of your own, and nobody can be asked here"));
  }
  EXPECT_EQ(answered({"rules", "delete", "Mine"}, "Delete the rule 'Mine'? [y/N] ", "n\n").exitStatus, 0);
  EXPECT_EQ(json({"rules", "list"}).size(), 13U);
  EXPECT_EQ(json({"rules", "delete", "Mine", "--yes"}).size(), 12U);
}

TEST_F(RulesCommand, findsTheFilesOfAFolderThatIsALinkToAnotherDisk) {
  const auto file = home.file("disk/b.log", "text");
  home.link("Downloads", home.path("disk"));
  EXPECT_EQ(run({"folders", "add", "Downloads"}).exitStatus, 0);
  addRule(logsOfDownloads);
  EXPECT_EQ(json({"rules", "run", "Mine", "--yes"})["itemsProcessed"], 1);
  EXPECT_FALSE(exists(file));
}

TEST_F(RulesCommand, grantsNoFolderOfTheSystem) {
  for (const auto* folder : {"/", "/etc", "/boot", "/proc/sys", "/var/lib", ".."}) {
    EXPECT_THAT(run({"folders", "add", folder}), Fails(1, "protected")) << folder;
  }
}

TEST_F(RulesCommand, carriesARuleOutAndBack) {
  home.file("Downloads/a.tmp", "text");
  const auto taken = home.file("Downloads/b.log", "text");
  addRule(logsOfDownloads);
  const auto preview = json({"rules", "preview", "Mine"});
  ASSERT_EQ(preview.size(), 1U);
  ASSERT_EQ(preview[0]["matches"].size(), 1U);
  EXPECT_EQ(preview[0]["notTaken"]["manualLabel"], 1);
  EXPECT_THAT(run({"rules", "preview", "Mine"}), Says("Not taken: 1 labelled 'manual'."));
  EXPECT_TRUE(exists(taken));
  const auto summary = json({"rules", "run", "Mine", "--yes"});
  EXPECT_TRUE(tells(summary, {{"itemsProcessed", 1}, {"bytesReclaimed", 4}}));
  EXPECT_TRUE(holds({"Downloads/a.tmp"}, {"Downloads/b.log"}));
  EXPECT_EQ(run({"restore", summary["batchId"].get<std::string>(), "--yes"}).exitStatus, 0);
  EXPECT_TRUE(exists(taken));
}

TEST_F(RulesCommand, saysHowManyOnlyTheLabelKeeps) {
  const auto paper = home.file("Documents/paper.pdf");
  addRule(R"({"name":"Papers","trigger":{"fileExtensions":["pdf"]},"action":{"type":"moveToTrash"}})");
  EXPECT_THAT(run({"rules", "preview", "Papers"}).output, HasSubstr("1 item would match but for the label 'manual'"));
  EXPECT_THAT(run({"rules", "run", "Papers", "--yes"}).errors, HasSubstr("but for the label 'manual'"));
  EXPECT_TRUE(exists(paper));
}

TEST_F(RulesCommand, namesWhatIsWrongWithARule) {
  const std::pair<const char*, const char*> cases[] = {
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
  for (const auto& [json, error] : cases) {
    EXPECT_THAT(run({"rules", "add", home.file("rule.json", json)}), Fails(1, error)) << json;
  }
  EXPECT_EQ(json({"rules", "list"}).size(), 12U);
}

TEST_F(RulesCommand, worksInTheGrantedFoldersOnly) {
  home.folder("Downloads");
  home.folder("Documents");
  home.file("Other/b.log", "text");
  EXPECT_EQ(json({"folders", "list"}), (Json{home.path("Downloads"), home.path("Documents")}));
  EXPECT_EQ(json({"folders", "add", home.path("Other")}).size(), 3U);
  home.folder("Other/inside");
  EXPECT_EQ(run({"folders", "add", home.path("Other/inside")}).errors,
            "orvanectl: ~/Other/inside is covered by ~/Other: it counts once\n");
  EXPECT_EQ(json({"folders", "remove", home.path("Other/inside")}).size(), 3U);
  EXPECT_EQ(json({"folders", "remove", home.path("Downloads")}).size(), 2U);
  EXPECT_EQ(run({"folders", "remove", home.path("Downloads")}).exitStatus, 1);
  EXPECT_THAT(run({"clean", "--dry-run"}), Says("b.log"));

  // The last one stays, under whatever names.
  home.link("link", home.path("Documents"));
  EXPECT_EQ(run({"folders", "remove", home.path("Other"), home.path("Documents"), home.path("link")}).exitStatus, 1);
  EXPECT_EQ(json({"folders", "list"}).size(), 2U);
  EXPECT_EQ(json({"folders", "remove", home.path("Documents"), home.path("link")}), (Json{home.path("Other")}));
}

TEST_F(RulesCommand, carriesOutNoStoredRuleThatWouldTakeEverything) {
  const auto file = home.file("Downloads/b.log", "text");
  addRule(logRule);
  auto stored = json({"rules", "list"});
  stored.back()["trigger"] = Json::object();
  home.file(".config/orvane/preferences.json", jsonText(Json{{"OrvaneCleanupRules", stored}}));
  EXPECT_THAT(run({"rules", "run", "Mine", "--yes"}), Fails(0, "'Mine'", "every file"));
  EXPECT_THAT(json({"rules", "preview", "Mine"})[0]["refused"].get<std::string>(), HasSubstr("every file"));
  EXPECT_TRUE(exists(file));
}

TEST_F(RulesCommand, countsFilesThatAreInTheirPlace) {
  home.file("Downloads/a.log", "text");
  home.file("Downloads/Logs/b.log", "text");
  addRule(R"({"name":"Sort","trigger":{"fileExtensions":["log"]},)"
          R"("action":{"type":"moveToFolder","path":"~/Downloads/Logs"}})");
  const auto preview = json({"rules", "preview", "Sort"});
  EXPECT_EQ(preview[0]["matches"].size(), 1U);
  EXPECT_EQ(preview[0]["inPlace"], 1);
  EXPECT_THAT(run({"rules", "preview", "Sort"}), Says("1 item in place already."));
  const auto result = run({"rules", "run", "Sort", "--yes"});
  EXPECT_THAT(result, Says("Moved 1 item into other folders."));
  EXPECT_THAT(result.errors, HasSubstr("Sort: left out: 1 item (4 bytes) in place already"));
  EXPECT_TRUE(holds({"Downloads/Logs/a.log", "Downloads/Logs/b.log"}, {"Downloads/a.log"}));
}

}  // namespace
}  // namespace orvane::test
