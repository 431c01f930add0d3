#include "core/safety/journal/JournalModel.h"

#include "core/base/text/Json.h"
#include "tests/support/Testing.h"

#include <cctype>

namespace orvane::test {
namespace {

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

void expectReading(const std::vector<Text>& texts) {
  for (const auto& [name, isJournal, text] : texts) {
    SCOPED_TRACE(name);
    EXPECT_EQ(readPlainly(text).has_value(), isJournal);
    expectAgreement(text);
  }
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

TEST(JournalFrame, isReadLikeAnyJson) {
  const std::vector<Text> texts{
      {"whole", true, journalOf(runText(firstRun), entryText())},
      {"nothing", false, ""},
      {"white space", false, " \n"},
      {"a list", false, "[]"},
      {"no members", false, "{}"},
      {"no entries", false, R"({"runs":[]})"},
      {"no runs", false, R"({"entries":{}})"},
      {"neither", true, R"({"runs":[],"entries":{}})"},
      {"the other order", true, R"({"entries":{},"runs":[)" + runText(firstRun) + "]}"},
      {"white space everywhere", true, " { \"runs\" : [ ] ,\n\t\"entries\" : { } } \r\n"},
      {"a byte order mark", true, "\xEF\xBB\xBF{\"runs\":[],\"entries\":{}}"},
      {"half a byte order mark", false, "\xEF\xBB{\"runs\":[],\"entries\":{}}"},
      {"more after the end", false, R"({"runs":[],"entries":{}}x)"},
      {"zeros after the end", true, R"({"runs":[],"entries":{}})" + std::string(4096, '\0')},
      {"runs twice", true, R"({"runs":[],"entries":{},"runs":[]})"},
      {"runs twice, one no JSON", false, R"({"runs":[],"entries":{},"runs":[nul]})"},
      {"an escaped name", true, R"({"run\u0073":[],"entries":{}})"},
      {"a name cut short", false, R"({"runs":[],"entries)"},
      {"a foreign member", true, R"({"runs":[],"version":{"a":[1,"]}"]},"entries":{}})"},
      {"a foreign member that is no JSON", false, R"({"runs":[],"version":01,"entries":{}})"},
      {"a foreign member without a value", false, R"({"runs":[],"version":,"entries":{}})"},
      {"runs null", false, R"({"runs":null,"entries":{}})"},
      {"runs an object", false, R"({"runs":{},"entries":{}})"},
      {"entries a list", false, R"({"runs":[],"entries":[]})"},
      {"a list that is none", false, R"({"runs":[],"entries":{"0A1B2C3D-0000-4000-8000-00000000000F":5}})"},
      {"a list under no identifier", true, R"({"runs":[],"entries":{"x":5}})"},
      {"a comma before the end", false, R"({"runs":[],"entries":{},})"},
      {"the wrong bracket", false, R"({"runs":[},"entries":{}})"},
      {"sixteen levels", true, R"({"runs":[],"x":)" + nested(15) + R"(,"entries":{}})"},
      {"seventeen levels", false, R"({"runs":[],"x":)" + nested(16) + R"(,"entries":{}})"},
      {"very many levels", false, std::string(1000000, '[')},
  };
  expectReading(texts);
}

TEST(JournalLists, isReadLikeAnyJson) {
  const std::vector<Text> texts{
      {"a number in a list", false, journalOf("5", "")},
      {"a comma first", false, journalOf("", ",")},
      {"a comma last", false, journalOf("", entryText() + ",")},
      {"two commas", false, journalOf("", entryText() + ",," + entryText())},
      {"no comma", false, journalOf("", entryText() + entryText())},
      {"a run twice", true, journalOf(runText(firstRun), "")},
      {"an entry twice", true, journalOf("", entryText() + "," + entryText())},
      {"two runs of which one has entries", true, journalOf(runText(secondRun) + "," + runText(firstRun), entryText())},
      {"a foreign member", true, journalOf("", entryText(R"(,"tags":[{"a":"}"}])"))},
      {"a foreign member that is no JSON", false, journalOf("", entryText(R"(,"tags":[{"a":tru}])"))},
      {"a foreign member of sixteen levels", true, journalOf("", entryText(R"(,"x":)" + nested(12)))},
      {"a foreign member of seventeen levels", false, journalOf("", entryText(R"(,"x":)" + nested(13)))},
      {"a member twice", true, journalOf("", entryText(R"(,"fileSize":7)"))},
      {"a member twice, the last null", false, journalOf("", entryText(R"(,"fileSize":null)"))},
      {"a member twice, the last no number", false, journalOf("", entryText(R"(,"fileSize":"7")"))},
      {"a member twice, the first no JSON", false, journalOf("", entryText(R"(,"x":1,"checksum":tru,"checksum":"a")"))},
      {"an escaped name", true, journalOf("", entryText(R"(,"checksu\u006d":"a")"))},
      {"a name with half a character", false, journalOf("", entryText(R"(,"\udc00":1)"))},
  };
  expectReading(texts);
}

