#include "core/safety/journal/JournalModel.h"

#include "core/base/text/Json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <optional>
#include <ostream>
#include <string>
#include <utility>

namespace orvane {
namespace {

using testing::Values;

constexpr const char* firstRun = "0A1B2C3D-0000-4000-8000-00000000000F";
constexpr const char* secondRun = "0A1B2C3D-0000-4000-8000-00000000000E";

// The content of a journal, with everything in the order in which it stands there.
struct Contents {
  std::vector<CleanupRunSummary> runs;
  std::vector<std::pair<Uuid, std::vector<JournalEntry>>> entries;
  bool operator==(const Contents&) const = default;
};

// The plain reading of a journal, over a tree of values. Absent where the text is none.
std::optional<Contents> readPlainly(const std::string& text) {
  try {
    const Json json = parseJson(text, {.bytes = text.size(), .depth = 16, .duplicateKeys = DuplicateKeys::takeFirst});
    Contents contents;
    std::vector<Uuid> known;
    if (!requiredKey(json, "runs").is_array()) return std::nullopt;
    for (const auto& run : json["runs"]) contents.runs.push_back(CleanupRunSummary::fromJson(run));
    if (!requiredKey(json, "entries").is_object()) return std::nullopt;
    for (const auto& [key, list] : json["entries"].items()) {
      const auto runId = Uuid::parse(key);
      if (!runId) continue;
      if (!list.is_array()) return std::nullopt;
      std::vector<JournalEntry> entries;
      for (const auto& element : list) {
        auto entry = JournalEntry::fromJson(element);
        if (std::ranges::find(known, entry.id) != known.end()) continue;
        known.push_back(entry.id);
        entries.push_back(std::move(entry));
      }
      if (!entries.empty()) contents.entries.emplace_back(*runId, std::move(entries));
    }
    return contents;
  } catch (const JsonError&) {
    return std::nullopt;
  }
}

JournalModel decodeInPieces(std::string_view text, std::size_t piece) {
  return JournalModel::decode([text, piece](char* place, std::size_t most) mutable {
    const auto count = std::min({most, piece, text.size()});
    text.copy(place, count);
    text.remove_prefix(count);
    return count;
  });
}

std::optional<Contents> read(const std::string& text, std::size_t piece, const std::optional<Contents>& expected) {
  try {
    const auto model = decodeInPieces(text, piece);
    Contents contents;
    contents.runs = model.runs();
    if (!expected) return contents;
    for (const auto& [runId, entries] : expected->entries) contents.entries.emplace_back(runId, model.entries(runId));
    return contents;
  } catch (const JsonError&) {
    return std::nullopt;
  }
}

std::string encoded(const JournalModel& model) {
  std::string text;
  model.encode([&](std::string_view piece) { text += piece; });
  return text;
}

void expectAgreement(const std::string& text) {
  const auto plain = readPlainly(text);
  for (const std::size_t piece : {text.size() + 1, std::size_t{7}}) {
    const auto contents = read(text, piece, plain);
    EXPECT_EQ(plain.has_value(), contents.has_value()) << text;
    EXPECT_TRUE(plain == contents) << text;
  }
}

std::string runText(const std::string& runId) {
  return R"({"runId":")" + runId + R"(","timestamp":785000000.5,"itemCount":1,"totalBytes":42,"isRestored":false})";
}

std::string entryText(const std::string& more = {}) {
  return R"({"id":"11111111-2222-4333-8444-555555555555","runId":")" + std::string(firstRun) +
         R"(","timestamp":785000000.125,"originalURL":"file:///home/user/%FF%20name","trashedURL":)" +
         R"("file:///home/user/.local/share/Trash/files/name","fileSize":42,"action":"trashed")" + more + "}";
}

std::string journalOf(const std::string& runs, const std::string& entries) {
  return R"({"runs":[)" + runs + R"(],"entries":{")" + firstRun + R"(":[)" + entries + "]}}";
}

struct Text {
  const char* name;
  bool isJournal;
  std::string text;
};
void PrintTo(const Text& row, std::ostream* out) {
  *out << row.name;
}

