#include "core/plans/PlanExecutor.h"

#include "core/base/files/PathAccess.h"
#include "core/base/text/Json.h"
#include "core/plans/records/CleaningPlan.h"
#include "tests/support/SafetyFixture.h"

#include <unistd.h>

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
  PlanExecutorTest() : executor(mover, validator) {}

  // A proposal to move a file from the downloads folder.
  [[nodiscard]] std::vector<PlanMatchResult> moves(const std::vector<std::string>& files, const std::string& target,
                                                   const std::string& destination) const {
    auto step = stepOf(PlannedAction::move, {.minimumSizeBytes = 0}, target);
    step.destinationFolder = destination;
    std::vector<FileItem> items;
    for (const auto& file : files) items.push_back(itemOf({.path = file}));
    return PlanExecutor::dryRun(planWith({step}), std::move(items), now);
  }

  [[nodiscard]] PlanExecutionSummary execute(const std::vector<PlanMatchResult>& results) {
    return executor.execute(results, *journal, roots());
  }

  PlanExecutor executor;
};

TEST_F(PlanExecutorTest, standsByActionAndRisk) {
  struct Table {
    PlannedAction action;
    RiskLabel label;
    bool canExecute;
    bool isSelected;
  };
  const auto file = tree.file("Downloads/a.txt");
  for (const auto& row : {Table{PlannedAction::move, RiskLabel::safe, true, true},
                          Table{PlannedAction::move, RiskLabel::review, true, true},
                          Table{PlannedAction::move, RiskLabel::manual, true, true},
                          Table{PlannedAction::trash, RiskLabel::safe, true, true},
                          Table{PlannedAction::trash, RiskLabel::review, true, false},
                          Table{PlannedAction::trash, RiskLabel::manual, false, false},
                          Table{PlannedAction::review, RiskLabel::safe, true, true},
                          Table{PlannedAction::review, RiskLabel::review, true, false},
                          Table{PlannedAction::review, RiskLabel::manual, false, false}}) {
    SCOPED_TRACE(std::string(rawValue(row.action)) + " of " + std::string(rawValue(row.label)));
    const auto results = PlanExecutor::dryRun(planWith({stepOf(row.action, {}, tree.path("Downloads"))}),
                                              {itemOf({.path = file, .label = row.label})}, now);
    ASSERT_THAT(results, SizeIs(1));
    EXPECT_EQ(results[0].canExecute, row.canExecute);
    EXPECT_EQ(results[0].isSelected, row.isSelected);
  }
}

TEST_F(PlanExecutorTest, movesOnlyRegularFilesDirectlyInTheFolder) {
  const auto file = tree.file("Downloads/report.pdf");
  const auto pipe = tree.pipe("Downloads/pipe.pdf");
  const auto results = moves({tree.file("Downloads/sub/inner.pdf"), file, tree.folder("Downloads/bundle.pdf"),
                              tree.link("Downloads/link.pdf", "report.pdf"), tree.path("Downloads/gone.pdf"), pipe},
                             tree.path("Downloads"), "~/x");
  ASSERT_THAT(results, SizeIs(1));
  EXPECT_EQ(results[0].item.url().path(), file);
}

