#include "core/rules/BuiltInRuleTemplates.h"
#include "core/rules/records/RuleCheck.h"
#include "tests/support/CleanupRules.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {
namespace {

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