class JournalTexts : public testing::TestWithParam<Text> {};

TEST_P(JournalTexts, areReadLikeAnyJson) {
  const auto& [name, isJournal, text] = GetParam();
  EXPECT_EQ(readPlainly(text).has_value(), isJournal);
  expectAgreement(text);
}

// The journal of one entry with the value of one of its members replaced.
std::string withValue(const std::string& member, const std::string& value) {
  auto text = journalOf(runText(firstRun), entryText());
  const auto start = text.rfind("\"" + member + "\":") + member.size() + 3;
  const auto end = text.find_first_of(",}", start);
  return text.replace(start, end - start, value);
}

std::string nested(int depth) {
  return std::string(static_cast<std::size_t>(depth), '[') + std::string(static_cast<std::size_t>(depth), ']');
}

INSTANTIATE_TEST_SUITE_P(
    Frame, JournalTexts,
    Values(Text{"whole", true, journalOf(runText(firstRun), entryText())}, Text{"nothing", false, ""},
           Text{"white space", false, " \n"}, Text{"a list", false, "[]"}, Text{"no members", false, "{}"},
           Text{"no entries", false, R"({"runs":[]})"}, Text{"no runs", false, R"({"entries":{}})"},
           Text{"neither", true, R"({"runs":[],"entries":{}})"},
           Text{"the other order", true, R"({"entries":{},"runs":[)" + runText(firstRun) + "]}"},
           Text{"white space everywhere", true, " { \"runs\" : [ ] ,\n\t\"entries\" : { } } \r\n"},
           Text{"a byte order mark", true, "\xEF\xBB\xBF{\"runs\":[],\"entries\":{}}"},
           Text{"half a byte order mark", false, "\xEF\xBB{\"runs\":[],\"entries\":{}}"},
           Text{"more after the end", false, R"({"runs":[],"entries":{}}x)"},
           Text{"zeros after the end", true, R"({"runs":[],"entries":{}})" + std::string(4096, '\0')},
           Text{"runs twice", true, R"({"runs":[],"entries":{},"runs":[]})"},
           Text{"runs twice, one no JSON", false, R"({"runs":[],"entries":{},"runs":[nul]})"},
           Text{"an escaped name", true, R"({"run\u0073":[],"entries":{}})"},
           Text{"a name cut short", false, R"({"runs":[],"entries)"},
           Text{"a foreign member", true, R"({"runs":[],"version":{"a":[1,"]}"]},"entries":{}})"},
           Text{"a foreign member that is no JSON", false, R"({"runs":[],"version":01,"entries":{}})"},
           Text{"a foreign member without a value", false, R"({"runs":[],"version":,"entries":{}})"},
           Text{"runs null", false, R"({"runs":null,"entries":{}})"},
           Text{"runs an object", false, R"({"runs":{},"entries":{}})"},
           Text{"entries a list", false, R"({"runs":[],"entries":[]})"},
           Text{"a list that is none", false, R"({"runs":[],"entries":{"0A1B2C3D-0000-4000-8000-00000000000F":5}})"},
           Text{"a list under no identifier", true, R"({"runs":[],"entries":{"x":5}})"},
           Text{"a comma before the end", false, R"({"runs":[],"entries":{},})"},
           Text{"the wrong bracket", false, R"({"runs":[},"entries":{}})"},
           Text{"sixteen levels", true, R"({"runs":[],"x":)" + nested(15) + R"(,"entries":{}})"},
           Text{"seventeen levels", false, R"({"runs":[],"x":)" + nested(16) + R"(,"entries":{}})"},
           Text{"very many levels", false, std::string(1000000, '[')}));

