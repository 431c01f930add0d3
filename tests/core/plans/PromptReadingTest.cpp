#include "core/plans/PromptReading.h"

#include "tests/support/Testing.h"

#include <fmt/format.h>

namespace orvane::test {
namespace {

std::string textOf(std::string_view prompt, const PromptReading& reading) {
  std::string text;
  for (const auto& word : reading.words) {
    if (!text.empty()) text += "|";
    text += fmt::format("{}:{}{}", word.span.in(prompt),
                        word.meaning == WordMeaning::none ? "" : rawValue(word.meaning), word.counts ? "" : "!");
  }
  return text;
}

TEST(PromptReading, tellsWhatEachWordBecame) {
  // "text:meaning", separated by "|"; "!" for a word that does not count
  const Rows<const char*, const char*> rows{
      {"", ""},
      {"Delete the LOGS, older than a month!", "Delete:removal|the:|LOGS:logs|older:age|than:|a month:age"},
      {"remove screen shots of setup.dmg", "remove:removal|screen shots:screenshots|of:|setup:|dmg:installers"},
      {"big files over 1.5 gb or 3mb", "big:size|files:|over:|1:|5 gb:size|or:|3mb:"},
      {"mb and gb", "mb:size!|and:|gb:size"},
      {"photos in downloads", "photos:folder!|in:|downloads:folder"},
      {"don't sort login items", "don:|t:|sort:organizing|login:|items:"},
      // Characters that change their length in lower case, and bytes that are no text.
      {"İİ LOGS older", "İ:|İ:|LOGS:logs|older:age"},
      {"Ⱥ \xff LOGS", "Ⱥ:|LOGS:logs"},
  };
  for (const auto& [prompt, words] : rows) EXPECT_EQ(textOf(prompt, PromptReading::of(prompt)), words);
}

}  // namespace
}  // namespace orvane::test
