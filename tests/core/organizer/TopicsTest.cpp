#include "core/organizer/topics/OnDeviceTopicCategorizer.h"
#include "core/organizer/topics/TopicNames.h"
#include "core/organizer/topics/TopicResponseParser.h"
#include "core/platform/TopicModel.h"

#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>

namespace orvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

struct Topic {
  std::string text;
  std::optional<std::string> clean;
};
void PrintTo(const Topic& topic, std::ostream* out) {
  *out << topic.text;
}
class TopicName : public testing::TestWithParam<Topic> {};

TEST_P(TopicName, isCleaned) {
  EXPECT_EQ(TopicNames::sanitize(GetParam().text), GetParam().clean);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, TopicName,
    testing::Values(Topic{"Tax Documents", "Tax Documents"}, Topic{"Work/Projects", "Work Projects"},
                    Topic{"a:b\\c\nd\re\x01"
                          "f",
                          "a b c d e f"},
                    Topic{"  Travel.  ", "Travel"}, Topic{" . Two   Words . ", "Two Words"}, Topic{"v1.2", "v1.2"},
                    Topic{"..", std::nullopt}, Topic{"../../etc", "etc"}, Topic{". / .", std::nullopt},
                    Topic{"", std::nullopt}, Topic{" \t ", std::nullopt}, Topic{".hidden", "hidden"},
                    Topic{std::string(40, 'x'), std::string(40, 'x')}, Topic{std::string(41, 'x'), std::nullopt},
                    Topic{"Ferien\u2028Bilder", "Ferien Bilder"}, Topic{"gpj.\u202egpj", "gpj. gpj"},
                    // Forty characters to a reader.
                    Topic{[] {
                            std::string text;
                            for (int i = 0; i < 40; ++i) text += "e\u0301";
                            return text;
                          }(),
                          [] {
                            std::string text;
                            for (int i = 0; i < 40; ++i) text += "e\u0301";
                            return text;
                          }()}));

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

class FakeModel : public TopicModel {
 public:
  using Reply = std::function<std::string(const std::string& prompt)>;
  explicit FakeModel(Reply reply) : m_reply(std::move(reply)) {}
  [[nodiscard]] std::string unavailableReason() override { return {}; }
  [[nodiscard]] std::string respond(const std::string& instructions, const std::string& prompt,
                                    const std::stop_token& /*stop*/) override {
    EXPECT_EQ(instructions, OnDeviceTopicCategorizer::instructions);
    prompts.push_back(prompt);
    return m_reply(prompt);
  }
  std::vector<std::string> prompts;

 private:
  Reply m_reply;
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
  EXPECT_THAT(model.prompts[0], testing::StartsWith("Existing folders: Art, Zoo\n\nItems:\n- item 0\n- item 1\n"));
  EXPECT_THAT(model.prompts[2],
              testing::StartsWith("Existing folders: Art, Topic of item 0, Zoo\n\nItems:\n- item 50"));
}

TEST(TopicCategorizer, offersNoTopicAgainThatCanBeNoFolder) {
  std::vector<std::string> names;
  for (int i = 0; i < 30; ++i) names.push_back(std::to_string(i));
  FakeModel model([&](const std::string&) { return R"({"0": "Documents", "1": "PDFs", "2": "Work"})"; });
  static_cast<void>(OnDeviceTopicCategorizer(model).topics(names, {}));
  EXPECT_THAT(model.prompts.at(1), testing::StartsWith("Existing folders: Work\n"));
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

}  // namespace
}  // namespace orvane
