#include "core/base/text/Json.h"
#include "core/rules/BuiltInRuleTemplates.h"
#include "core/rules/records/RuleCheck.h"
#include "core/rules/records/RuleFields.h"
#include "tests/support/CleanupRules.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

TEST(CleanupRuleTest, leavesAbsentConditionsOut) {
  RuleTrigger trigger;
  trigger.folderPath = "~/Downloads";
  trigger.minimumAgeDays = 3;
  EXPECT_EQ(jsonText(trigger.toJson()), R"({"folderPath":"~/Downloads","minimumAgeDays":3})");
  EXPECT_EQ(RuleTrigger::fromJson(trigger.toJson()), trigger);
  EXPECT_EQ(RuleTrigger::fromJson(Json::object()), RuleTrigger());
}

TEST(CleanupRuleTest, takesAnUnknownActionForAReviewAndNamesTheKeyThatIsWrong) {
  EXPECT_EQ(RuleAction::fromJson(Json{{"type", "shred"}, {"path", "/"}}), RuleAction::reviewOnly());
  EXPECT_EQ(RuleAction::fromJson(Json{{"type", "moveToTrash"}}), RuleAction::moveToTrash());
  EXPECT_THAT(messageOf<JsonError>([] {
                return RuleAction::fromJson(Json{{"type", "moveToFolder"}});
              }),
              HasSubstr("path"));
  EXPECT_THROW(static_cast<void>(RuleTrigger::fromJson(Json{{"categories", {"nonsense"}}})), JsonError);
}

TEST(CleanupRuleTest, wordsEachConditionInTheOrderOfItsKeys) {
  const RuleTrigger everything{.folderPath = "~/Downloads",
                               .fileExtensions = {{"dmg", "pkg"}},
                               .categories = {{ScanCategory::caches, ScanCategory::logs}},
                               .minimumAgeDays = 7,
                               .minimumSizeBytes = 2'000'000,
                               .namePattern = "old"};
  EXPECT_THAT(everything.conditions(), ElementsAre("in ~/Downloads", ".dmg .pkg", "User Caches or System & App Logs",
                                                   "7 days old", "2 MB or more", "named *old*"));
  EXPECT_EQ(ruleFields().size(), everything.toJson().size());
  const RuleTrigger nothing{.folderPath = "",
                            .fileExtensions = std::vector<std::string>(),
                            .categories = std::vector<ScanCategory>(),
                            .namePattern = ""};
  EXPECT_THAT(nothing.conditions(), IsEmpty());
}

// As an editor has them written. A condition that nobody touched keeps its exact value.
TEST(RuleFields, readBackWhatAPersonWrites) {
  const Rows<const char*, const char*, RuleTrigger, const char*> rows{
      {"folderPath", " ~/Downloads ", {.folderPath = "~/Downloads"}, "~/Downloads"},
      {"fileExtensions", ".dmg, pkg;iso", {.fileExtensions = {{"dmg", "pkg", "iso"}}}, "dmg, pkg, iso"},
      {"categories", "logs, caches", {.categories = {{ScanCategory::logs, ScanCategory::caches}}}, "logs, caches"},
      {"minimumAgeDays", "007", {.minimumAgeDays = 7}, "7"},
      {"minimumSizeBytes", "2", {.minimumSizeBytes = 2'000'000}, "2"},
      {"namePattern", "old draft", {.namePattern = "old draft"}, "old draft"},
  };
  ASSERT_EQ(rows.size(), ruleFields().size()) << "a row for each condition";
  for (std::size_t at = 0; at < rows.size(); ++at) {
    const auto& [key, written, expected, shown] = rows[at];
    const auto& field = ruleFields()[at];
    SCOPED_TRACE(key);
    EXPECT_EQ(field.key, key);
    RuleTrigger trigger;
    field.setText(trigger, written);
    EXPECT_EQ(trigger, expected);
    EXPECT_EQ(field.text(trigger), shown);
    for (const char* nothing : {"", "  "}) {
      field.setText(trigger, nothing);
      EXPECT_EQ(trigger, RuleTrigger());
    }
  }
  EXPECT_EQ(ruleFields()[4].text({.minimumSizeBytes = 1073741824}), "1074");
}

TEST(RuleFields, refuseWhatCanNeverWork) {
  const Rows<RuleTrigger, const char*> rows{
      {{.folderPath = "Downloads"}, R"("folderPath" must begin with / or ~/)"},
      {{.folderPath = "~me/x"}, R"("folderPath" must begin with / or ~/)"},
      {{.folderPath = std::string("/a\0b", 4)}, R"("folderPath" holds a NUL)"},
      {{.fileExtensions = {{"pdf", ".zip"}}},
       R"("fileExtensions" holds ".zip": write endings without a dot, as in "pdf")"},
      {{.minimumAgeDays = -1}, R"("minimumAgeDays" must not be negative)"},
      {{.folderPath = "x", .minimumSizeBytes = -1}, R"("folderPath" must begin with / or ~/)"},  // the first of two
  };
  for (const auto& [trigger, problem] : rows) {
    std::string first;
    for (const auto& field : ruleFields()) {
      if (first.empty()) first = field.problem(trigger);
    }
    EXPECT_EQ(first, problem);
  }
}

