#include "core/tasks/TidyTask.h"

#include "core/base/text/Json.h"
#include "tests/support/AutoOrganizerFixture.h"

namespace orvane::test {
namespace {

class TidyTaskTest : public AutoOrganizerFixture {
 public:
  [[nodiscard]] TidyWish wish() const { return {.folders = {tree.url("Downloads")}}; }
  const TaskServices services = taskServices();
};

TEST_F(TidyTaskTest, movesWhatWasApprovedOfWhatWasShown) {
  arrive("same.pdf", -10);
  arrive("replaced.pdf", -10, "before");
  arrive("unchecked.pdf", -10);
  arrive("new.pdf", 0);
  arrive("album/1.jpg", 0);
  arrive("grown/1.jpg", 0);
  for (const auto* folder : {"Downloads/album", "Downloads/grown"}) touch(tree.path(folder), 0);
  const auto look = lookForTidying(services, wish(), day(1));
  ASSERT_EQ(look.proposals.size(), 1U);
  const auto& proposal = look.proposals[0].proposal;
  auto selection = proposal.selection();
  EXPECT_EQ(selection.count(), 6);
  proposal.forEach([&](std::size_t index, const ProposedRow& row) {
    if (row.item.relativePath() == "unchecked.pdf") selection.set(index, Selection::Whether::unselected);
  });

  fs::remove(tree.path("Downloads/replaced.pdf"));
  arrive("replaced.pdf", -10, "another one");
  arrive("arrived.pdf", -10);
  fs::rename(tree.path("Downloads/album"), tree.path("other"));
  arrive("album/2.jpg", 0);
  touch(tree.path("Downloads/album"), 0);
  arrive("grown/2.jpg", 0);

  const auto report = TidyPass::begin(services)->carryOut(proposal.approve(selection));
  EXPECT_EQ(report.moved(), 2);
  EXPECT_EQ(report.failed, 3) << "somebody works with a folder that has grown";
  EXPECT_THAT(files(),
              UnorderedElementsAre("Sorted/Documents/PDFs/same.pdf", "Recents/new.pdf", "replaced.pdf", "unchecked.pdf",
                                   "arrived.pdf", "album/2.jpg", "grown/1.jpg", "grown/2.jpg"));
  for (const auto& entry : journal->getEntries(*report.runId)) EXPECT_EQ(entry.timestamp, report.started);
}

TEST_F(TidyTaskTest, namesTheFoldersThatItCannotLookAt) {
  auto several = wish();
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
  auto withTopics = wish();
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
