#include "core/plans/PlanExecutor.h"

#include "core/base/files/PathAccess.h"
#include "core/base/text/Json.h"
#include "core/plans/OfflineHeuristicParser.h"
#include "core/plans/records/CleaningPlan.h"
#include "tests/support/SafetyFixture.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>

namespace orvane {
namespace {

using test::contentOf;
using test::exists;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

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

bool matches(const CleaningFilter& filter, const Candidate& candidate) {
  return !PlanExecutor::dryRun(planWith({stepOf(PlannedAction::trash, filter)}), {itemOf(candidate)}, now).empty();
}

struct FilterCase {
  const char* name;
  CleaningFilter filter;
  Candidate candidate;
  bool accepted;
};
void PrintTo(const FilterCase& filterCase, std::ostream* out) {
  *out << filterCase.name;
}
class PlanFilter : public testing::TestWithParam<FilterCase> {};

TEST_P(PlanFilter, decides) {
  EXPECT_EQ(matches(GetParam().filter, GetParam().candidate), GetParam().accepted);
}

using CategoryList = std::vector<ScanCategory>;
using ExtensionList = std::vector<std::string>;

INSTANTIATE_TEST_SUITE_P(
    Criteria, PlanFilter,
    testing::Values(
        FilterCase{"no criteria", {}, {}, true},
        FilterCase{"empty criteria",
                   {.categories = CategoryList{}, .extensions = ExtensionList{}, .nameContains = ""},
                   {},
                   true},
        FilterCase{
            "one of the categories", {.categories = CategoryList{ScanCategory::logs, ScanCategory::caches}}, {}, true},
        FilterCase{"other category", {.categories = CategoryList{ScanCategory::manualReview}}, {}, false},
        FilterCase{"extension in any case", {.extensions = ExtensionList{"jpg"}}, {.path = "/d/photo.JPG"}, true},
        FilterCase{"filter in any case", {.extensions = ExtensionList{"gif", "JpG"}}, {.path = "/d/photo.jpg"}, true},
        FilterCase{"filter with a dot", {.extensions = ExtensionList{".jpg"}}, {.path = "/d/photo.jpg"}, false},
        FilterCase{"beginning of an extension", {.extensions = ExtensionList{"jp"}}, {.path = "/d/photo.jpg"}, false},
        FilterCase{"extension beyond ASCII", {.extensions = ExtensionList{"ÄÖ"}}, {.path = "/d/photo.äÖ"}, true},
        FilterCase{"no extension", {.extensions = ExtensionList{"bashrc"}}, {.path = "/d/.bashrc"}, false},
        FilterCase{"exact size", {.minimumSizeBytes = 10}, {}, true},
        FilterCase{"a byte too small", {.minimumSizeBytes = 11}, {}, false},
        FilterCase{"negative size", {.minimumSizeBytes = -1}, {.size = 0}, true},
        FilterCase{"an hour too young", {.minimumAgeDays = 30}, {.ageDays = 29 + 23.0 / 24 - 0.05}, false},
        FilterCase{"old enough", {.minimumAgeDays = 30}, {.ageDays = 30.05}, true},
        FilterCase{"age of 0", {.minimumAgeDays = 0}, {.ageDays = 0}, true},
        FilterCase{"name in any case", {.nameContains = "RÉSUMÉ"}, {.path = "/d/Mon résumé.pdf"}, true},
        FilterCase{"folder's name does not count", {.nameContains = "report"}, {.path = "/report/x.pdf"}, false},
        FilterCase{"all must hold", {.extensions = ExtensionList{"txt"}, .minimumSizeBytes = 11}, {}, false}));

struct Table {
  PlannedAction action;
  RiskLabel label;
  bool canExecute;
  bool isSelected;
};
class PlanSelection : public test::SafetyFixture, public testing::WithParamInterface<Table> {};

TEST_P(PlanSelection, followsActionAndRisk) {
  const auto& row = GetParam();
  const auto file = tree.file("Downloads/a.txt");
  const auto results = PlanExecutor::dryRun(planWith({stepOf(row.action, {}, tree.path("Downloads"))}),
                                            {itemOf({.path = file, .label = row.label})}, now);
  ASSERT_THAT(results, SizeIs(1));
  EXPECT_EQ(results[0].canExecute, row.canExecute);
  EXPECT_EQ(results[0].isSelected, row.isSelected);
}
INSTANTIATE_TEST_SUITE_P(Rows, PlanSelection,
                         testing::Values(Table{PlannedAction::move, RiskLabel::safe, true, true},
                                         Table{PlannedAction::move, RiskLabel::review, true, true},
                                         Table{PlannedAction::move, RiskLabel::manual, true, true},
                                         Table{PlannedAction::trash, RiskLabel::safe, true, true},
                                         Table{PlannedAction::trash, RiskLabel::review, true, false},
                                         Table{PlannedAction::trash, RiskLabel::manual, false, false},
                                         Table{PlannedAction::review, RiskLabel::safe, true, true},
                                         Table{PlannedAction::review, RiskLabel::review, true, false},
                                         Table{PlannedAction::review, RiskLabel::manual, false, false}));

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

class PlanExecutorTest : public test::SafetyFixture {
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

