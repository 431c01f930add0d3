#include "core/tasks/OrganizeTask.h"

#include "core/base/text/Json.h"
#include "core/tasks/TidyTask.h"
#include "tests/support/AutoOrganizerFixture.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {
namespace {

class OrganizeTaskTest : public TaskFixture {
 public:
  [[nodiscard]] OrganizeOptions options(Subfolders subfolders = Subfolders::keepWhole) const {
    return {.folder = tree.url("Downloads"), .subfolders = subfolders};
  }
  [[nodiscard]] Proposal proposed(const OrganizeOptions& asked) {
    auto proposal = proposeOrganize(taskServices(), asked, ReferenceClock::now());
    EXPECT_TRUE(proposal);
    return *std::move(proposal);
  }
  [[nodiscard]] Proposal proposed() { return proposed(options()); }
  // Where the rows that could move would go, below the home, by their places below the folder.
  [[nodiscard]] std::map<std::string, std::string> movesOf(const Proposal& proposal) const {
    std::map<std::string, std::string> result;
    for (const auto& group : groupsOf(proposal)) {
      for (const auto& move : group.moves) {
        if (move.isSelected) {
          result[move.sourceRelativePath] = move.targetURL.path().substr(tree.path().size() + 1);
        }
      }
    }
    return result;
  }
};

TEST_F(OrganizeTaskTest, aRenamedGroupMovesWhatWasShownAndKeepsTheChoice) {
  tree.file("Downloads/a.pdf", "top");
  tree.file("Downloads/Sub/a.pdf", "below");
  tree.file("Downloads/b.txt");
  const auto proposal = proposed(options(Subfolders::include));
  tree.file("Downloads/Organized/Mine/a.pdf", "there");
  ASSERT_THAT(movesOf(proposal), ElementsAre(Pair("Sub/a.pdf", "Downloads/Organized/Documents/PDFs/a (1).pdf"),
                                             Pair("a.pdf", "Downloads/Organized/Documents/PDFs/a.pdf"),
                                             Pair("b.txt", "Downloads/Organized/Documents/Text & Notes/b.txt")));
  auto selection = proposal.selection();
  selection.set(2, Selection::Whether::unselected);
  for (const auto* name : {"", "  ", "..", "../x", "Mine/../../x"}) {
    EXPECT_FALSE(renameGroup(taskServices(), proposal, selection, 0, name)) << name;
  }
  EXPECT_FALSE(renameGroup(taskServices(), proposal, selection, 9, "Mine"));

  const auto renamed = renameGroup(taskServices(), proposal, selection, 0, " Mine ");
  ASSERT_TRUE(renamed);
  EXPECT_EQ(renamed->groups()[0].name, "Mine");
  EXPECT_THAT(movesOf(*renamed), ElementsAre(Pair("Sub/a.pdf", "Downloads/Organized/Mine/a (2).pdf"),
                                             Pair("a.pdf", "Downloads/Organized/Mine/a (1).pdf")));
  EXPECT_EQ(proposal.groups()[0].name, "Documents/PDFs") << "a proposal never changes";
  EXPECT_THAT(kindsIn(*renamed, 0), ElementsAre("pdf"));

  const auto report = carryOut(taskServices(), renamed->approve());
  EXPECT_EQ(report.toFolders, (RowSum{2, 8}));
  for (const auto& entry : journal->getEntries(*report.runId)) EXPECT_EQ(entry.timestamp, report.started);
  EXPECT_EQ(contentOf(tree.path("Downloads/Organized/Mine/a (1).pdf")), "top");
  EXPECT_EQ(contentOf(tree.path("Downloads/Organized/Mine/a.pdf")), "there");
  EXPECT_TRUE(exists(tree.path("Downloads/b.txt")));
  rememberNames(taskServices(), *renamed, {0});
  tree.file("Downloads/c.pdf");
  EXPECT_EQ(movesOf(proposed()).at("c.pdf"), "Downloads/Organized/Mine/c.pdf");
  forgetNames(taskServices());
  EXPECT_EQ(movesOf(proposed()).at("c.pdf"), "Downloads/Organized/Documents/PDFs/c.pdf");
}

TEST_F(OrganizeTaskTest, saysWhatLiesInItsPlace) {
  // The first lies where its group is renamed to.
  tree.file("Downloads/papers/x.pdf", "1234");
  tree.file("Downloads/y.pdf");
  auto within = options(Subfolders::include);
  within.destination = within.folder;
  const auto proposal = proposed(within);
  EXPECT_THAT(proposal.notices(), IsEmpty());
  const auto renamed = renameGroup(taskServices(), proposal, proposal.selection(), 0, "papers");
  ASSERT_TRUE(renamed);
  EXPECT_THAT(rowsOf(*renamed, [](const auto& row) { return row.lock == Lock::inPlace; }),
              ElementsAre("Downloads/papers/x.pdf"));
  EXPECT_EQ(carryOut(taskServices(), renamed->approve()).moved(), 1);
  EXPECT_TRUE(exists(tree.path("Downloads/papers/y.pdf")));

  auto inside = options();
  inside.folder = FileUrl(tree.folder("Downloads/Documents/PDFs"));
  inside.destination = tree.url("Downloads");
  tree.file("Downloads/Documents/PDFs/a.pdf", "1234");
  EXPECT_TRUE(proposed(inside).empty());
  EXPECT_EQ(proposed(inside).notices(), Notices{(RowsInPlace{{1, 4}, {}})});

  // By topic, too.
  tree.file("Downloads/Documents/Taxes/tax.pdf", "12");
  topicModel.reply = [](const std::string&) { return R"({"tax.pdf": "Taxes"})"; };
  inside.folder = tree.url("Downloads/Documents/Taxes");
  inside.topics = TopicUse::whenAvailable;
  EXPECT_TRUE(proposed(inside).empty());
  EXPECT_EQ(proposed(inside).notices(), Notices{(RowsInPlace{{1, 2}, {}})});
}

TEST_F(OrganizeTaskTest, aFolderThatMayNotBeTouchedYieldsItsReasonAndAStopNothing) {
  for (const auto& folder : {FileUrl("/etc"), FileUrl(tree.path()), tree.url("missing")}) {
    const auto proposal = proposed({.folder = folder});
    EXPECT_TRUE(proposal.empty());
    EXPECT_NE(firstNotice<FolderLeftOut>(proposal.notices()), nullptr) << folder.path();
  }
  EXPECT_FALSE(proposeOrganize(taskServices(), options(), ReferenceClock::now(), {.stop = stopped()}));
}

TEST_F(OrganizeTaskTest, aDestinationOutsideTheBoundaryLocksItsRows) {
  tree.file("Downloads/a.pdf");
  const auto before = proposed();
  tree.link("Downloads/Organized", tree.folder("Elsewhere"));
  EXPECT_EQ(carryOut(taskServices(), before.approve()).outcomes.at(0).result, MoveResult::refused)
      << "a link that is put in the way leads nowhere";
  const auto proposal = proposed();
  EXPECT_EQ(proposal.row(0).lock, Lock::refused);
  EXPECT_THAT(proposal.groups()[0].refusal, HasSubstr("denied"));
  EXPECT_TRUE(proposal.approve().empty());
  EXPECT_TRUE(exists(tree.path("Downloads/a.pdf")));
  // Named, it is where the user wants it.
  auto named = options();
  named.destination = tree.url("Downloads/Organized");
  EXPECT_EQ(carryOut(taskServices(), proposed(named).approve()).moved(), 1);
  EXPECT_TRUE(exists(tree.path("Elsewhere/Documents/PDFs/a.pdf")));
}

TEST_F(OrganizeTaskTest, proposesTheSameAgainFromItsSubject) {
  tree.files({"Downloads/tax 2025.pdf", "Downloads/letter.pdf", "Downloads/song.mp3"});
  topicModel.reply = [](const std::string&) { return R"({"tax 2025.pdf": "Taxes"})"; };
  auto asked = options();
  asked.topics = TopicUse::whenAvailable;
  auto proposal = proposed(asked);
  for (const auto& [group, name] : {std::pair{2, "Mine"}, std::pair{0, "Mine"}, std::pair{2, "Songs"}}) {
    auto renamed = renameGroup(taskServices(), proposal, proposal.selection(), static_cast<std::size_t>(group), name);
    ASSERT_TRUE(renamed);
    proposal = *std::move(renamed);
  }
  EXPECT_THAT(movesOf(proposal),
              UnorderedElementsAre(Pair("letter.pdf", "Downloads/Organized/Mine/letter.pdf"),
                                   Pair("tax 2025.pdf", "Downloads/Organized/Documents/Taxes/tax 2025.pdf"),
                                   Pair("song.mp3", "Downloads/Organized/Songs/song.mp3")));
  topicModel.reply = {};
  const auto subject = parseJson(jsonText(proposal.subject()));
  const auto again = reproposeOrganize(taskServices(), subject, roots(), proposal.countedTo());
  ASSERT_TRUE(again);
  EXPECT_EQ(movesOf(*again), movesOf(proposal));
  EXPECT_EQ(again->countedTo(), proposal.countedTo());

  const auto elsewhere = Boundary({FileUrl(tree.folder("Elsewhere"))});
  EXPECT_TRUE(reproposeOrganize(taskServices(), subject, elsewhere, proposal.countedTo())->empty());
  for (const auto& [key, value] : {std::pair<const char*, Json>{"folder", "relative"},
                                   {"destination", 5},
                                   {"strategy", "By Size"},
                                   {"includeSubfolders", "yes"},
                                   {"topics", Json::array({Json::array({"a"})})},
                                   {"renamed", Json::array({1})}}) {
    auto bad = subject;
    bad[key] = value;
    EXPECT_THROW(static_cast<void>(reproposeOrganize(taskServices(), bad, roots(), proposal.countedTo())), JsonError)
        << key;
  }
}

TEST_F(OrganizeTaskTest, noNameOfASubjectLeadsOutOfTheFolder) {
  tree.file("Downloads/letter.pdf");
  auto subject = proposed().subject();
  subject["topics"] = Json::array({Json::array({"letter.pdf", "../../Elsewhere"})});
  subject["renamed"] = Json::parse(R"([{"from": "Documents/Elsewhere", "place": 0, "to": "../../x"}])");
  const auto again = reproposeOrganize(taskServices(), subject, roots(), ReferenceClock::now());
  EXPECT_THAT(movesOf(*again), ElementsAre(Pair("letter.pdf", "Downloads/Organized/Documents/Elsewhere/letter.pdf")));
  subject["destination"] = jsonFromUrl(tree.url("Elsewhere"));
  EXPECT_TRUE(reproposeOrganize(taskServices(), subject, roots(), ReferenceClock::now())->approve().empty());
}

class TidyTaskTest : public AutoOrganizerFixture {
 public:
  [[nodiscard]] TidyOptions options() const { return {.folders = {tree.url("Downloads")}}; }
  const TaskServices services = taskServices();
};

TEST_F(TidyTaskTest, movesWhatWasApprovedOfWhatWasShown) {
  for (const auto* name : {"same.pdf", "unchecked.pdf"}) arrive(name, -10);
  arrive("new.pdf", 0);
  arrive("grown/1.jpg", 0);
  touch(tree.path("Downloads/grown"), 0);
  const auto look = lookForTidying(services, options(), day(1));
  ASSERT_EQ(look.proposals.size(), 1U);
  const auto& proposal = look.proposals[0].proposal;
  EXPECT_EQ(proposal.selection().count(), 4);
  arrive("arrived.pdf", -10);
  arrive("grown/2.jpg", 0);

  const auto report = TidyPass::begin(services)->carryOut(proposal.approve(without(proposal, "unchecked.pdf")));
  EXPECT_EQ(report.moved(), 2);
  EXPECT_EQ(report.failed, 1) << "somebody works with a folder that has grown";
  EXPECT_THAT(files(), UnorderedElementsAre("Sorted/Documents/PDFs/same.pdf", "Recents/new.pdf", "unchecked.pdf",
                                            "arrived.pdf", "grown/1.jpg", "grown/2.jpg"));
  for (const auto& entry : journal->getEntries(*report.runId)) EXPECT_EQ(entry.timestamp, report.started);
}

TEST_F(TidyTaskTest, namesTheFoldersThatItCannotLookAt) {
  auto several = options();
  several.folders.insert(several.folders.begin(), {tree.url("missing"), FileUrl("/etc")});
  arrive("a.pdf", -10);
  const auto look = lookForTidying(services, several, day(1));
  ASSERT_EQ(look.notices.size(), 2U);
  EXPECT_EQ(std::get<FolderLeftOut>(look.notices[0]).why, FolderLeftOut::Why::missing);
  EXPECT_EQ(std::get<FolderLeftOut>(look.notices[1]).why, FolderLeftOut::Why::refused);
  EXPECT_EQ(look.proposals.size(), 1U);
}

TEST_F(TidyTaskTest, proposesTheSameAgainFromItsSubject) {
  arrive("plan.pdf", -10);
  arrive("letter.pdf", -10);
  arrive("new.pdf", 0);
  topicModel.reply = [](const std::string&) { return R"({"plan.pdf": "Travel"})"; };
  auto withTopics = options();
  withTopics.topics = TopicUse::whenAvailable;
  withTopics.folders.push_back(FileUrl(tree.folder("Desktop")));
  const auto proposal = *proposeTidy(services, withTopics, day(1));
  topicModel.reply = {};
  auto subject = parseJson(jsonText(proposal.subject()));
  const auto again = reproposeTidy(services, subject, roots(), proposal.countedTo());
  ASSERT_TRUE(again);
  const auto places = [](const Proposal& of) {
    std::vector<std::string> result;
    for (const auto& group : groupsOf(of)) {
      for (const auto& move : group.moves) result.push_back(move.targetURL.path());
    }
    return result;
  };
  EXPECT_EQ(places(*again), places(proposal));
  EXPECT_THAT(places(*again), Contains(tree.path("Downloads/Sorted/Travel/plan.pdf")));

  subject["folders"][0]["topics"] =
      Json::array({Json::array({"plan.pdf", "Recents"}), Json::array({"letter.pdf", "../x"})});
  EXPECT_THAT(places(*reproposeTidy(services, subject, roots(), day(1))),
              ElementsAre(tree.path("Downloads/Sorted/Documents/PDFs/plan.pdf"), tree.path("Downloads/Recents/new.pdf"),
                          tree.path("Downloads/Sorted/x/letter.pdf")));
  EXPECT_TRUE(reproposeTidy(services, subject, Boundary({FileUrl(tree.folder("Elsewhere"))}), day(1))->empty());
  subject.erase("recentsDays");
  EXPECT_THROW(static_cast<void>(reproposeTidy(services, subject, roots(), day(1))), JsonError);
}

}  // namespace
}  // namespace orvane::test