INSTANTIATE_TEST_SUITE_P(
    Lists, JournalTexts,
    Values(Text{"a number in a list", false, journalOf("5", "")}, Text{"a comma first", false, journalOf("", ",")},
           Text{"a comma last", false, journalOf("", entryText() + ",")},
           Text{"two commas", false, journalOf("", entryText() + ",," + entryText())},
           Text{"no comma", false, journalOf("", entryText() + entryText())},
           Text{"a run twice", true, journalOf(runText(firstRun), "")},
           Text{"an entry twice", true, journalOf("", entryText() + "," + entryText())},
           Text{"two runs of which one has entries", true,
                journalOf(runText(secondRun) + "," + runText(firstRun), entryText())},
           Text{"a foreign member", true, journalOf("", entryText(R"(,"tags":[{"a":"}"}])"))},
           Text{"a foreign member that is no JSON", false, journalOf("", entryText(R"(,"tags":[{"a":tru}])"))},
           Text{"a foreign member of sixteen levels", true, journalOf("", entryText(R"(,"x":)" + nested(12)))},
           Text{"a foreign member of seventeen levels", false, journalOf("", entryText(R"(,"x":)" + nested(13)))},
           Text{"a member twice", true, journalOf("", entryText(R"(,"fileSize":7)"))},
           Text{"a member twice, the last null", false, journalOf("", entryText(R"(,"fileSize":null)"))},
           Text{"a member twice, the last no number", false, journalOf("", entryText(R"(,"fileSize":"7")"))},
           Text{"a member twice, the first no JSON", false,
                journalOf("", entryText(R"(,"x":1,"checksum":tru,"checksum":"a")"))},
           Text{"an escaped name", true, journalOf("", entryText(R"(,"checksu\u006d":"a")"))},
           Text{"a name with half a character", false, journalOf("", entryText(R"(,"\udc00":1)"))}));

