#include "core/base/text/Json.h"
#include "core/rules/RuleEngine.h"
#include "platform/linux/LinuxPreferences.h"
#include "tests/support/SafetyFixture.h"
#include "tests/support/TimeZone.h"

#include <gtest/gtest.h>

#include <fcntl.h>

#include <filesystem>

namespace orvane::test {
namespace {

constexpr double hour = 3600;
constexpr double day = 24 * hour;

FileItem item(const std::string& path, double age = 0, RiskLabel risk = RiskLabel::review) {
  FileItem::Fields fields;
  fields.url = FileUrl(path);
  fields.fileSize = 7;
  fields.lastModifiedDate = ReferenceClock::now() - ReferenceClock::duration(age);
  fields.category = ScanCategory::oldDownloads;
  fields.riskLabel = risk;
  return FileItem(std::move(fields));
}

CleanupRule ruleWith(RuleTrigger trigger, RuleAction action) {
  CleanupRule rule;
  rule.name = "rule";
  rule.trigger = std::move(trigger);
  rule.action = std::move(action);
  return rule;
}

class RuleEngineTest : public SafetyFixture {
 public:
  LinuxPreferences preferences{tree.path("preferences.json")};
  RuleEngine engine{preferences, mover, *journal, validator};
  // As another process has it.
  RuleEngine other{preferences, mover, *journal, validator};
};

TEST_F(RuleEngineTest, offersTheBuiltInRulesUntilSomeAreStored) {
  EXPECT_EQ(engine.getRules().size(), 12U);
  EXPECT_FALSE(preferences.value("OrvaneCleanupRules"));
  preferences.setValue("OrvaneCleanupRules", Json::array({1}));
  EXPECT_EQ(other.getRules().size(), 12U);
  preferences.setValue("OrvaneCleanupRules", Json::array());
  EXPECT_TRUE(engine.getRules().empty());
}

TEST_F(RuleEngineTest, deletesOnlyTheUsersRules) {
  const auto builtIn = engine.getRules().front();
  const auto own = ruleWith({}, RuleAction::reviewOnly());
  engine.addOrUpdateRule(own);
  EXPECT_EQ(other.getRules().size(), 13U);
  other.deleteRule(own.id);
  other.deleteRule(builtIn.id);
  EXPECT_EQ(engine.getRules().size(), 12U);
  engine.toggleRule(builtIn.id, false);
  EXPECT_FALSE(other.getRules().front().isEnabled);
}

struct MatchCase {
  const char* name;
  RuleTrigger trigger;
  FileItem file;
  bool matches;
};

TEST_F(RuleEngineTest, matchesByEveryCondition) {
  RuleTrigger folder;
  folder.folderPath = "/srv/Downloads";
  RuleTrigger pdf;
  pdf.fileExtensions = {"PDF"};
  RuleTrigger noName;
  noName.fileExtensions = {""};
  RuleTrigger aged;
  aged.minimumAgeDays = 30;
  RuleTrigger large;
  large.minimumSizeBytes = 8;
  RuleTrigger named;
  named.namePattern = "Screen Recording";
  const MatchCase cases[] = {
      {"no condition", {}, item("/a"), true},
      {"manual", {}, item("/a.pdf", 0, RiskLabel::manual), false},
      {"a sibling with the same beginning", folder, item("/srv/Downloads2/a"), true},
      {"other case of a folder", folder, item("/srv/downloads/a"), false},
      {"extension in any case", pdf, item("/a.pDf"), true},
      {"no extension", noName, item("/a"), false},
      {"an hour too young", aged, item("/a", 30 * day - 2 * hour), false},
      {"old enough", aged, item("/a", 30 * day + 2 * hour), true},
      {"too small", large, item("/a"), false},
      {"name in any case", named, item("/x screen recording.MOV"), true},
      {"folder with the name", named, item("/Screen Recording/a.mov"), false},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(RuleEngine::matches(row.file, row.trigger, ReferenceClock::now()), row.matches) << row.name;
  }
}

TEST_F(RuleEngineTest, trashesAndMovesAsOneRunThatComesBack) {
  const auto trashed = tree.file("Downloads/old.tmp");
  const auto moved = tree.file("Downloads/a.txt");
  tree.file("Downloads/Texts/a.txt", "other");
  tree.file("Downloads/Texts/a (1).txt", "other");
  const auto kept = tree.file("Elsewhere/b.tmp");
  RuleTrigger temporary;
  temporary.fileExtensions = {"tmp"};
  RuleTrigger text;
  text.fileExtensions = {"txt"};
  auto off = ruleWith({}, RuleAction::moveToTrash());
  off.isEnabled = false;
  const std::vector rules{off, ruleWith({}, RuleAction::reviewOnly()), ruleWith(temporary, RuleAction::moveToTrash()),
                          ruleWith(text, RuleAction::moveToFolder(tree.path("Downloads/Texts"))),
                          ruleWith(text, RuleAction::moveToTrash())};
  const std::vector files{item(trashed), item(moved), item(kept)};

  const auto summary = engine.executeRules(rules, files, roots());

  EXPECT_EQ(summary.itemsProcessed, 2);
  EXPECT_EQ(summary.bytesReclaimed, 7);
  EXPECT_FALSE(exists(trashed));
  EXPECT_FALSE(exists(moved));
  EXPECT_TRUE(exists(kept));
  EXPECT_EQ(contentOf(tree.path("Downloads/Texts/a (2).txt")), "content");
  EXPECT_EQ(journal->getEntries(summary.batchId).size(), 2U);
  EXPECT_EQ(journal->restoreRun(summary.batchId).restoredCount, 2);
  EXPECT_TRUE(exists(trashed));
  EXPECT_TRUE(exists(moved));
}

TEST_F(RuleEngineTest, leavesAFileThatIsInItsFolderAlready) {
  const auto file = tree.file("Downloads/PDFs/a.pdf");
  const std::vector rules{ruleWith({}, RuleAction::moveToFolder(tree.path("Downloads/PDFs")))};
  EXPECT_EQ(engine.executeRules(rules, std::vector{item(file)}, roots()).itemsProcessed, 0);
  EXPECT_TRUE(exists(file));
}

TEST_F(RuleEngineTest, leavesAFileThatIsNotTheOneThatWasFound) {
  const auto file = tree.file("Downloads/a.txt");
  FileItem::Fields fields;
  fields.url = FileUrl(file);
  fields.category = ScanCategory::oldDownloads;
  fields.identity = ItemIdentity::of(*readFileStatus(AT_FDCWD, file.c_str()));
  std::filesystem::remove(file);
  tree.file("Downloads/a.txt");
  const std::vector rules{ruleWith({}, RuleAction::moveToTrash())};
  EXPECT_EQ(engine.executeRules(rules, std::vector{FileItem(fields)}, roots()).itemsProcessed, 0);
  EXPECT_TRUE(exists(file));
}

TEST_F(RuleEngineTest, refusesADestinationOutsideTheRoots) {
  const auto file = tree.file("Downloads/a.pdf");
  const std::vector rules{ruleWith({}, RuleAction::moveToFolder(tree.path("Elsewhere"))),
                          ruleWith({}, RuleAction::moveToTrash())};
  EXPECT_EQ(engine.executeRules(rules, std::vector{item(file)}, roots()).bytesReclaimed, 7);
  EXPECT_FALSE(exists(tree.path("Elsewhere")));
}

TEST_F(RuleEngineTest, losesNoRuleThatAnotherProcessAdds) {
  const auto mine = ruleWith({}, RuleAction::reviewOnly());
  const auto theirs = ruleWith({}, RuleAction::reviewOnly());
  engine.keepIdentities();
  engine.addOrUpdateRule(mine);
  other.addOrUpdateRule(theirs);
  const auto rules = engine.getRules();
  EXPECT_EQ(rules.size(), 14U);
  EXPECT_EQ(rules, other.getRules());
}

TEST_F(RuleEngineTest, countsDaysAcrossAChangeOfTheClock) {
  inTimeZone("Europe/Berlin", [] {
    RuleTrigger trigger;
    trigger.minimumAgeDays = 1;
    FileItem::Fields fields;
    fields.url = FileUrl("/a");
    fields.category = ScanCategory::oldDownloads;
    // Noon of the day before clocks go forward: the next noon comes after 23 hours.
    fields.lastModifiedDate = dateFromUnix(1711796400);
    const FileItem file(fields);
    EXPECT_FALSE(RuleEngine::matches(file, trigger, dateFromUnix(1711796400 + 23 * 3600 - 1)));
    EXPECT_TRUE(RuleEngine::matches(file, trigger, dateFromUnix(1711796400 + 23 * 3600)));
  });
}

}  // namespace
}  // namespace orvane::test
