#include "core/plans/PromptReading.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>

namespace orvane {
namespace {

struct ReadPrompt {
  const char* prompt;
  const char* words;  // "text:meaning", separated by "|"; "!" for a word that does not count
};
void PrintTo(const ReadPrompt& read, std::ostream* out) {
  *out << read.prompt;
}

std::string textOf(std::string_view prompt, const PromptReading& reading) {
  std::string text;
  for (const auto& word : reading.words) {
    if (!text.empty()) text += "|";
    text += fmt::format("{}:{}{}", word.span.in(prompt),
                        word.meaning == WordMeaning::none ? "" : rawValue(word.meaning), word.counts ? "" : "!");
  }
  return text;
}

class PromptReadingTest : public testing::TestWithParam<ReadPrompt> {};

TEST_P(PromptReadingTest, tellsWhatEachWordBecame) {
  EXPECT_EQ(textOf(GetParam().prompt, PromptReading::of(GetParam().prompt)), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    Prompts, PromptReadingTest,
    testing::Values(ReadPrompt{"", ""},
                    ReadPrompt{"Delete the LOGS, older than a month!",
                               "Delete:removal|the:|LOGS:logs|older:age|than:|a month:age"},
                    ReadPrompt{"remove screen shots of setup.dmg",
                               "remove:removal|screen shots:screenshots|of:|setup:|dmg:installers"},
                    ReadPrompt{"big files over 1.5 gb or 3mb", "big:size|files:|over:|1:|5 gb:size|or:|3mb:"},
                    ReadPrompt{"mb and gb", "mb:size!|and:|gb:size"},
                    ReadPrompt{"photos in downloads", "photos:folder!|in:|downloads:folder"},
                    ReadPrompt{"don't sort login items", "don:|t:|sort:organizing|login:|items:"},
                    // Characters that change their length in lower case, and bytes that are no text.
                    ReadPrompt{"İİ LOGS older", "İ:|İ:|LOGS:logs|older:age"},
                    ReadPrompt{"Ⱥ \xff LOGS", "Ⱥ:|LOGS:logs"}));

}  // namespace
}  // namespace orvane