std::vector<Text> values() {
  const std::vector<std::pair<const char*, std::vector<std::pair<const char*, bool>>>> rows{
      {"fileSize",
       {{"0", true},
        {"-0", true},
        {"-7", true},
        {"9223372036854775807", true},
        {"9223372036854775808", false},
        {"-9223372036854775808", true},
        {"18446744073709551616", false},
        {"5.0", true},
        {"5.5", false},
        {"1e3", true},
        {"1e400", false},
        {"1e-400", true},
        {"01", false},
        {"+1", false},
        {"1.", false},
        {".5", false},
        {"0x10", false},
        {"NaN", false},
        {"1 2", false},
        {"\"5\"", false},
        {"null", false},
        {"true", false},
        {"{}", false},
        {"", false}}},
      {"timestamp",
       {{"0", true},
        {"-0", true},
        {"-0.0", true},
        {"785000000", true},
        {"785000000.123456", true},
        {"0.1", true},
        {"1e300", true},
        {"1e309", false},
        {"1E+2", true},
        {"9007199254740993", true},
        {"123456789012345678901234567890", true},
        {"5e-324", true},
        {"-Infinity", false},
        {"\"today\"", false},
        {"[1]", false}}},
      {"originalURL",
       {{R"("file:\/\/\/home\/user\/a")", true},
        {R"("file:///a\u00e9\ud83d\ude00")", true},
        {"\"file:///\xC3\xA9\"", true},
        {"\"file:///\xC3\"", false},
        {"\"file:///\xED\xA0\x80\"", false},
        {"\"file:///\xC0\xAF\"", false},
        {"\"file:///\xF5\x80\x80\x80\"", false},
        {"\"file:///a\tb\"", false},
        {"\"file:///a\x7F\"", true},
        {R"("file:///a\u0000")", false},
        {R"("file:///\ud800")", false},
        {R"("file:///\udc00")", false},
        {R"("file:///\q")", false},
        {R"("file:///%zz")", false},
        {R"("file:///%0")", false},
        {R"("file:///a%00b")", false},
        {R"("file:relative")", false},
        {R"("file://localhost/a")", true},
        {R"("http://host/a")", false},
        {R"("")", false},
        {"5", false}}},
      {"id",
       {{R"("11111111-2222-4333-8444-55555555555")", false},
        {R"("11111111-2222-4333-8444-5555555555\u0035\u0035")", true},
        {R"("aaaaaaaa-2222-4333-8444-555555555555")", true},
        {R"("gggggggg-2222-4333-8444-555555555555")", false}}},
      {"action", {{R"("moved")", true}, {R"("restored")", true}, {R"("deleted")", false}, {R"("mo\u0076ed")", true}}},
  };
  std::vector<Text> texts;
  for (const auto& [member, cases] : rows) {
    for (const auto& [value, isJournal] : cases) texts.push_back({member, isJournal, withValue(member, value)});
  }
  for (const auto& [value, isJournal] : {std::pair{"null", true}, {"\"a\\\"b\"", true}, {"5", false}, {"nul", false}}) {
    texts.push_back({"checksum", isJournal, journalOf("", entryText(std::string(R"(,"checksum":)") + value))});
  }
  for (const auto& [value, isJournal] :
       {std::pair{"true", true}, {"1", false}, {"\"true\"", false}, {"truee", false}}) {
    auto run = runText(firstRun);
    texts.push_back({"isRestored", isJournal, journalOf(run.replace(run.find("false"), 5, value), "")});
  }
  return texts;
}
INSTANTIATE_TEST_SUITE_P(Members, JournalTexts, testing::ValuesIn(values()));

TEST(JournalDamage, meansTheSameToEveryReaderWhereverItIs) {
  const auto whole = " " + journalOf(runText(firstRun), entryText(R"(,"checksum":"\u00e9","x":[null]  )")) + "\n";
  for (std::size_t i = 0; i < whole.size(); ++i) {
    expectAgreement(whole.substr(0, i));
    for (const char c : std::string_view("\"\\,:{}[] 0e-\0\xFF", 15)) {
      auto damaged = whole;
      damaged[i] = c;
      expectAgreement(damaged);
    }
    if (HasFailure()) return;
  }
}

TEST(JournalModel, losesNothingOfListsThatStandTwice) {
  auto other = entryText();
  other.replace(other.find("11111111"), 8, "22222222");
  auto lowerCase = std::string(firstRun);
  std::ranges::transform(lowerCase, lowerCase.begin(), [](unsigned char c) { return std::tolower(c); });
  for (const auto& name : {std::string(firstRun), lowerCase}) {
    auto text = journalOf(runText(firstRun), entryText());
    text.insert(text.size() - 2, ",\"" + name + "\":[" + other + "]");
    EXPECT_EQ(JournalModel::decode(text).entries(*Uuid::parse(firstRun)).size(), 2U) << text;
  }
}

TEST(JournalModel, readsAndWritesALargeJournalToTheByte) {
  JournalModel model;
  double seconds = 785000000;
  for (int run = 0; run < 40; ++run) {
    const Uuid runId = Uuid::random();
    for (int i = 0; i < 100; ++i) {
      const auto number = std::to_string(i);
      JournalEntry entry;
      entry.runId = runId;
      entry.timestamp = dateFromReferenceSeconds(seconds += 0.1);
      entry.originalURL = FileUrl("/home/user/folder " + std::to_string(run) + "/\xFF\xC3\xA9 name " + number);
      entry.trashedURL =
          FileUrl("/home/user/.local/share/Trash/files/" + (i % 3 == 0 ? number : "\xFF\xC3\xA9 name " + number));
      entry.fileSize = i % 7 == 0 ? INT64_MAX / 10000 - i : i;
      if (i % 5 == 0) entry.checksum = "\"\\ \u00e9" + number;
      entry.action = static_cast<JournalAction>(i % 3);
      model.record(entry);
    }
  }
  const auto text = encoded(model);
  ASSERT_GT(text.size(), 1000000U);
  expectAgreement(text);
  EXPECT_EQ(text, encoded(JournalModel::decode(text)));
}

TEST(JournalModel, keepsPathsOfAnyForm) {
  JournalModel model;
  for (const auto* path : {"/", "/a", "/a/b", "relative", "", "/a/ b\xFF/\n"}) {
    JournalEntry entry;
    entry.runId = *Uuid::parse(firstRun);
    entry.originalURL = FileUrl(path);
    entry.trashedURL = FileUrl("/trash");
    model.record(entry);
    EXPECT_EQ(model.entries(entry.runId).back(), entry);
    std::swap(entry.originalURL, entry.trashedURL);
    entry.checksum = "";
    model.record(entry);
    EXPECT_EQ(model.entries(entry.runId).back(), entry);
  }
}

}  // namespace
}  // namespace orvane
