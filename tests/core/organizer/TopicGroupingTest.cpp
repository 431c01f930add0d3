#include "core/organizer/topics/TopicGrouping.h"

#include "core/organizer/topics/TopicCategorizing.h"
#include "tests/support/OrganizerFixture.h"

namespace orvane::test {
namespace {

// Answers from a list, whatever it is asked.
class ListedTopics : public TopicCategorizing {
 public:
  [[nodiscard]] std::map<std::string, std::string> topics(std::span<const std::string> itemNames,
                                                          const std::set<std::string>& existingTopics,
                                                          const std::stop_token& /*stop*/) override {
    asked.assign(itemNames.begin(), itemNames.end());
    existing = existingTopics;
    return answers;
  }
  std::map<std::string, std::string> answers;
  std::vector<std::string> asked;
  std::set<std::string> existing;
};

class TopicGroupingTest : public OrganizerFixture {
 public:
  [[nodiscard]] Groups grouped(Subfolders subfolders = Subfolders::keepWhole) {
    return groupedByTopic(analyze(subfolders), tree.url("Downloads"), tree.url("Downloads/Organized"), topics);
  }
  ListedTopics topics;
};

TEST_F(TopicGroupingTest, movesDocumentsWithATopicAndNothingElse) {
  for (const auto* name : {"tax.pdf", "visa.docx", "letter.pdf", "song.mp3"}) {
    tree.file("Downloads/" + std::string(name));
  }
  tree.folder("Downloads/Organized/Documents/Holidays");
  tree.folder("Downloads/Organized/Documents/PDFs");
  topics.answers = {{"tax.pdf", "Taxes"}, {"visa.docx", "Travel"}, {"song.mp3", "Music"}};
  const auto groups = grouped();
  EXPECT_THAT(topics.asked, ElementsAre("letter.pdf", "tax.pdf", "visa.docx"));
  EXPECT_THAT(topics.existing, ElementsAre("Holidays"));
  EXPECT_THAT(namesOf(groups), ElementsAre("Documents/PDFs", "Documents/Taxes", "Documents/Travel", "Media/Audio"));
  const auto moves = movesOf(groups);
  EXPECT_EQ(moves.at("tax.pdf"), "Downloads/Organized/Documents/Taxes/tax.pdf");
  EXPECT_EQ(groups[1].moves.front().categoryName, "Documents/Taxes");
}

TEST_F(TopicGroupingTest, givesEveryMoveAPlaceOfItsOwn) {
  for (const auto* path : {"a/report.pdf", "b/report.pdf", "Organized/Documents/Work/report.pdf"}) {
    tree.file("Downloads/" + std::string(path));
  }
  topics.answers = {{"report.pdf", "Work"}};
  const auto moves = movesOf(grouped(Subfolders::include));
  EXPECT_EQ(moves.at("a/report.pdf"), "Downloads/Organized/Documents/Work/report (1).pdf");
  EXPECT_EQ(moves.at("b/report.pdf"), "Downloads/Organized/Documents/Work/report (2).pdf");
}

// There the kinds stand right in the destination.
TEST_F(TopicGroupingTest, worksInAFolderOfDocuments) {
  tree.files({"Documents/tax.pdf", "Documents/letter.docx", "Documents/song.mp3"});
  tree.folder("Documents/Organized/Holidays");
  tree.folder("Documents/Organized/Media");
  topics.answers = {{"tax.pdf", "Taxes"}, {"song.mp3", "Music"}};
  const auto folder = tree.url("Documents");
  const auto root = tree.url("Documents/Organized");
  const auto groups = groupedByTopic(analyze(Subfolders::keepWhole, "Documents"), folder, root, topics);
  EXPECT_THAT(topics.asked, ElementsAre("letter.docx", "tax.pdf"));
  EXPECT_THAT(topics.existing, ElementsAre("Holidays"));
  EXPECT_THAT(namesOf(groups), ElementsAre("Media/Audio", "Taxes", "Text & Notes"));
}

TEST_F(TopicGroupingTest, refusesNamesThatAreNoFolderBesideTheKinds) {
  tree.file("Downloads/a.pdf");
  for (const auto& topic : {std::string("../out"), std::string(".hidden"), std::string(""), std::string(300, 'x'),
                            std::string("pdfs"), std::string("Media")}) {
    topics.answers = {{"a.pdf", topic}};
    EXPECT_THAT(namesOf(grouped()), ElementsAre("Documents/PDFs")) << topic;
  }
}

TEST_F(TopicGroupingTest, asksNobodyWithoutDocuments) {
  tree.file("Downloads/song.mp3");
  topics.asked = {"untouched"};
  EXPECT_THAT(namesOf(grouped()), ElementsAre("Media/Audio"));
  EXPECT_THAT(topics.asked, ElementsAre("untouched"));
}

}  // namespace
}  // namespace orvane::test
