#include "core/plans/PlanExecutor.h"

#include "core/base/files/PathAccess.h"
#include "core/base/text/Json.h"
#include "core/plans/records/CleaningPlan.h"
#include "tests/support/SafetyFixture.h"

namespace orvane::test {
namespace {

const Date now = dateFromUnix(1'750'000'000);

struct Candidate {
  std::string path = "/d/file.txt";
  ScanCategory category = ScanCategory::caches;
  std::optional<RiskLabel> label = std::nullopt;
  std::int64_t size = 10;
  double ageDays = 100;
};

FileItem itemOf(const Candidate& candidate) {
  FileItem::Fields fields;
  fields.url = FileUrl(candidate.path);
  fields.fileSize = candidate.size;
  fields.lastModifiedDate = now - std::chrono::duration<double>(candidate.ageDays * 86400);
  fields.category = candidate.category;
  fields.riskLabel = candidate.label;
  return FileItem(std::move(fields));
}

CleaningPlanStep stepOf(PlannedAction action, CleaningFilter filter, std::string folder = "/d") {
  CleaningPlanStep step;
  step.targetFolder = std::move(folder);
  step.filter = std::move(filter);
  step.action = action;
  step.explanation = "why";
  return step;
}

CleaningPlan planWith(std::vector<CleaningPlanStep> steps) {
  CleaningPlan plan;
  plan.userGoal = "goal";
  plan.steps = std::move(steps);
  return plan;
}

using CategoryList = std::vector<ScanCategory>;
using ExtensionList = std::vector<std::string>;

TEST(PlanFilter, acceptsWhatEveryCriterionAccepts) {
  const Rows<const char*, CleaningFilter, Candidate, bool> rows{
      {"no criteria", {}, {}, true},
      {"empty criteria", {.categories = CategoryList{}, .extensions = ExtensionList{}, .nameContains = ""}, {}, true},
      {"one of the categories", {.categories = CategoryList{ScanCategory::logs, ScanCategory::caches}}, {}, true},
      {"other category", {.categories = CategoryList{ScanCategory::manualReview}}, {}, false},
      {"extension in any case", {.extensions = ExtensionList{"jpg"}}, {.path = "/d/photo.JPG"}, true},
      {"filter in any case", {.extensions = ExtensionList{"gif", "JpG"}}, {.path = "/d/photo.jpg"}, true},
      {"filter with a dot", {.extensions = ExtensionList{".jpg"}}, {.path = "/d/photo.jpg"}, false},
      {"beginning of an extension", {.extensions = ExtensionList{"jp"}}, {.path = "/d/photo.jpg"}, false},
      {"extension beyond ASCII", {.extensions = ExtensionList{"ÄÖ"}}, {.path = "/d/photo.äÖ"}, true},
      {"no extension", {.extensions = ExtensionList{"bashrc"}}, {.path = "/d/.bashrc"}, false},
      {"exact size", {.minimumSizeBytes = 10}, {}, true},
      {"a byte too small", {.minimumSizeBytes = 11}, {}, false},
      {"negative size", {.minimumSizeBytes = -1}, {.size = 0}, true},
      {"an hour too young", {.minimumAgeDays = 30}, {.ageDays = 29 + 23.0 / 24 - 0.05}, false},
      {"old enough", {.minimumAgeDays = 30}, {.ageDays = 30.05}, true},
      {"age of 0", {.minimumAgeDays = 0}, {.ageDays = 0}, true},
      {"name in any case", {.nameContains = "RÉSUMÉ"}, {.path = "/d/Mon résumé.pdf"}, true},
      {"folder's name does not count", {.nameContains = "report"}, {.path = "/report/x.pdf"}, false},
      {"all must hold", {.extensions = ExtensionList{"txt"}, .minimumSizeBytes = 11}, {}, false},
  };
  for (const auto& [name, filter, candidate, accepted] : rows) {
    const auto plan = planWith({stepOf(PlannedAction::trash, filter)});
    EXPECT_EQ(!PlanExecutor::dryRun(plan, {itemOf(candidate)}, now).empty(), accepted) << name;
  }
}

TEST(PlanDryRun, keepsTheCandidatesOrderAndTakesTheFirstStep) {
  auto first = stepOf(PlannedAction::review, {.extensions = ExtensionList{"b"}});
  first.explanation = "first";
  auto second = stepOf(PlannedAction::trash, {.extensions = ExtensionList{"a", "b"}});
  second.explanation = "second";
  second.destinationFolder = "/ignored";
  const std::vector<FileItem> candidates{itemOf({.path = "/d/1.a"}), itemOf({.path = "/d/2.b"}),
                                         itemOf({.path = "/d/3.c"}), itemOf({.path = "/d/4.a"})};
  const auto results = PlanExecutor::dryRun(planWith({first, second}), candidates, now);

  ASSERT_THAT(results, SizeIs(3));
  EXPECT_EQ(results[0].item, candidates[0]);
  EXPECT_EQ(results[0].explanation, "second");
  EXPECT_EQ(results[0].destinationFolder, "/ignored");
  EXPECT_EQ(results[1].item, candidates[1]);
  EXPECT_EQ(results[1].action, PlannedAction::review);
  EXPECT_EQ(results[1].explanation, "first");
  EXPECT_EQ(results[2].item, candidates[3]);
  EXPECT_NE(results[0].id, results[2].id);
  EXPECT_EQ(results[1].toJson()["canExecute"], true);
}

class PlanExecutorTest : public SafetyFixture {
 public:
  // Proposals to move these files from a folder.
  [[nodiscard]] static std::vector<PlanMatchResult> moves(const std::vector<std::string>& files,
                                                          const std::string& target, const std::string& destination) {
    auto step = stepOf(PlannedAction::move, {.minimumSizeBytes = 0}, target);
    step.destinationFolder = destination;
    std::vector<FileItem> items;
    for (const auto& file : files) items.push_back(itemOf({.path = file}));
    return PlanExecutor::dryRun(planWith({step}), std::move(items), now);
  }
  [[nodiscard]] PlanExecutionSummary execute(const std::vector<PlanMatchResult>& results) {
    return executor.execute(results, *journal, roots());
  }

  PlanExecutor executor{mover, validator};
  const ScopedEnvironment home{"HOME", tree.path().c_str()};
};

TEST_F(PlanExecutorTest, standsByActionAndRisk) {
  const Rows<PlannedAction, RiskLabel, bool, bool> rows{
      // whether it can be carried out, and is selected
      {PlannedAction::move, RiskLabel::safe, true, true},       {PlannedAction::move, RiskLabel::review, true, true},
      {PlannedAction::move, RiskLabel::manual, true, true},     {PlannedAction::trash, RiskLabel::safe, true, true},
      {PlannedAction::trash, RiskLabel::review, true, false},   {PlannedAction::trash, RiskLabel::manual, false, false},
      {PlannedAction::review, RiskLabel::safe, true, true},     {PlannedAction::review, RiskLabel::review, true, false},
      {PlannedAction::review, RiskLabel::manual, false, false},
  };
  const auto file = tree.file("Downloads/a.txt");
  for (const auto& [action, label, canExecute, isSelected] : rows) {
    SCOPED_TRACE(std::string(rawValue(action)) + " of " + std::string(rawValue(label)));
    const auto results = PlanExecutor::dryRun(planWith({stepOf(action, {}, tree.path("Downloads"))}),
                                              {itemOf({.path = file, .label = label})}, now);
    ASSERT_THAT(results, SizeIs(1));
    EXPECT_EQ(results[0].canExecute, canExecute);
    EXPECT_EQ(results[0].isSelected, isSelected);
  }
}

TEST_F(PlanExecutorTest, movesOnlyRegularFilesDirectlyInTheFolder) {
  const auto file = tree.file("Downloads/report.pdf");
  std::vector<std::string> paths{tree.file("Downloads/sub/inner.pdf"), file, tree.path("Downloads/gone.pdf"),
                                 tree.pipe("Downloads/pipe.pdf")};
  // Few files are looked at one by one, and of many the folder is read.
  for (const int count : {1, 150}) {
    for (int i = 0; i < count; ++i) {
      const auto name = "Downloads/" + std::to_string(count) + "-" + std::to_string(i);
      paths.push_back(tree.link(name, "report.pdf"));
      paths.push_back(tree.folder(name + " folder"));
    }
    const auto results = moves(paths, tree.path("Downloads"), "/x");
    ASSERT_THAT(results, SizeIs(1));
    EXPECT_EQ(results[0].item.url().path(), file);
  }
}

TEST_F(PlanExecutorTest, comparesFoldersWithLinksResolved) {
  const auto file = tree.file("Downloads/a.txt");
  const auto other = tree.file("Downloads/Downloads/b.txt");
  const auto alias = tree.link("alias", tree.path("Downloads"));
  EXPECT_THAT(moves({file, other}, alias, "/x"), SizeIs(1));
  EXPECT_THAT(moves({alias + "/a.txt"}, tree.path("Downloads"), "/x"), SizeIs(1));
  EXPECT_THAT(moves({file}, tree.path("Downloads/Downloads/../"), "/x"), SizeIs(1));
  EXPECT_THAT(moves({file}, " " + tree.path("Downloads") + "\n", "/x"), SizeIs(1));
  EXPECT_THAT(moves({file}, "~/Downloads", "/x"), SizeIs(1));
  EXPECT_THAT(moves({file}, tree.path("Down"), "/x"), IsEmpty());
  EXPECT_THAT(moves({file}, "", "/x"), IsEmpty());
}

TEST_F(PlanExecutorTest, aWholePlanComesBackByteForByte) {
  tree.file("Downloads/old.dmg", std::string(5000, 'd'));
  const auto report = tree.file("Downloads/report.PDF", "report");
  tree.file("Downloads/Screenshot 1.png", "shot");
  tree.file("Downloads/Makefile", "make");
  setAge(tree.path("Downloads/old.dmg"), 86400 * 90);
  const auto before = contentsBelow(tree.path("Downloads"));
  // A folder that is its own destination is sorted into categories.
  auto organize = stepOf(PlannedAction::move, {.minimumAgeDays = 100}, tree.path("Downloads"));
  organize.destinationFolder = tree.link("alias", tree.path("Downloads"));
  const auto plan = planWith({organize, stepOf(PlannedAction::trash, {.minimumAgeDays = 30}, tree.path("Downloads"))});
  std::vector<FileItem> items;
  for (const auto* name : {"old.dmg", "report.PDF", "Screenshot 1.png", "Makefile"}) {
    items.push_back(itemOf({.path = tree.path("Downloads/" + std::string(name)),
                            .size = *name == 'o' ? 5000 : 10,
                            .ageDays = *name == 'o' ? 90.0 : 200.0}));
  }
  const auto started = ReferenceClock::now();
  const auto summary = execute(PlanExecutor::dryRun(plan, items, now));

  EXPECT_EQ(summary.itemsProcessed, 4);
  EXPECT_EQ(summary.bytesReclaimed, 5000) << "moves free nothing";
  EXPECT_GE(summary.timestamp, started);
  EXPECT_THAT(filesBelow(tree.path("Downloads")),
              ElementsAre("Documents/PDFs/report.PDF", "Media/Screenshots/Screenshot 1.png", "Other/Makefile"));
  const auto entries = journal->getEntries(summary.batchId);
  ASSERT_THAT(entries, SizeIs(4));
  EXPECT_EQ(entries[0].action, JournalAction::trashed);
  EXPECT_EQ(entries[1].action, JournalAction::moved);
  EXPECT_EQ(entries[1].originalURL.path(), report);
  EXPECT_EQ(entries[1].trashedURL.path(), tree.path("Downloads/Documents/PDFs/report.PDF"));

  EXPECT_EQ(journal->restoreRun(summary.batchId).restoredCount, 4);
  auto after = contentsBelow(tree.path("Downloads"));
  std::erase_if(after, [&](const auto& entry) { return entry.second == "/"; });
  EXPECT_EQ(after, before);
}

TEST_F(PlanExecutorTest, carriesOutOnlyWhatIsSelectedAndMayBe) {
  std::vector<FileItem> items;
  for (const auto& [path, label] : {std::pair{tree.file("Downloads/unselected"), RiskLabel::safe},
                                    {tree.file("Downloads/manual"), RiskLabel::manual},
                                    {tree.file("Downloads/forced"), RiskLabel::manual},
                                    {tree.file("Downloads/review"), RiskLabel::safe},
                                    {tree.file("Elsewhere/outside"), RiskLabel::safe},
                                    {tree.link("Downloads/escape", tree.path("Elsewhere")), RiskLabel::safe},
                                    {tree.file("Downloads/safe"), RiskLabel::safe}}) {
    items.push_back(itemOf({.path = path, .label = label}));
  }
  auto results = PlanExecutor::dryRun(
      planWith({stepOf(PlannedAction::review, {.nameContains = "review"}), stepOf(PlannedAction::trash, {})}), items,
      now);
  ASSERT_EQ(results.size(), items.size());
  results[0].isSelected = false;
  results[1].isSelected = true;
  results[2].isSelected = results[2].canExecute = true;
  auto none = results;
  for (auto& result : none) result.isSelected = false;
  EXPECT_EQ(execute(none).itemsProcessed, 0);
  EXPECT_FALSE(exists(journalPath()));
  auto nowhere = moves({tree.path("Downloads/safe")}, tree.path("Downloads"), "/x");
  nowhere[0].destinationFolder.reset();
  EXPECT_EQ(execute(nowhere).itemsProcessed, 0);
  const auto summary = execute(results);

  EXPECT_EQ(summary.itemsProcessed, 1);
  EXPECT_EQ(summary.bytesReclaimed, 10);
  for (const auto& item : items) {
    const auto& path = item.url().path();
    EXPECT_EQ(exists(path), path != tree.path("Downloads/safe")) << path;
  }
}

TEST_F(PlanExecutorTest, leavesAloneAFileThatTookTheNameOfTheOneLookedAt) {
  const auto swapped = tree.file("Downloads/swapped", "looked at");
  FileItem::Fields fields;
  fields.url = FileUrl(swapped);
  fields.identity = ItemIdentity::of(readPathStatus(swapped).value());
  fields.category = ScanCategory::caches;
  const auto results = PlanExecutor::dryRun(planWith({stepOf(PlannedAction::trash, {})}), {FileItem(fields)}, now);
  fs::remove(swapped);
  tree.file("Downloads/swapped", "somebody's only copy");
  EXPECT_EQ(execute(results).itemsProcessed, 0);
  EXPECT_EQ(contentOf(swapped), "somebody's only copy");
}

TEST_F(PlanExecutorTest, aDestinationOutsideTheRootsChangesNothing) {
  const auto file = tree.file("Downloads/a.txt", "stays");
  tree.folder("Elsewhere");
  for (const auto& destination :
       {std::string("/"), std::string("/etc"), std::string("~"), std::string("~/New"), std::string("~/.ssh"),
        tree.path("Elsewhere"), tree.path("Downloads/../Elsewhere"),
        tree.link("Downloads/out", tree.path("Elsewhere")) + "/deeper", std::string("New"),
        tree.path("Downloads/x") + std::string("\0y", 2), tree.file("Downloads/taken") + "/deeper"}) {
    SCOPED_TRACE(destination);
    const auto results = moves({file}, tree.path("Downloads"), destination);
    ASSERT_THAT(results, SizeIs(1));
    EXPECT_EQ(execute(results).itemsProcessed, 0);
    EXPECT_EQ(contentOf(file), "stays");
    EXPECT_TRUE(fs::is_empty(tree.path("Elsewhere")));
    EXPECT_FALSE(exists(tree.path("New")) || exists(tree.path(".ssh")));
    EXPECT_THAT(journal->getRuns(), IsEmpty());
  }
}

}  // namespace
}  // namespace orvane::test