TEST(BuiltInRuleTemplatesTest, haveTheirGivenTriggersAndFourSwitchedOff) {
  const auto rules = BuiltInRuleTemplates::defaultRules();
  ASSERT_EQ(rules.size(), 12U);
  const char* const expected[] = {
      R"({"categories":["screenshots"],"minimumAgeDays":30})",
      R"({"folderPath":"~/Downloads","fileExtensions":["dmg","pkg","iso"],"minimumAgeDays":7})",
      R"({"folderPath":"~/Downloads","fileExtensions":["zip","tar","gz","tgz","7z"],"minimumAgeDays":14})",
      R"({"minimumAgeDays":90,"minimumSizeBytes":1073741824})",
      R"({"folderPath":"~/Library/Caches","categories":["caches"],"minimumAgeDays":14})",
      R"({"folderPath":"~/Library/Logs","categories":["logs"],"minimumAgeDays":7})",
      R"({"folderPath":"~/Downloads","fileExtensions":["pdf"]})",
      R"({"folderPath":"~/Downloads","fileExtensions":["docx","doc","xlsx","pptx","key","pages"]})",
      R"({"fileExtensions":["mov","mp4"],"minimumAgeDays":14,"namePattern":"Screen Recording"})",
      R"({"fileExtensions":["tmp","bak","part"],"minimumAgeDays":3})",
      R"({"folderPath":"~/Library/Developer/Xcode/DerivedData","minimumAgeDays":30})",
      R"({"folderPath":"~/Library/Application Support/Adobe","minimumAgeDays":30})",
  };
  for (std::size_t i = 0; i < rules.size(); ++i) {
    EXPECT_TRUE(rules[i].isBuiltIn);
    EXPECT_EQ(rules[i].isEnabled, i != 6 && i != 7 && i != 10 && i != 11) << rules[i].name;
    EXPECT_EQ(jsonText(rules[i].trigger.toJson()), expected[i]);
    EXPECT_EQ(CleanupRule::fromJson(parseJson(jsonText(rules[i].toJson()))), rules[i]) << rules[i].name;
  }
  EXPECT_EQ(rules[3].action, RuleAction::reviewOnly());
  EXPECT_EQ(rules[6].action, RuleAction::moveToFolder("~/Documents/PDFs"));
}

std::vector<std::string_view> faultyPartsOf(const CleanupRule& rule) {
  std::vector<std::string_view> parts;
  for (const auto& problem : problemsWith(rule)) parts.push_back(problem.part);
  return parts;
}

TEST(RuleCheck, refusesATriggerThatNarrowsNothing) {
  const TemporaryTree tree;
  tree.folder("home");
  fs::create_symlink(tree.path("home"), tree.path("link"));
  const ScopedEnvironment home("HOME", tree.path("link").c_str());
  const std::vector<ScanCategory> all(allScanCategories.begin(), allScanCategories.end());
  const std::vector<ScanCategory> allButManual(all.begin(), all.end() - 1);
  const Rows<const char*, RuleTrigger, bool> rows{
      {"no condition", {}, false},
      {"empty texts and lists",
       {.folderPath = "",
        .fileExtensions = std::vector<std::string>(),
        .categories = std::vector<ScanCategory>(),
        .namePattern = ""},
       false},
      {"nothing younger or smaller", {.minimumAgeDays = 0, .minimumSizeBytes = 0}, false},
      {"the root", {.folderPath = "/"}, false},
      {"the home folder", {.folderPath = "~"}, false},
      {"with a slash", {.folderPath = "~/"}, false},
      {"by a detour", {.folderPath = "~/Downloads/.."}, false},
      {"behind its link", {.folderPath = tree.path("home")}, false},
      {"the beginning of its name", {.folderPath = tree.path("ho")}, false},
      {"all categories", {.categories = all}, false},
      {"all that a rule may touch", {.categories = allButManual}, false},
      {"all of them in the home folder", {.folderPath = "~", .categories = all, .minimumAgeDays = 0}, false},
      {"a folder", {.folderPath = "~/Downloads"}, true},
      {"a folder beside the home folder", {.folderPath = tree.path("home2")}, true},
      {"a category", {.categories = {{ScanCategory::logs}}}, true},
      {"an extension", {.fileExtensions = {{"pdf"}}}, true},
      {"a name", {.namePattern = " "}, true},
      {"an age", {.minimumAgeDays = 1}, true},
      {"a size", {.folderPath = "~", .minimumSizeBytes = 1}, true},
  };
  for (const auto& [name, trigger, isSound] : rows) {
    const auto rule = ruleFor("rule", trigger);
    const auto parts = isSound ? std::vector<std::string_view>() : std::vector<std::string_view>{ruleConditionsPart};
    EXPECT_EQ(faultyPartsOf(rule), parts) << name;
    EXPECT_EQ(refusalOf(rule).has_value(), !isSound) << name;
  }
}

TEST(RuleCheck, namesEachFaultyPart) {
  const auto rule = ruleFor(" \n",
                            {.folderPath = "Downloads",
                             .fileExtensions = {{"pdf", "tar.gz", "*"}},
                             .minimumAgeDays = -1,
                             .minimumSizeBytes = -1},
                            RuleAction::moveToFolder(""));
  EXPECT_THAT(faultyPartsOf(rule), ElementsAre(ruleNamePart, "folderPath", "fileExtensions", "minimumAgeDays",
                                               "minimumSizeBytes", ruleDestinationPart));
  EXPECT_EQ(refusalOf(rule)->part, "folderPath") << "nobody is hindered by a name";
  EXPECT_THAT(faultyPartsOf(ruleFor("rule", {.folderPath = std::string("/a\0b", 4)},
                                    RuleAction::moveToFolder(std::string("~/a\0b", 5)))),
              ElementsAre("folderPath", ruleDestinationPart));
  EXPECT_THAT(faultyPartsOf(ruleFor("rule", {.fileExtensions = {{"pdf", ""}}})), ElementsAre("fileExtensions"));
}

TEST(RuleCheck, findsTheBuiltInRulesSound) {
  for (const auto& rule : BuiltInRuleTemplates::defaultRules()) EXPECT_THAT(problemsWith(rule), IsEmpty()) << rule.name;
}

}  // namespace
}  // namespace orvane::test
