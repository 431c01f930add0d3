#include "core/organizer/topics/OnDeviceTopicCategorizer.h"

#include "core/organizer/topics/TopicCategorizing.h"
#include "core/organizer/topics/TopicGrouping.h"
#include "core/organizer/topics/TopicNames.h"
#include "core/organizer/topics/TopicResponseParser.h"
#include "tests/support/OrganizerFixture.h"
#include "tests/support/ScriptedModel.h"

namespace orvane::test {
namespace {

TEST(TopicNames, areCleaned) {
  std::string fortyToAReader;
  for (int i = 0; i < 40; ++i) fortyToAReader += "e\u0301";
  const Rows<std::string, std::optional<std::string>> rows{
      {"Tax Documents", "Tax Documents"},
      {"Work/Projects", "Work Projects"},
      {"a:b\\c\nd\re\001f", "a b c d e f"},
      {"  Travel.  ", "Travel"},
      {" . Two   Words . ", "Two Words"},
      {"v1.2", "v1.2"},
      {"..", std::nullopt},
      {"../../etc", "etc"},
      {". / .", std::nullopt},
      {"", std::nullopt},
      {" \t ", std::nullopt},
      {".hidden", "hidden"},
      {std::string(40, 'x'), std::string(40, 'x')},
      {std::string(41, 'x'), std::nullopt},
      {"Ferien\u2028Bilder", "Ferien Bilder"},
      {"gpj.\u202egpj", "gpj. gpj"},
      {fortyToAReader, fortyToAReader},
  };
  for (const auto& [text, clean] : rows) EXPECT_EQ(TopicNames::sanitize(text), clean) << text;
}

TEST(TopicResponse, isFoundAmongProse) {
  const std::set<std::string> allowed{"a.pdf", "b.pdf", "c.pdf"};
  const auto parse = [&](std::string_view reply) { return TopicResponseParser::parse(reply, allowed); };
  EXPECT_THAT(parse("Here it is: {\"a.pdf\": \"Taxes\"}. Enjoy!"), ElementsAre(Pair("a.pdf", "Taxes")));
  EXPECT_THAT(
      parse("```json\n{\"a.pdf\": \" Work/Projects \", \"b.pdf\": 7, \"c.pdf\": \"..\", \"A.pdf\": \"X\"}\n```"),
      ElementsAre(Pair("a.pdf", "Work Projects")));
  for (const auto* reply : {"", "none", "{", "}{", "} and {", "{\"a.pdf\": }", "{\"a.pdf\": {\"b.pdf\": \"X\"}}"}) {
    EXPECT_THAT(parse(reply), IsEmpty()) << reply;
  }
}

class FakeModel : public ScriptedModel {
 public:
  explicit FakeModel(std::function<std::string(const std::string& prompt)> answer) { reply = std::move(answer); }
  [[nodiscard]] std::string respond(const std::string& instructions, const std::string& prompt,
                                    const std::stop_token& stop) override {
    EXPECT_EQ(instructions, OnDeviceTopicCategorizer::instructions);
    return ScriptedModel::respond(instructions, prompt, stop);
  }
};

TEST(TopicCategorizer, givesItsInstructionsByteForByte) {
  EXPECT_EQ(OnDeviceTopicCategorizer::instructions.size(), 512U);
}

TEST(TopicCategorizer, asksInBatchesAndTellsLaterOnesOfEarlierTopics) {
  std::vector<std::string> names;
  for (int i = 0; i < 60; ++i) names.push_back("item " + std::to_string(i));
  FakeModel model([&](const std::string& prompt) {
    const auto start = prompt.find("- ") + 2;
    const auto first = prompt.substr(start, prompt.find('\n', start) - start);
    if (first == "item 25") throw std::runtime_error("no answer");
    return "{\"" + first + "\": \"Topic of " + first + "\", \"item 59\": \"Last\"}";
  });
  const auto topics = OnDeviceTopicCategorizer(model).topics(names, {"Zoo", "Art"});
  EXPECT_THAT(topics, ElementsAre(Pair("item 0", "Topic of item 0"), Pair("item 50", "Topic of item 50"),
                                  Pair("item 59", "Last")));
  ASSERT_THAT(model.prompts, SizeIs(3));
  const auto items = [](const std::string& prompt) { return std::count(prompt.begin(), prompt.end(), '\n') - 2; };
  EXPECT_EQ(items(model.prompts[0]), 25);
  EXPECT_EQ(items(model.prompts[2]), 10);
  EXPECT_THAT(model.prompts[0], StartsWith("Existing folders: Art, Zoo\n\nItems:\n- item 0\n- item 1\n"));
  EXPECT_THAT(model.prompts[2], StartsWith("Existing folders: Art, Topic of item 0, Zoo\n\nItems:\n- item 50"));
}

TEST(TopicCategorizer, offersNoTopicAgainThatCanBeNoFolder) {
  std::vector<std::string> names;
  for (int i = 0; i < 30; ++i) names.push_back(std::to_string(i));
  FakeModel model([&](const std::string&) { return R"({"0": "Documents", "1": "PDFs", "2": "Work"})"; });
  static_cast<void>(OnDeviceTopicCategorizer(model).topics(names, {}));
  EXPECT_THAT(model.prompts.at(1), StartsWith("Existing folders: Work\n"));
}

TEST(TopicCategorizer, namesAtMost25FoldersAndNoneWhereThereAreNone) {
  std::set<std::string> many;
  for (int i = 10; i < 40; ++i) many.insert("T" + std::to_string(i));
  const std::vector<std::string> one{"x"};
  const auto prompt = OnDeviceTopicCategorizer::prompt(one, many);
  EXPECT_THAT(prompt, HasSubstr("T33, T34\n\nItems:\n- x"));
  EXPECT_EQ(OnDeviceTopicCategorizer::prompt(one, {}), "Existing folders: none yet\n\nItems:\n- x");
}

TEST(TopicCategorizer, asksNothingAboutNothing) {
  FakeModel model([](const auto&) { return "{}"; });
  OnDeviceTopicCategorizer categorizer(model);
  EXPECT_THAT(categorizer.topics({}, {}), IsEmpty());
  EXPECT_THAT(categorizer.topics(std::vector<std::string>{"\xff"}, {}), IsEmpty());
  EXPECT_THAT(model.prompts, IsEmpty());
}

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

TEST_F(TopicGroupingTest, refusesNamesThatAreNoFolderBesideTheKindsAndAsksNobodyWithoutDocuments) {
  tree.file("Downloads/song.mp3");
  topics.asked = {"untouched"};
  EXPECT_THAT(namesOf(grouped()), ElementsAre("Media/Audio"));
  EXPECT_THAT(topics.asked, ElementsAre("untouched"));
  fs::remove(tree.path("Downloads/song.mp3"));
  tree.file("Downloads/a.pdf");
  for (const auto& topic : {std::string("../out"), std::string(".hidden"), std::string(""), std::string(300, 'x'),
                            std::string("pdfs"), std::string("Media")}) {
    topics.answers = {{"a.pdf", topic}};
    EXPECT_THAT(namesOf(grouped()), ElementsAre("Documents/PDFs")) << topic;
  }
}

}  // namespace
}  // namespace orvane::test