  // Every path with its content or link target.
  [[nodiscard]] std::map<std::string, std::string> everything() const {
    std::map<std::string, std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(tree.path("Downloads"))) {
      const auto path = entry.path().string();
      if (entry.is_symlink()) {
        found[path] = "-> " + std::filesystem::read_symlink(path).string();
      } else {
        found[path] = entry.is_directory() ? "/" : contentOf(path);
      }
    }
    return found;
  }

  PlanExecutor executor;
};

TEST_F(PlanExecutorTest, movesOnlyRegularFilesDirectlyInTheFolder) {
  const auto file = tree.file("Downloads/report.pdf");
  const auto deeper = tree.file("Downloads/sub/inner.pdf");
  const auto folder = tree.folder("Downloads/bundle.pdf");
  const auto link = tree.link("Downloads/link.pdf", "report.pdf");
  const auto gone = tree.path("Downloads/gone.pdf");
  const auto pipe = tree.path("Downloads/pipe.pdf");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const auto results = moves({deeper, file, folder, link, gone, pipe}, tree.path("Downloads"), "~/x");
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
    EXPECT_TRUE(std::filesystem::symlink_status(result.item.url().path()).type() ==
                std::filesystem::file_type::regular);
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
  const test::ScopedEnvironment home("HOME", tree.path().c_str());
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

TEST_F(PlanExecutorTest, aTakenNameGetsTheNextFreeOne) {
  tree.file("Downloads/to/a.txt", "there");
  tree.file("Downloads/to/a (1).txt", "there too");
  tree.file("Downloads/to/none", "there");
  const auto text = tree.file("Downloads/a.txt", "new");
  const auto none = tree.file("Downloads/none", "new");
  EXPECT_EQ(execute(moves({text, none}, tree.path("Downloads"), tree.path("Downloads/to"))).itemsProcessed, 2);
  EXPECT_EQ(contentOf(tree.path("Downloads/to/a.txt")), "there");
  EXPECT_EQ(contentOf(tree.path("Downloads/to/a (1).txt")), "there too");
  EXPECT_EQ(contentOf(tree.path("Downloads/to/a (2).txt")), "new");
  EXPECT_EQ(contentOf(tree.path("Downloads/to/none (1)")), "new");
}

TEST_F(PlanExecutorTest, aWholePlanComesBackByteForByte) {
  tree.file("Downloads/old.dmg", std::string(5000, 'd'));
  tree.file("Downloads/report.pdf", "report");
  tree.file("Downloads/sub/cache.bin", "cache");
  test::setAge(tree.path("Downloads/old.dmg"), 86400 * 90);
  const auto before = everything();
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
  EXPECT_NE(everything(), before);
  const auto entries = journal->getEntries(summary.batchId);
  ASSERT_THAT(entries, SizeIs(3));
  EXPECT_EQ(entries[0].action, JournalAction::trashed);
  EXPECT_EQ(entries[1].action, JournalAction::moved);

  EXPECT_EQ(journal->restoreRun(summary.batchId).restoredCount, 3);
  auto after = everything();
  for (const char* made : {"Downloads/Documents", "Downloads/Documents/PDFs"}) after.erase(tree.path(made));
  EXPECT_EQ(after, before);
}

TEST_F(PlanExecutorTest, carriesOutOnlyWhatIsSelectedAndMayBe) {
  const auto safe = tree.file("Downloads/safe");
  const auto unselected = tree.file("Downloads/unselected");
  const auto manual = tree.file("Downloads/manual");
  const auto forced = tree.file("Downloads/forced");
  const auto review = tree.file("Downloads/review");
  auto results = PlanExecutor::dryRun(
      planWith({stepOf(PlannedAction::review, {.nameContains = "review"}), stepOf(PlannedAction::trash, {})}),
      {itemOf({.path = safe}), itemOf({.path = unselected}), itemOf({.path = manual, .label = RiskLabel::manual}),
       itemOf({.path = forced, .label = RiskLabel::manual}), itemOf({.path = review})},
      now);
  ASSERT_THAT(results, SizeIs(5));
  results[1].isSelected = false;
  results[2].isSelected = true;
  results[3].isSelected = results[3].canExecute = true;
  const auto summary = execute(results);

  EXPECT_EQ(summary.itemsProcessed, 1);
  EXPECT_FALSE(exists(safe));
  for (const auto& kept : {unselected, manual, forced, review}) EXPECT_TRUE(exists(kept)) << kept;
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

TEST_F(PlanExecutorTest, aBadFileNeverStopsTheOthers) {
  const auto outside = tree.file("Elsewhere/x");
  const auto escape = tree.link("Downloads/escape", outside);
  const auto gone = tree.path("Downloads/gone");
  const auto good = tree.file("Downloads/good");
  std::vector<FileItem> items;
  for (const auto& path : {outside, escape, gone, std::string("/etc/hostname"), tree.path(), good}) {
    items.push_back(itemOf({.path = path}));
  }
  const auto summary = execute(PlanExecutor::dryRun(planWith({stepOf(PlannedAction::trash, {})}), items, now));

  EXPECT_EQ(summary.itemsProcessed, 1);
  EXPECT_EQ(summary.bytesReclaimed, 10);
  EXPECT_TRUE(exists(outside));
  EXPECT_TRUE(exists(escape));
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
  std::filesystem::remove(swapped);
  tree.file("Downloads/swapped", "somebody's only copy");
  const auto summary = execute(results);
  EXPECT_EQ(summary.itemsProcessed, 1);
  EXPECT_EQ(contentOf(swapped), "somebody's only copy");
  EXPECT_FALSE(exists(kept));
}

struct BadDestination {
  const char* name;
  std::string (*folder)(const test::TemporaryTree& tree);
};
void PrintTo(const BadDestination& bad, std::ostream* out) {
  *out << bad.name;
}
class PlanDestination : public PlanExecutorTest, public testing::WithParamInterface<BadDestination> {};

TEST_P(PlanDestination, outsideTheRootsChangesNothing) {
  const test::ScopedEnvironment home("HOME", tree.path().c_str());
  const auto file = tree.file("Downloads/a.txt", "stays");
  tree.folder("Elsewhere");
  auto results = moves({file}, tree.path("Downloads"), GetParam().folder(tree));
  ASSERT_THAT(results, SizeIs(1));
  const auto summary = execute(results);
  EXPECT_EQ(summary.itemsProcessed, 0);
  EXPECT_EQ(contentOf(file), "stays");
  EXPECT_TRUE(std::filesystem::is_empty(tree.path("Elsewhere")));
  EXPECT_FALSE(exists(tree.path("New")));
  EXPECT_THAT(journal->getRuns(), IsEmpty());
}
INSTANTIATE_TEST_SUITE_P(
    Destinations, PlanDestination,
    testing::Values(
        BadDestination{"root", [](const auto&) { return std::string("/"); }},
        BadDestination{"system", [](const auto&) { return std::string("/etc"); }},
        BadDestination{"home", [](const auto&) { return std::string("~"); }},
        BadDestination{"new folder in the home", [](const auto&) { return std::string("~/New"); }},
        BadDestination{"identity", [](const auto&) { return std::string("~/.ssh"); }},
        BadDestination{"elsewhere", [](const auto& tree) { return tree.path("Elsewhere"); }},
        BadDestination{"climbing", [](const auto& tree) { return tree.path("Downloads/../Elsewhere"); }},
        BadDestination{"link out of the roots",
                       [](const auto& tree) { return tree.link("Downloads/out", tree.path("Elsewhere")) + "/deeper"; }},
        BadDestination{"relative", [](const auto&) { return std::string("New"); }},
        BadDestination{"cut off", [](const auto& tree) { return tree.path("Downloads/x") + std::string("\0y", 2); }}));

TEST_F(PlanExecutorTest, aDestinationThatCannotBeMadeLeavesTheFile) {
  const auto file = tree.file("Downloads/a.txt");
  tree.file("Downloads/taken");
  const auto summary = execute(moves({file}, tree.path("Downloads"), tree.path("Downloads/taken/deeper")));
  EXPECT_EQ(summary.itemsProcessed, 0);
  EXPECT_TRUE(exists(file));
}

TEST_F(PlanExecutorTest, aMoveWithoutADestinationIsLeftAlone) {
  const auto file = tree.file("Downloads/a.txt");
  auto results = moves({file}, tree.path("Downloads"), "/x");
  results[0].destinationFolder.reset();
  EXPECT_EQ(execute(results).itemsProcessed, 0);
  EXPECT_TRUE(exists(file));
}

TEST_F(PlanExecutorTest, anOfflineOrganizeRequestWorksFromEndToEnd) {
  const test::ScopedEnvironment home("HOME", tree.path().c_str());
  const auto shot = tree.file("Downloads/Screenshot today.png", "shot");
  const auto plan = OfflineHeuristicParser().parse("sort screenshots in downloads");
  const auto results = PlanExecutor::dryRun(plan, {itemOf({.path = shot, .category = ScanCategory::screenshots})}, now);
  EXPECT_EQ(execute(results).itemsProcessed, 1);
  EXPECT_EQ(contentOf(tree.path("Downloads/Media/Screenshots/Screenshot today.png")), "shot");
}

}  // namespace
}  // namespace orvane
