#include "core/base/text/Json.h"
#include "core/rules/BuiltInRuleTemplates.h"
#include "core/rules/records/RuleFields.h"
#include "tests/support/Testing.h"

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

TEST(CleanupRuleTest, takesAnUnknownActionForAReview) {
  EXPECT_EQ(RuleAction::fromJson(Json{{"type", "shred"}, {"path", "/"}}), RuleAction::reviewOnly());
  EXPECT_EQ(RuleAction::fromJson(Json{{"type", "moveToTrash"}}), RuleAction::moveToTrash());
}

TEST(CleanupRuleTest, namesTheKeyThatIsWrong) {
  try {
    static_cast<void>(RuleAction::fromJson(Json{{"type", "moveToFolder"}}));
    FAIL() << "a move without a folder was taken";
  } catch (const JsonError& error) {
    EXPECT_THAT(error.what(), HasSubstr("path"));
  }
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

TEST(BuiltInRuleTemplatesTest, startWithFourSwitchedOff) {
  std::vector<std::size_t> disabled;
  const auto rules = BuiltInRuleTemplates::defaultRules();
  ASSERT_EQ(rules.size(), 12U);
  for (std::size_t i = 0; i < rules.size(); ++i) {
    EXPECT_TRUE(rules[i].isBuiltIn);
    if (!rules[i].isEnabled) disabled.push_back(i + 1);
  }
  EXPECT_THAT(disabled, ElementsAre(7, 8, 11, 12));
  EXPECT_EQ(rules[3].trigger.minimumSizeBytes, 1073741824);
  EXPECT_EQ(rules[3].action, RuleAction::reviewOnly());
  EXPECT_EQ(rules[6].action, RuleAction::moveToFolder("~/Documents/PDFs"));
}

TEST(BuiltInRuleTemplatesTest, haveTheirGivenTriggers) {
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
    EXPECT_EQ(jsonText(rules[i].trigger.toJson()), expected[i]);
    EXPECT_EQ(CleanupRule::fromJson(parseJson(jsonText(rules[i].toJson()))), rules[i]) << rules[i].name;
  }
}

}  // namespace
}  // namespace orvane::test
