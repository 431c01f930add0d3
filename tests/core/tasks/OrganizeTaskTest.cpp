#include "core/tasks/OrganizeTask.h"

#include "core/base/text/Json.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {
namespace {

class OrganizeTaskTest : public TaskFixture {
 public:
  [[nodiscard]] OrganizeWish wish(Subfolders subfolders = Subfolders::keepWhole) const {
    return {.folder = tree.url("Downloads"), .subfolders = subfolders};
  }
  [[nodiscard]] Proposal proposed(const OrganizeWish& asked) {
    auto proposal = proposeOrganize(taskServices(), asked, ReferenceClock::now());
    EXPECT_TRUE(proposal);
    return *std::move(proposal);
  }
  [[nodiscard]] Proposal proposed() { return proposed(wish()); }
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

TEST_F(OrganizeTaskTest, movesExactlyTheItemsThatWereShown) {
  tree.file("Downloads/same.pdf", "same");
  const auto replaced = tree.file("Downloads/replaced.pdf", "before");
  tree.file("Downloads/unchecked.pdf");
  tree.file("Downloads/album/1.jpg", "12345");
  tree.file("Downloads/grown/1.jpg", "12345");
  const auto proposal = proposed();
  auto selection = proposal.selection();
  EXPECT_EQ(selection.count(), 5);
  proposal.forEach([&](std::size_t index, const ProposedRow& row) {
    if (row.item.relativePath() == "unchecked.pdf") selection.set(index, Selection::Whether::unselected);
  });

  fs::remove(replaced);
  tree.file("Downloads/replaced.pdf", "after!");
  tree.file("Downloads/arrived.pdf");
  fs::rename(tree.path("Downloads/album"), tree.path("other"));
  tree.file("Downloads/album/2.jpg", "54321");
  tree.file("Downloads/grown/2.jpg");

  const auto report = carryOut(taskServices(), proposal.approve(selection));
  EXPECT_EQ(report.toFolders, (RowSum{2, 9}));
  EXPECT_EQ(report.failed, 2);
  for (const auto* left : {"replaced.pdf", "unchecked.pdf", "arrived.pdf", "album/2.jpg"}) {
    EXPECT_TRUE(exists(tree.path("Downloads/" + std::string(left)))) << left;
  }
  EXPECT_TRUE(exists(tree.path("Downloads/Organized/Media/Folders/grown/2.jpg")));
  for (const auto& entry : journal->getEntries(*report.runId)) EXPECT_EQ(entry.timestamp, report.started);
}

TEST_F(OrganizeTaskTest, aRenamedGroupMovesWhatWasShownAndKeepsTheChoice) {
  tree.file("Downloads/a.pdf", "top");
  tree.file("Downloads/Sub/a.pdf", "below");
  tree.file("Downloads/b.txt");
  const auto proposal = proposed(wish(Subfolders::include));
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

  EXPECT_EQ(carryOut(taskServices(), renamed->approve()).moved(), 2);
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
  auto within = wish(Subfolders::include);
  within.destination = within.folder;
  const auto proposal = proposed(within);
  EXPECT_THAT(proposal.notices(), IsEmpty());
  const auto renamed = renameGroup(taskServices(), proposal, proposal.selection(), 0, "papers");
  ASSERT_TRUE(renamed);
  EXPECT_THAT(rowsOf(*renamed, [](const auto& row) { return row.lock == Lock::inPlace; }),
              ElementsAre("Downloads/papers/x.pdf"));
  EXPECT_EQ(carryOut(taskServices(), renamed->approve()).moved(), 1);
  EXPECT_TRUE(exists(tree.path("Downloads/papers/y.pdf")));

  auto inside = wish();
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

TEST_F(OrganizeTaskTest, aFolderThatMayNotBeTouchedYieldsItsReason) {
  for (const auto& folder : {FileUrl("/etc"), FileUrl(tree.path()), tree.url("missing")}) {
    const auto proposal = proposed({.folder = folder});
    EXPECT_TRUE(proposal.empty());
    EXPECT_NE(firstNotice<FolderLeftOut>(proposal.notices()), nullptr) << folder.path();
  }
}

TEST_F(OrganizeTaskTest, aDestinationOutsideTheBoundaryLocksItsRows) {
  tree.file("Downloads/a.pdf");
  tree.link("Downloads/Organized", tree.folder("Elsewhere"));
  const auto proposal = proposed();
  EXPECT_EQ(proposal.row(0).lock, Lock::refused);
  EXPECT_THAT(proposal.groups()[0].refusal, HasSubstr("denied"));
  EXPECT_TRUE(proposal.approve().empty());
  // Named, it is where the user wants it.
  auto named = wish();
  named.destination = tree.url("Downloads/Organized");
  EXPECT_EQ(carryOut(taskServices(), proposed(named).approve()).moved(), 1);
  EXPECT_TRUE(exists(tree.path("Elsewhere/Documents/PDFs/a.pdf")));
}

TEST_F(OrganizeTaskTest, aLinkThatIsPutInTheWayLeadsNowhere) {
  tree.file("Downloads/a.pdf");
  const auto proposal = proposed();
  tree.link("Downloads/Organized", tree.folder("Elsewhere"));
  const auto report = carryOut(taskServices(), proposal.approve());
  EXPECT_EQ(report.outcomes.at(0).result, MoveResult::refused);
  EXPECT_TRUE(exists(tree.path("Downloads/a.pdf")));
}

TEST_F(OrganizeTaskTest, proposesTheSameAgainFromItsSubject) {
  tree.files({"Downloads/tax 2025.pdf", "Downloads/letter.pdf", "Downloads/song.mp3"});
  topicModel.reply = [](const std::string&) { return R"({"tax 2025.pdf": "Taxes"})"; };
  auto asked = wish();
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

TEST_F(OrganizeTaskTest, aStopProposesNothing) {
  tree.file("Downloads/a.pdf");
  std::stop_source stopped;
  stopped.request_stop();
  EXPECT_FALSE(proposeOrganize(taskServices(), wish(), ReferenceClock::now(), {.stop = stopped.get_token()}));
}

}  // namespace
}  // namespace orvane::test
