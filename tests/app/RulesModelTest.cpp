#include "app/rules/RulesModel.h"

#include "app/common/Format.h"
#include "core/rules/records/RuleFields.h"
#include "tests/app/WindowFixture.h"
#include "tests/support/CleanupRules.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace orvane::test {
namespace {

class RulesModelTest : public WindowFixture {
 public:
  // The last in the list.
  void add(const std::string& name, RuleTrigger trigger, RuleAction action = RuleAction::moveToTrash()) {
    rules.addOrUpdateRule(ruleFor(name, std::move(trigger), std::move(action)));
  }
  void preview(RulesModel& model, const QString& name) {
    QModelIndexList found;
    ASSERT_TRUE(becomesTrue([&] {
      found = model.match(model.index(0), RulesModel::NameRole, name, 1, Qt::MatchExactly);
      return !found.isEmpty();
    }));
    model.previewRule(found.front().row());
    ASSERT_TRUE(becomesTrue([&] { return !model.isPreviewing(); }));
  }
  // Of a condition in the editor.
  static int rowOf(std::string_view key) {
    const auto fields = ruleFields();
    return static_cast<int>(std::ranges::find(fields, key, &RuleField::key) - fields.begin());
  }
  RuleTrigger logs{.fileExtensions = {{"log"}}};
};

TEST_F(RulesModelTest, writesARuleCountsPreviewsAndRunsIt) {
  tree.file("Downloads/keep.txt");
  tree.file("Downloads/old draft.tmpx", "draft");
  RulesModel model(services());
  ASSERT_TRUE(becomesTrue([&] { return model.ruleCount() == 12; }));
  model.add();
  auto& editor = *model.editor();
  EXPECT_TRUE(shows(editor, {{"isNew", true}, {"canSave", false}}));
  EXPECT_TRUE(editor.problems().contains("name") && editor.problems().contains("trigger"));
  editor.setProperty("name", "Drafts");
  editor.edit(rowOf("fileExtensions"), ".tmpx");
  ASSERT_TRUE(becomesTrue([&] { return editor.matchCount() >= 0; }));
  EXPECT_TRUE(editor.canSave());

  editor.setProperty("action", RuleEditor::Folder);
  EXPECT_TRUE(editor.problems().contains("path"));
  editor.setActionPath("file://" + place("Downloads/Drafts"));
  ASSERT_TRUE(becomesTrue([&] { return editor.matchCount() >= 0; }));
  EXPECT_TRUE(editor.canSave());
  const auto expected = editor.matchCount();
  model.save();
  ASSERT_TRUE(becomesTrue([&] { return model.ruleCount() == 13; }));
  preview(model, "Drafts");
  EXPECT_TRUE(shows(model, {{"previewCount", expected}, {"movableCount", expected}}));

  model.setEnabled(0, false);
  ASSERT_TRUE(becomesTrue([&] { return !rules.getRules().front().isEnabled; }));
  model.remove(model.data(model.index(12), RulesModel::IdRole).toString());
  ASSERT_TRUE(becomesTrue([&] { return model.ruleCount() == 12; }));
}

TEST_F(RulesModelTest, changesOnlyTheConditionsThatWereEdited) {
  const RuleTrigger before{.folderPath = "~/Downloads",
                           .fileExtensions = {{"log"}},
                           .categories = {{ScanCategory::logs}},
                           .minimumAgeDays = 7,
                           .minimumSizeBytes = 1'073'741'824,
                           .namePattern = "old"};
  add("Logs", before);
  RulesModel model(services());
  ASSERT_TRUE(becomesTrue([&] { return model.ruleCount() == 13; }));
  EXPECT_EQ(model.data(model.index(12), RulesModel::ConditionsRole).toString(),
            "~/Downloads · log · System & App Logs · older than 7 days · at least " + Format::bytes(1'073'741'824) +
                " · name contains “old”");
  model.edit(12);
  auto& editor = *model.editor();
  EXPECT_EQ(editor.rule().trigger, before);
  editor.edit(rowOf("folderPath"), "file://" + place("Downloads"));
  editor.edit(rowOf("categories"), "logs, caches");
  editor.edit(rowOf("minimumAgeDays"), "");
  auto after = before;
  after.folderPath = tree.path("Downloads");
  after.categories = {{ScanCategory::logs, ScanCategory::caches}};
  after.minimumAgeDays.reset();
  EXPECT_EQ(editor.rule().trigger, after);
  editor.edit(rowOf("folderPath"), "Downloads");
  EXPECT_TRUE(shows(editor, rowOf("folderPath"), {{"problemKey", "rules.folder_missing"}}));
}

TEST_F(RulesModelTest, countsFilesInTheirPlaceApart) {
  tree.file("Downloads/a.log", "1234567");
  tree.file("Downloads/Logs/b.log", "12345");
  add("Sort", logs, RuleAction::moveToFolder(tree.path("Downloads/Logs")));
  RulesModel model(services());
  preview(model, "Sort");
  EXPECT_TRUE(shows(model, {{"previewCount", 1}, {"previewBytes", 7}}));
  EXPECT_EQ(model.previewRemarks(), QStringList{"1 item is already where “Sort” would move it."});
  finish(model, &RulesModel::runPreviewed);
  EXPECT_THAT(model.messages(), IsEmpty());
  EXPECT_TRUE(holds({"Downloads/Logs/b.log"}, {"Downloads/a.log"}));
  finish(model, &RulesModel::undo);
  EXPECT_TRUE(holds({"Downloads/a.log"}));
}

TEST_F(RulesModelTest, leavesOutAStoredRuleThatWouldTakeEverything) {
  tree.file("Downloads/a.log");
  add("All", {.folderPath = "/"});
  RulesModel model(services());
  preview(model, "All");
  EXPECT_EQ(model.previewCount(), 0);
  EXPECT_EQ(model.previewRemarks(), QStringList{"“All” is left out. Set at least one condition."});
  finish(model, &RulesModel::runPreviewed);
  EXPECT_TRUE(holds({"Downloads/a.log"}));

  model.edit(model.ruleCount() - 1);
  EXPECT_TRUE(model.editor()->problems().contains("trigger") && !model.editor()->canSave());
}

TEST_F(RulesModelTest, showsWhatItDoesNotMoveAndWhy) {
  const auto file = tree.file("Downloads/a.log");
  add("Show", logs, RuleAction::reviewOnly());
  add("Away", logs, RuleAction::moveToFolder(tree.path("Elsewhere")));
  RulesModel model(services());
  preview(model, "Show");
  EXPECT_TRUE(shows(model, {{"previewCount", 1}, {"movableCount", 0}}));
  EXPECT_EQ(model.preview().front().toMap()["reason"], "Show · Review Only");
  preview(model, "Away");
  EXPECT_EQ(model.movableCount(), 0);
  EXPECT_EQ(model.preview().front().toMap()["warning"], "Orvane must not move files there.");
  finish(model, &RulesModel::runPreviewed);
  EXPECT_TRUE(exists(file));
}

}  // namespace
}  // namespace orvane::test