struct MemberValues {
  const char* member;
  std::vector<const char*> read;
  std::vector<const char*> refused;
};

TEST(JournalMembers, areReadLikeAnyJson) {
  const std::vector<MemberValues> rows{
      {"fileSize",
       {"0", "-0", "-7", "9223372036854775807", "-9223372036854775808", "5.0", "1e3", "1e-400"},
       {"9223372036854775808", "18446744073709551616", "5.5", "1e400", "01", "+1", "1.", ".5", "0x10", "NaN", "1 2",
        "\"5\"", "null", "true", "{}", ""}},
      {"timestamp",
       {"0", "-0", "-0.0", "785000000", "785000000.123456", "0.1", "1e300", "1E+2", "9007199254740993",
        "123456789012345678901234567890", "5e-324"},
       {"1e309", "-Infinity", "\"today\"", "[1]"}},
      {"originalURL",
       {R"("file:\/\/\/home\/user\/a")", R"("file:///a\u00e9\ud83d\ude00")", "\"file:///\xC3\xA9\"",
        "\"file:///a\x7F\"", R"("file://localhost/a")"},
       {"\"file:///\xC3\"", "\"file:///\xED\xA0\x80\"", "\"file:///\xC0\xAF\"", "\"file:///\xF5\x80\x80\x80\"",
        "\"file:///a\tb\"", R"("file:///a\u0000")", R"("file:///\ud800")", R"("file:///\udc00")", R"("file:///\q")",
        R"("file:///%zz")", R"("file:///%0")", R"("file:///a%00b")", R"("file:relative")", R"("http://host/a")",
        R"("")", "5"}},
      {"id",
       {R"("11111111-2222-4333-8444-5555555555\u0035\u0035")", R"("aaaaaaaa-2222-4333-8444-555555555555")"},
       {R"("11111111-2222-4333-8444-55555555555")", R"("gggggggg-2222-4333-8444-555555555555")"}},
      {"action", {R"("moved")", R"("restored")", R"("mo\u0076ed")"}, {R"("deleted")"}},
  };
  std::vector<Text> texts;
  for (const auto& [member, read, refused] : rows) {
    for (const auto* value : read) texts.push_back({member, true, withValue(member, value)});
    for (const auto* value : refused) texts.push_back({member, false, withValue(member, value)});
  }
  for (const auto& [value, isJournal] : {std::pair{"null", true}, {"\"a\\\"b\"", true}, {"5", false}, {"nul", false}}) {
    texts.push_back({"checksum", isJournal, journalOf("", entryText(std::string(R"(,"checksum":)") + value))});
  }
  for (const auto& [value, isJournal] :
       {std::pair{"true", true}, {"1", false}, {"\"true\"", false}, {"truee", false}}) {
    auto run = runText(firstRun);
    texts.push_back({"isRestored", isJournal, journalOf(run.replace(run.find("false"), 5, value), "")});
  }
  expectReading(texts);
}

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
}  // namespace orvane::test
