#include "core/tasks/CleanTask.h"

#include "core/base/text/Json.h"
#include "core/tasks/TrashTask.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {
namespace {

class ProposalTest : public TaskFixture {
 public:
  [[nodiscard]] Proposal scanned() {
    auto proposal = proposeClean(taskServices(), {.folders = {tree.url("Downloads")}});
    EXPECT_TRUE(proposal);
    return *std::move(proposal);
  }
};

TEST_F(ProposalTest, onlyRowsThatWereChosenAndCanBeAreApproved) {
  ProposalBuilder builder(TaskKind::plan, roots(), ReferenceClock::now());
  for (const auto choice : {Choice::selected, Choice::unselected, Choice::locked, Choice::selected}) {
    FileItem::Fields fields;
    fields.url = tree.url("Downloads/x");
    fields.fileSize = 5;
    builder.add(FileItem(std::move(fields)), {choice, choice == Choice::locked ? Lock::manualLabel : Lock::none});
  }
  const auto proposal = builder.take();
  EXPECT_THAT(proposal.approve().rows(), ElementsAre(0, 3));
  auto selection = proposal.selection();
  EXPECT_EQ(selection.count(), 2);
  EXPECT_EQ(selection.bytes(), 10);
  selection.selectAll();
  EXPECT_THAT(proposal.approve(selection).rows(), ElementsAre(0, 1, 3));
  // A selection of something else lets nothing in that is locked or not there.
  Selection foreign;
  for (int i = 0; i < 9; ++i) foreign.append(Choice::selected, 1);
  EXPECT_THAT(proposal.approve(foreign).rows(), ElementsAre(0, 1, 3));
  EXPECT_THAT(proposal.approve(Selection()).rows(), IsEmpty());
}

TEST_F(ProposalTest, aGroupThatKeepsOneKeepsOne) {
  ProposalBuilder builder(TaskKind::duplicates, roots(), ReferenceClock::now());
  const auto group = builder.addGroup({.keepsOne = true});
  for (int i = 0; i < 3; ++i) {
    FileItem::Fields fields;
    fields.url = tree.url("Downloads/" + std::to_string(i));
    builder.add(FileItem(std::move(fields)), {Choice::selected, Lock::none, group});
  }
  EXPECT_THAT(builder.take().approve().rows(), ElementsAre(1, 2));
}

TEST_F(ProposalTest, whatIsNotTheItemThatWasShownStays) {
  tree.file("Downloads/same.log", "same");
  const auto replaced = tree.file("Downloads/replaced.log", "before");
  const auto written = tree.file("Downloads/written.log", "before");
  const auto linked = tree.file("Downloads/linked.log", "before");
  tree.folder("Downloads/folder");
  tree.file("Downloads/folder/in", "x");
  const auto clean = scanned();
  const auto whole = proposeTrash(taskServices(), std::vector{tree.url("Downloads/folder")}, roots());
  EXPECT_EQ(clean.size(), 4U);

  fs::remove(replaced);
  tree.file("Downloads/replaced.log", "before");
  tree.file("Downloads/written.log", "after!");
  fs::remove(linked);
  fs::create_symlink(written, linked);
  tree.file("Downloads/arrived.log", "new");
  fs::rename(tree.path("Downloads/folder"), tree.path("Downloads/other"));
  tree.folder("Downloads/folder");

  const auto report = carryOut(taskServices(), clean.approve());
  EXPECT_EQ(report.moved(), 1);
  EXPECT_EQ(report.failed, 3);
  for (const auto& outcome : report.outcomes) {
    const bool isSame = outcome.source == tree.url("Downloads/same.log");
    EXPECT_EQ(outcome.result, isSame ? MoveResult::moved : MoveResult::changed) << outcome.source.path();
  }
  EXPECT_TRUE(exists(tree.path("Downloads/arrived.log")));
  EXPECT_EQ(carryOut(taskServices(), whole.approve()).moved(), 0);
  // A new file in a folder does not make it another folder.
  const auto again = proposeTrash(taskServices(), std::vector{tree.url("Downloads/other")}, roots());
  tree.file("Downloads/other/late", "y");
  EXPECT_EQ(carryOut(taskServices(), again.approve()).moved(), 1);
}

TEST_F(ProposalTest, aBoundaryWithoutFoldersAllowsNothing) {
  tree.file("Downloads/a.log", "x");
  ProposalBuilder builder(TaskKind::clean, Boundary(), ReferenceClock::now());
  scanned().forEach([&](std::size_t, const ProposedRow& row) { builder.add(row.item, {Choice::selected}); });
  const auto report = carryOut(taskServices(), builder.take().approve());
  EXPECT_EQ(report.moved(), 0);
  EXPECT_EQ(report.outcomes.at(0).result, MoveResult::refused);
  EXPECT_FALSE(report.runId);
}

TEST_F(ProposalTest, trashSizesEverythingAndSaysWhatItRefuses) {
  tree.file("Downloads/folder/.hidden/big", std::string(1000, 'x'));
  tree.file("Downloads/folder/node_modules/a", std::string(100, 'x'));
  fs::create_hard_link(tree.path("Downloads/folder/node_modules/a"), tree.path("Downloads/folder/b"));
  const auto proposal = proposeTrash(taskServices(),
                                     std::vector{tree.url("Downloads/folder"), tree.url("Downloads/folder/b"),
                                                 tree.url("none"), tree.url("Downloads/none")},
                                     roots());
  const auto approval = proposal.approve();
  EXPECT_EQ(approval.toTrash(), (RowSum{1, 1100}));
  EXPECT_THAT(rowsOf(proposal, [](const auto& row) { return row.lock == Lock::refused; }),
              UnorderedElementsAre("none", "Downloads/none"));
  EXPECT_THAT(proposal.groups().front().refusal, HasSubstr("Operation denied"));
  EXPECT_EQ(carryOut(taskServices(), approval).toTrash, (RowSum{1, 1100}));
}

TEST_F(ProposalTest, cleanLeavesOutWhatLiesInATrash) {
  tree.file("Downloads/.Trash-0/files/a.log");
  tree.file("Downloads/a.log", "1234567");
  const auto proposal = scanned();
  EXPECT_THAT(rowsOf(proposal), UnorderedElementsAre("Downloads/a.log"));
}

class SavedProposalTest : public TaskFixture {
 public:
  [[nodiscard]] std::string savedClean() {
    return savedText(proposeClean(taskServices(), {.folders = {tree.url("Downloads")}})->approve());
  }
  // The row of a document whose item has this name.
  [[nodiscard]] static Json::iterator rowOf(Json& document, const std::string& name) {
    auto& rows = document["rows"];
    return std::ranges::find_if(rows,
                                [&](const Json& row) { return row["url"].get<std::string>().ends_with("/" + name); });
  }
  [[nodiscard]] Proposal again(const std::string& text) {
    return proposeSaved(taskServices(), SavedProposal::decode(text), roots()).value();
  }
  // Why each row of the file that may not move is left, by its name.
  [[nodiscard]] static std::map<std::string, std::string> refusals(const Proposal& proposal) {
    std::map<std::string, std::string> result;
    proposal.forEach([&](std::size_t, const ProposedRow& row) {
      if (row.lock == Lock::refused) result.emplace(row.item.url().lastPathComponent(), row.group->refusal);
    });
    return result;
  }
};

TEST_F(SavedProposalTest, leavesWhatIsNotWhatWasSaved) {
  for (const char* name : {"taken out.log", "same.log", "b\xFF.log", "gone.log", "written.log", "replaced.log",
                           "twice.log", "photo.jpg"}) {
    tree.file("Downloads/" + std::string(name), "before");
  }
  tree.file("Documents/outside.log", "x");
  auto document = parseJson(savedClean());
  document["rows"].erase(rowOf(document, "taken%20out.log"));
  tree.file("Downloads/new.log");
  const Json twice = *rowOf(document, "twice.log");
  const Json same = *rowOf(document, "same.log");
  document["rows"].push_back(twice);
  // Rows that the proposal never held, with true identities.
  for (const char* place : {"Downloads/photo.jpg", "Documents/outside.log"}) {
    auto row = same;
    const auto status = statusOf(tree.path(place));
    row["url"] = tree.url(place).absoluteString();
    row["identity"]["inode"] = status.st_ino;
    row["identity"]["size"] = status.st_size;
    row["identity"]["modified"] = {status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
    document["rows"].push_back(row);
  }
  auto climbing = same;
  climbing["url"] = tree.url("Downloads").absoluteString() + "/../Downloads/same.log";
  document["rows"].push_back(climbing);
  fs::remove(tree.path("Downloads/gone.log"));
  tree.file("Downloads/written.log", "after!");
  fs::rename(tree.path("Downloads/replaced.log"), tree.path("Downloads/other"));
  fs::create_symlink(tree.path("Downloads/same.log"), tree.path("Downloads/replaced.log"));

  const auto proposal = again(jsonText(document));
  const auto why = refusals(proposal);
  EXPECT_THAT(why.at("gone.log"), HasSubstr("Nothing is there"));
  EXPECT_THAT(why.at("written.log"), HasSubstr("changed"));
  EXPECT_THAT(why.at("replaced.log"), HasSubstr("changed"));
  EXPECT_THAT(why.at("twice.log"), HasSubstr("twice"));
  EXPECT_THAT(why.at("photo.jpg"), HasSubstr("would not be proposed"));
  EXPECT_THAT(why.at("outside.log"), HasSubstr("Operation denied"));
  EXPECT_THAT(why.at("same.log"), HasSubstr("traversal"));
  const auto report = carryOut(taskServices(), proposal.approve());
  EXPECT_EQ(report.toTrash.count, 3);
  EXPECT_FALSE(exists(tree.path("Downloads/twice.log")) || exists(tree.path("Downloads/b\xFF.log")));
  for (const char* left :
       {"Downloads/photo.jpg", "Documents/outside.log", "Downloads/taken out.log", "Downloads/new.log"}) {
    EXPECT_TRUE(exists(tree.path(left))) << left;
  }
}

TEST_F(SavedProposalTest, aFolderOutsideTheBoundaryIsLeftOutWhateverTheFileSays) {
  tree.file("Other/a.log", "a");
  const auto text = savedText(proposeClean(taskServices(), {.folders = {tree.url("Other")}})->approve());
  const auto proposal = again(text);
  EXPECT_TRUE(proposal.approve().empty());
  const auto* leftOut = firstNotice<FolderLeftOut>(proposal.notices());
  ASSERT_NE(leftOut, nullptr);
  EXPECT_EQ(leftOut->why, FolderLeftOut::Why::notGranted);
}

TEST_F(SavedProposalTest, refusesWhatIsNoSavedProposal) {
  tree.file("Downloads/a.log", "a");
  const auto text = savedClean();
  const auto with = [&](std::string_view from, std::string_view to) {
    auto changed = text;
    changed.replace(changed.find(from), from.size(), to);
    return changed;
  };
  const std::vector<std::pair<std::string, std::string>> cases{
      {"", "not valid JSON"},
      {"{}", "no saved proposal"},
      {"[]", "expected an object"},
      {with(R"("version":1)", R"("version":2)"), "version 2"},
      {with(R"("task":"clean")", R"("task":"restore")"), "\"task\" cannot be"},
      {with(R"("task":"clean")", R"("task":"x")"), "\"task\" cannot be"},
      {with("\"rows\":[", "\"rows\":[1,"), "array of objects"},
      {with(R"({"url":"file:///)", R"({"url":"relative/)"), "\"url\""},
      {with("a.log", "a%00.log"), "\"url\""},
      {with(R"("inode":)", R"("inode":-)"), "\"inode\""},
      {with(R"("format")", R"("format":"orvane.proposal","format")"), "stands twice"},
      {std::string(100'000, '[') + std::string(100'000, ']'), "nested deeper"},
  };
  for (const auto& [document, reason] : cases) {
    EXPECT_THAT(messageOf<JsonError>([&broken = document] { return SavedProposal::decode(broken); }), HasSubstr(reason))
        << document.substr(0, 200);
  }
  // Cut off anywhere, it is refused.
  for (std::size_t length = 0; length + 3 < text.size(); ++length) {
    EXPECT_THROW((void)SavedProposal::decode(text.substr(0, length)), JsonError) << length;
  }
}

TEST_F(SavedProposalTest, subjectsAreCheckedLikeAnythingElse) {
  tree.file("Downloads/a.log", "a");
  for (const char* subject :
       {"{}", "[]", R"({"folders":["x"],"categories":[],"includesReview":false,"includesDeveloperCaches":false})",
        R"({"folders":[],"categories":["x"],"includesReview":false,"includesDeveloperCaches":false})"}) {
    auto saved = SavedProposal::decode(savedClean());
    saved.subject = parseJson(subject);
    EXPECT_THROW((void)proposeSaved(taskServices(), saved, roots()), JsonError) << subject;
  }
}

}  // namespace
}  // namespace orvane::test
