#include "core/base/Json.h"
#include "core/rules/BuiltInRuleTemplates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
    EXPECT_THAT(error.what(), testing::HasSubstr("path"));
  }
  EXPECT_THROW(static_cast<void>(RuleTrigger::fromJson(Json{{"categories", {"nonsense"}}})), JsonError);
}

TEST(CleanupRuleTest, everyTemplateReadsBackFromItsJson) {
  for (const auto& rule : BuiltInRuleTemplates::defaultRules()) {
    const auto copy = CleanupRule::fromJson(parseJson(jsonText(rule.toJson())));
    EXPECT_EQ(copy, rule) << rule.name;
  }
}

TEST(BuiltInRuleTemplatesTest, startsWithFourSwitchedOff) {
  std::vector<std::size_t> disabled;
  const auto rules = BuiltInRuleTemplates::defaultRules();
  ASSERT_EQ(rules.size(), 12U);
  for (std::size_t i = 0; i < rules.size(); ++i) {
    EXPECT_TRUE(rules[i].isBuiltIn);
    if (!rules[i].isEnabled) disabled.push_back(i + 1);
  }
  EXPECT_THAT(disabled, testing::ElementsAre(7, 8, 11, 12));
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
  for (std::size_t i = 0; i < rules.size(); ++i) EXPECT_EQ(jsonText(rules[i].trigger.toJson()), expected[i]);
}

TEST(BuiltInRuleTemplatesTest, makesNewIdentifiersEachTime) {
  EXPECT_NE(BuiltInRuleTemplates::defaultRules()[0].id, BuiltInRuleTemplates::defaultRules()[0].id);
}

}  // namespace
}  // namespace orvane::test