TEST_F(PlanExecutorTest, tellsFilesApartInAFullFolderToo) {
  std::vector<std::string> paths;
  for (int i = 0; i < 300; ++i) {
    const auto name = "Downloads/" + std::to_string(i);
    paths.push_back(i % 3 == 0   ? tree.file(name)
                    : i % 3 == 1 ? tree.link(name, tree.path("Downloads/0"))
                                 : tree.folder(name));
  }
  paths.push_back(tree.path("Downloads/gone"));
  const auto results = moves(paths, tree.path("Downloads"), "/x");
  EXPECT_THAT(results, SizeIs(100));
  for (const auto& result : results) {
    EXPECT_TRUE(fs::symlink_status(result.item.url().path()).type() == fs::file_type::regular);
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
  const ScopedEnvironment home("HOME", tree.path().c_str());
  EXPECT_THAT(moves({file}, "~/Downloads", "/x"), SizeIs(1));
  EXPECT_THAT(moves({file}, tree.path("Down"), "/x"), IsEmpty());
  EXPECT_THAT(moves({file}, "", "/x"), IsEmpty());
}

TEST_F(PlanExecutorTest, aFolderAsItsOwnDestinationSortsIntoCategories) {
  const auto report = tree.file("Downloads/report.PDF", "report");
  const auto shot = tree.file("Downloads/Screenshot 1.png", "shot");
  const auto plain = tree.file("Downloads/Makefile", "make");
  const auto alias = tree.link("alias", tree.path("Downloads"));
  const auto summary = execute(moves({report, shot, plain}, tree.path("Downloads"), alias));

  EXPECT_EQ(summary.itemsProcessed, 3);
  EXPECT_EQ(summary.bytesReclaimed, 0);
  EXPECT_EQ(contentOf(tree.path("Downloads/Documents/PDFs/report.PDF")), "report");
  EXPECT_EQ(contentOf(tree.path("Downloads/Media/Screenshots/Screenshot 1.png")), "shot");
  EXPECT_EQ(contentOf(tree.path("Downloads/Other/Makefile")), "make");
  const auto entries = journal->getEntries(summary.batchId);
  ASSERT_THAT(entries, SizeIs(3));
  EXPECT_EQ(entries[0].action, JournalAction::moved);
  EXPECT_EQ(entries[0].originalURL.path(), report);
  EXPECT_EQ(entries[0].trashedURL.path(), tree.path("Downloads/Documents/PDFs/report.PDF"));
  EXPECT_EQ(entries[0].fileSize, 10);
}

TEST_F(PlanExecutorTest, aWholePlanComesBackByteForByte) {
  tree.file("Downloads/old.dmg", std::string(5000, 'd'));
  tree.file("Downloads/report.pdf", "report");
  tree.file("Downloads/sub/cache.bin", "cache");
  setAge(tree.path("Downloads/old.dmg"), 86400 * 90);
  const auto before = contentsBelow(tree.path("Downloads"));
  auto organize = stepOf(PlannedAction::move, {.extensions = ExtensionList{"pdf"}}, tree.path("Downloads"));
  organize.destinationFolder = organize.targetFolder;
  const auto plan = planWith({organize, stepOf(PlannedAction::trash, {.minimumAgeDays = 30}, tree.path("Downloads"))});
  const auto results = PlanExecutor::dryRun(plan,
                                            {itemOf({.path = tree.path("Downloads/old.dmg"), .size = 5000}),
                                             itemOf({.path = tree.path("Downloads/report.pdf"), .size = 6}),
                                             itemOf({.path = tree.path("Downloads/sub/cache.bin"), .size = 5})},
                                            now);
  const auto started = ReferenceClock::now();
  const auto summary = execute(results);

  EXPECT_EQ(summary.itemsProcessed, 3);
  EXPECT_EQ(summary.bytesReclaimed, 5005);
  EXPECT_GE(summary.timestamp, started);
  EXPECT_NE(contentsBelow(tree.path("Downloads")), before);
  const auto entries = journal->getEntries(summary.batchId);
  ASSERT_THAT(entries, SizeIs(3));
  EXPECT_EQ(entries[0].action, JournalAction::trashed);
  EXPECT_EQ(entries[1].action, JournalAction::moved);

  EXPECT_EQ(journal->restoreRun(summary.batchId).restoredCount, 3);
  auto after = contentsBelow(tree.path("Downloads"));
  for (const char* made : {"Documents", "Documents/PDFs"}) after.erase(made);
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
  const auto summary = execute(results);

  EXPECT_EQ(summary.itemsProcessed, 1);
  EXPECT_EQ(summary.bytesReclaimed, 10);
  for (const auto& item : items) {
    const auto& path = item.url().path();
    EXPECT_EQ(exists(path), path != tree.path("Downloads/safe")) << path;
  }
}

TEST_F(PlanExecutorTest, nothingSelectedWritesNothing) {
  auto results = PlanExecutor::dryRun(planWith({stepOf(PlannedAction::trash, {})}),
                                      {itemOf({.path = tree.file("Downloads/a")})}, now);
  results[0].isSelected = false;
  const auto summary = execute(results);
  EXPECT_EQ(summary.itemsProcessed, 0);
  EXPECT_EQ(summary.bytesReclaimed, 0);
  EXPECT_NE(summary.batchId, Uuid());
  EXPECT_THAT(journal->getRuns(), IsEmpty());
  EXPECT_FALSE(exists(journalPath()));
}

TEST_F(PlanExecutorTest, leavesAloneAFileThatTookTheNameOfTheOneLookedAt) {
  const auto swapped = tree.file("Downloads/swapped", "looked at");
  const auto kept = tree.file("Downloads/kept", "looked at");
  std::vector<FileItem> items;
  for (const auto& path : {swapped, kept}) {
    FileItem::Fields fields;
    fields.url = FileUrl(path);
    fields.identity = ItemIdentity::of(readPathStatus(path).value());
    fields.category = ScanCategory::caches;
    items.emplace_back(std::move(fields));
  }
  const auto results = PlanExecutor::dryRun(planWith({stepOf(PlannedAction::trash, {})}), items, now);
  fs::remove(swapped);
  tree.file("Downloads/swapped", "somebody's only copy");
  const auto summary = execute(results);
  EXPECT_EQ(summary.itemsProcessed, 1);
  EXPECT_EQ(contentOf(swapped), "somebody's only copy");
  EXPECT_FALSE(exists(kept));
}

TEST_F(PlanExecutorTest, aDestinationOutsideTheRootsChangesNothing) {
  const ScopedEnvironment home("HOME", tree.path().c_str());
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

TEST_F(PlanExecutorTest, aMoveWithoutADestinationIsLeftAlone) {
  const auto file = tree.file("Downloads/a.txt");
  auto results = moves({file}, tree.path("Downloads"), "/x");
  results[0].destinationFolder.reset();
  EXPECT_EQ(execute(results).itemsProcessed, 0);
  EXPECT_TRUE(exists(file));
}

}  // namespace
}  // namespace orvane::test
