#include "core/base/text/Json.h"
#include "core/rules/RuleEngine.h"
#include "platform/linux/LinuxPreferences.h"
#include "tests/support/CleanupRules.h"
#include "tests/support/SafetyFixture.h"

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

TEST_F(RuleEngineTest, losesNoRuleThatAnotherProcessAddsAndDeletesOnlyTheUsers) {
  const auto mine = ruleFor("rule", {}, RuleAction::reviewOnly());
  engine.keepIdentities();
  engine.addOrUpdateRule(mine);
  other.addOrUpdateRule(ruleFor("rule", {}, RuleAction::reviewOnly()));
  EXPECT_EQ(engine.getRules().size(), 14U);
  EXPECT_EQ(engine.getRules(), other.getRules());
  other.deleteRule(mine.id);
  other.deleteRule(engine.getRules().front().id);
  EXPECT_EQ(engine.getRules().size(), 13U);
  engine.toggleRule(engine.getRules().front().id, false);
  EXPECT_FALSE(other.getRules().front().isEnabled);
}

TEST_F(RuleEngineTest, matchesByEveryCondition) {
  const Rows<const char*, RuleTrigger, FileItem, bool> rows{
      {"no condition", {}, item("/a"), true},
      {"manual", {}, item("/a.pdf", 0, RiskLabel::manual), false},
      {"sibling with the same beginning", {.folderPath = "/srv/Downloads"}, item("/srv/Downloads2/a"), true},
      {"other case of a folder", {.folderPath = "/srv/Downloads"}, item("/srv/downloads/a"), false},
      {"extension in any case", {.fileExtensions = {{"PDF"}}}, item("/a.pDf"), true},
      {"no extension", {.fileExtensions = {{""}}}, item("/a"), false},
      {"an hour too young", {.minimumAgeDays = 30}, item("/a", 30 * day - 2 * hour), false},
      {"old enough", {.minimumAgeDays = 30}, item("/a", 30 * day + 2 * hour), true},
      {"too small", {.minimumSizeBytes = 8}, item("/a"), false},
      {"name in any case", {.namePattern = "Screen Recording"}, item("/x screen recording.MOV"), true},
      {"folder with the name", {.namePattern = "Screen Recording"}, item("/Screen Recording/a.mov"), false},
  };
  for (const auto& [name, trigger, file, matches] : rows) {
    EXPECT_EQ(RuleEngine::matches(file, trigger, ReferenceClock::now()), matches) << name;
  }
}

TEST_F(RuleEngineTest, trashesAndMovesAsOneRunThatComesBack) {
  const auto trashed = tree.file("Downloads/old.tmp");
  const auto moved = tree.file("Downloads/a.txt");
  tree.file("Downloads/Texts/a.txt", "other");
  const auto inPlace = tree.file("Downloads/Texts/b.txt", "other");
  const auto kept = tree.file("Elsewhere/b.tmp");
  const RuleTrigger temporary{.fileExtensions = {{"tmp"}}};
  const RuleTrigger text{.fileExtensions = {{"txt"}}};
  auto off = ruleFor("rule", {}, RuleAction::moveToTrash());
  off.isEnabled = false;
  const std::vector rules{
      off,
      ruleFor("rule", {}, RuleAction::reviewOnly()),
      ruleFor("rule", {}, RuleAction::moveToFolder(tree.path("Elsewhere"))),
      ruleFor("rule", temporary, RuleAction::moveToTrash()),
      ruleFor("rule", text, RuleAction::moveToFolder(tree.path("Downloads/Texts"))),
      ruleFor("rule", {.fileExtensions = {{"txt"}}, .namePattern = "a"}, RuleAction::moveToTrash())};

  // Another file has taken the name of one that was found.
  const auto replaced = tree.file("Downloads/b.tmp");
  FileItem::Fields before;
  before.url = FileUrl(replaced);
  before.category = ScanCategory::oldDownloads;
  before.identity = ItemIdentity::of(readPathStatus(trashed).value());

  const auto summary = engine.executeRules(
      rules, std::vector{item(trashed), item(moved), item(inPlace), item(kept), FileItem(before)}, roots());

  EXPECT_EQ(summary.itemsProcessed, 2);
  EXPECT_EQ(summary.bytesReclaimed, 7);
  EXPECT_FALSE(exists(trashed) || exists(moved));
  EXPECT_TRUE(exists(inPlace) && exists(kept) && exists(replaced));
  EXPECT_EQ(contentOf(tree.path("Downloads/Texts/a (1).txt")), "content");
  EXPECT_EQ(journal->getEntries(summary.batchId).size(), 2U);
  EXPECT_EQ(journal->restoreRun(summary.batchId).restoredCount, 2);
  EXPECT_TRUE(exists(trashed) && exists(moved));
}

}  // namespace
}  // namespace orvane::test
