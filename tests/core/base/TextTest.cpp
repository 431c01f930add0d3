#include "core/base/files/FreeName.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/CaselessSearch.h"
#include "core/base/text/RegularExpression.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/Calendar.h"
#include "core/base/values/Uuid.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Testing.h"
#include "tests/support/TimeZone.h"

namespace orvane::test {
namespace {

TEST(ByteCount, readsAsPeopleExpect) {
  const Rows<std::int64_t, const char*> counts{
      {0, "Zero KB"},         {1, "1 byte"},
      {999, "999 bytes"},     {1000, "1 KB"},
      {1499, "1 KB"},         {999'499, "999 KB"},
      {999'999, "1 MB"},      {1'540'000, "1.5 MB"},
      {999'960'000, "1 GB"},  {12'345'000'000, "12.34 GB"},
      {INT64_MAX, "9.22 EB"}, {-2000, "-2 KB"},
  };
  for (const auto& [bytes, text] : counts) EXPECT_EQ(formatByteCount(bytes), text);
}

TEST(UnicodeText, lowerCasesBeyondAscii) {
  EXPECT_EQ(lowercased("ÄÉÎ STRASSE Ω"), "äéî strasse ω");
  EXPECT_EQ(lowercased("IMG.JPG"), "img.jpg");
}

TEST(UnicodeText, countsPerceivedCharacters) {
  EXPECT_EQ(perceivedCharacterCount("abc"), 3);
  EXPECT_EQ(perceivedCharacterCount("e\xcc\x81"), 1);
  EXPECT_EQ(perceivedCharacterCount("👨‍👩‍👧‍👦🇩🇪"), 2);
}

TEST(UnicodeText, trimsEveryKindOfWhiteSpace) {
  EXPECT_EQ(trimmed(" \t\r\n\u00a0\u3000a b\u2003\n"), "a b");
  EXPECT_EQ(trimmed("\n \n"), "");
}

TEST(UnicodeText, splitsAtWhatIsNeitherLetterNorDigit) {
  EXPECT_THAT(letterDigitRuns("delete .DMG files, older_than 30days – größe"),
              ElementsAre("delete", "DMG", "files", "older", "than", "30days", "größe"));
  EXPECT_EQ(spacedCamelCase("MyPhotosÄnd iOSApp"), "My Photos Änd i OSApp");
}

TEST(EscapedForDisplay, movesNothingOnTheTerminal) {
  const Rows<const char*, const char*> names{
      {"plain ü 日本", "plain ü 日本"}, {"line\nbreak\ttab", "line\\nbreak\\ttab"},
      {"\x1b[2J", "\\x1b[2J"},          {"\u202egpj.exe", "\\u202egpj.exe"},
      {"\xff\xc3", "\\xff\\xc3"},       {"\u0085\u2028", "\\u0085\\u2028"},
      {"👩\u200d💻", "👩\u200d💻"},
  };
  for (const auto& [name, text] : names) EXPECT_EQ(escapedForDisplay(name), text);
}

TEST(UnicodeText, knowsHowWideATextStands) {
  EXPECT_EQ(displayWidth("abc"), 3);
  EXPECT_EQ(displayWidth("日本"), 4);
  EXPECT_EQ(displayWidth("e\xcc\x81"), 1);
}

// New York: clocks went forward on 2026-03-08 and go back on 2026-11-01.
TEST(Calendar, daysFollowTheCalendarAcrossDaylightSaving) {
  inTimeZone("America/New_York", [] {
    const auto noonBefore = dateFromUnix(1772902800);  // 2026-03-07 12:00 local
    const auto noonAfter = dateFromUnix(1772985600);   // 2026-03-08 12:00 local, 23 hours later
    EXPECT_EQ(wholeDaysBetween(noonBefore, noonAfter), 1);
    EXPECT_EQ(wholeDaysBetween(noonBefore, noonAfter - std::chrono::seconds(1)), 0);
    EXPECT_EQ(wholeDaysBetween(noonAfter, noonBefore), -1);
    EXPECT_EQ(addingDays(noonBefore, 1), noonAfter);
    EXPECT_EQ(localTimestamp(noonAfter), "2026-03-08T12:00:00");
    EXPECT_EQ(formatDate(noonAfter, "yyyy-MM"), "2026-03");
  });
}

TEST(Uuid, readsAndWritesItsTextForm) {
  const auto text = "0A1B2C3D-4E5F-4789-8ABC-DEF012345678";
  EXPECT_EQ(Uuid::parse(text)->toString(), text);
  EXPECT_EQ(Uuid::parse("0a1b2c3d-4e5f-4789-8abc-def012345678")->toString(), text);
  for (const char* bad :
       {"", "0A1B2C3D", "0A1B2C3D-4E5F-4789-8ABC-DEF01234567G", "0A1B2C3D-4E5F-4789-8ABCDEF01234567-8"}) {
    EXPECT_FALSE(Uuid::parse(bad)) << bad;
  }
}

TEST(Uuid, staysUniqueAcrossForks) {
  const auto before = Uuid::random();
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  EXPECT_TRUE(inProcesses(1, [&](int) { return ::write(ends[1], Uuid::random().toString().data(), 36) == 36; }));
  char text[36];
  ASSERT_EQ(::read(ends[0], text, sizeof text), 36);
  const auto mine = Uuid::random();
  EXPECT_NE(Uuid::parse({text, sizeof text}), mine);
  EXPECT_NE(before, mine);
}

TEST(FreeName, keepsWithinTheLongestName) {
  EXPECT_EQ(numberedName("x.tar.gz", 3, NumberingStyle::plain), "x.tar (3).gz");
  EXPECT_EQ(numberedName("Makefile", 1, NumberingStyle::restored), "Makefile (restored 1)");
  std::string longName;
  while (longName.size() < 250) longName += "ü";
  const auto numbered = numberedName(longName + ".txt", 12, NumberingStyle::restored);
  EXPECT_LE(numbered.size(), 255U);
  EXPECT_TRUE(isValidUtf8(numbered));
  EXPECT_TRUE(numbered.ends_with(" (restored 12).txt"));
  // An extension that leaves no room for the number.
  for (const std::size_t length : {236U, 240U, 253U}) {
    const std::string name = "a." + std::string(length, 'x');
    const auto first = numberedName(name, 1, NumberingStyle::restored);
    EXPECT_LE(first.size(), 255U) << length;
    EXPECT_NE(first, numberedName(name, 2, NumberingStyle::restored)) << length;
  }
}

TEST(CaselessSearch, ignoresCaseAndComposition) {
  const Rows<std::string_view, std::string_view, bool> searches{
      {"REPORT", "my report.pdf", true},
      {"report.", "my RePoRt.pdf", true},
      {"reports", "my report.pdf", false},
      {"", "", true},
      {"a", "", false},
      {"[", "{", false},
      {"straße", "STRASSE", true},
      {"STRASSE", "Straße", true},
      {"\u212a", "a kelvin", true},  // the Kelvin sign folds to k
      {"k", "\u212a", true},
      {"É", "cafe\u0301.txt", true},
      {"é", "cafe.txt", false},
      {"x", "\xff\xfeX", true},
      {std::string_view("\0b", 2), std::string_view("a\0B", 3), true},
  };
  for (const auto& [needle, text, found] : searches) {
    EXPECT_EQ(CaselessSearch(needle).isIn(text), found) << needle << " in " << text;
  }
}

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

TEST(RegularExpression, refusesAPatternThatCannotBeBuiltAndFindsNothingWhereThereIsNothing) {
  for (const char* pattern : {"(", "[a", "a{2,1}", "*"}) EXPECT_FALSE(RegularExpression::compile(pattern)) << pattern;
  for (const auto text : {std::string_view(), std::string_view(""), std::string_view("aaa")}) {
    EXPECT_FALSE(RegularExpression::compile("b")->firstMatch(text));
  }
}

TEST(RegularExpression, searchesBytesThatAreNoTextAndGivesUpOnACatastrophicSearch) {
  const std::string text = "\xff\xc3\xe2\x82 7\xf0";
  EXPECT_EQ(RegularExpression::compile(R"(\d+)")->firstMatch(text).value().whole.in(text), "7");
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
