#include "core/base/text/RegularExpression.h"

#include "tests/support/Testing.h"

#include <thread>

namespace orvane::test {
namespace {

TEST(RegularExpression, givesByteOffsetsOfTheMatchAndItsGroups) {
  const auto expression = RegularExpression::compile(R"((\d+)(x)?\s*(jours?))");
  ASSERT_TRUE(expression);
  const std::string text = "été 🎉 — 12 jours";
  const auto match = expression->firstMatch(text);
  ASSERT_TRUE(match);
  EXPECT_EQ(match->whole.in(text), "12 jours");
  EXPECT_EQ(match->whole.start, text.find("12"));
  ASSERT_EQ(match->groups.size(), 3U);
  EXPECT_EQ(match->groups[0]->in(text), "12");
  EXPECT_FALSE(match->groups[1]);
  EXPECT_EQ(match->groups[2]->in(text), "jours");
}

TEST(RegularExpression, findsNothingWhereThereIsNothing) {
  for (const auto text : {std::string_view(), std::string_view(""), std::string_view("aaa")}) {
    EXPECT_FALSE(RegularExpression::compile("b")->firstMatch(text));
  }
}

TEST(RegularExpression, refusesAPatternThatCannotBeBuilt) {
  for (const char* pattern : {"(", "[a", "a{2,1}", "*"}) {
    EXPECT_FALSE(RegularExpression::compile(pattern)) << pattern;
  }
}

TEST(RegularExpression, searchesBytesThatAreNoText) {
  const std::string text = "\xff\xc3\xe2\x82 7\xf0";
  const auto match = RegularExpression::compile(R"(\d+)")->firstMatch(text);
  ASSERT_TRUE(match);
  EXPECT_EQ(match->whole.in(text), "7");
}

TEST(RegularExpression, givesUpOnACatastrophicSearch) {
  EXPECT_FALSE(RegularExpression::compile("(a+)+$")->firstMatch(std::string(64, 'a') + "b"));
}

TEST(RegularExpression, isSharedByThreads) {
  const auto expression = RegularExpression::compile(R"(n(\d+))");
  ASSERT_TRUE(expression);
  std::vector<std::jthread> threads;
  for (int worker = 0; worker < 4; ++worker) {
    threads.emplace_back([&, worker] {
      for (int i = 0; i < 500; ++i) {
        const auto number = std::to_string(worker * 1000 + i);
        std::string text(static_cast<std::size_t>(i % 7), 'x');
        text.append(" n").append(number);
        const auto match = expression->firstMatch(text);
        ASSERT_TRUE(match);
        ASSERT_EQ(match->groups[0]->in(text), number);
      }
    });
  }
}

}  // namespace
}  // namespace orvane::test
