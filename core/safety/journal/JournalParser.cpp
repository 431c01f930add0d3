#include "core/safety/journal/JournalParser.h"

#include "core/base/text/Json.h"

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

namespace orvane {
namespace {

// The journal is this program's own file: as long as it must be, but no deeper than its form.
constexpr JsonLimits limits{
    .bytes = static_cast<std::size_t>(-1), .depth = 16, .duplicateKeys = DuplicateKeys::takeFirst};

constexpr std::size_t initialBuffer = 256 * 1024;
// Elements are handed to the JSON library in batches: enough to make the call cheap, few enough to stay in the cache.
constexpr std::size_t batchBytes = 64 * 1024;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

constexpr bool isSpace(char c) {
  return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

[[noreturn]] void throwInvalid(std::string_view reason) {
  throw JsonError(fmt::format("not valid JSON: {}", reason));
}

// For what is out of the ordinary, so that it means the same as everywhere.
Json parsed(std::string_view value) {
  // There a text ends with a NUL byte.
  if (value.find('\0') != std::string_view::npos) throwInvalid("a NUL byte");
  return parseJson(value, limits);
}

// A whole number of up to 18 digits, or one with a fraction: what this program writes.
bool isPlainNumber(std::string_view token) {
  if (token.empty() || token.front() < '1' || token.front() > '9') return false;
  const auto integerEnd = std::find_if_not(token.begin(), token.end(), isDigit);
  if (integerEnd == token.end()) return token.size() <= 18;
  return *integerEnd == '.' && integerEnd + 1 != token.end() && std::all_of(integerEnd + 1, token.end(), isDigit);
}

template <typename Number>
std::optional<Number> plainNumber(std::string_view token) {
  if (!isPlainNumber(token)) return std::nullopt;
  Number number{};
  const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), number);
  if (error != std::errc() || end != token.data() + token.size()) return std::nullopt;
  return number;
}

// The text between the quotes of a token, where nothing in it is escaped.
std::optional<std::string_view> plainText(std::string_view token) {
  if (token.size() < 2 || token.front() != '"' || token.back() != '"') return std::nullopt;
  const auto text = token.substr(1, token.size() - 2);
  if (text.find('\\') != std::string_view::npos) return std::nullopt;
  return text;
}

// The members of one object as the tokens of their values, which point into the parser's buffer.
template <std::size_t count>
class Members {
 public:
  explicit Members(const std::array<std::string_view, count>& names) : m_names(names) {}

  void read(simdjson::ondemand::object object) {
    m_tokens = {};
    for (simdjson::ondemand::field field : object) take(field);
  }

  [[nodiscard]] std::string string(std::size_t index) const {
    const auto token = required(index);
    if (const auto text = plainText(token)) return std::string(*text);
    return stringFrom(parsed(token), m_names[index]);
  }
  [[nodiscard]] std::int64_t integer(std::size_t index) const {
    const auto token = required(index);
    if (const auto number = plainNumber<std::int64_t>(token)) return *number;
    return integerFrom(parsed(token), m_names[index]);
  }
  [[nodiscard]] Date date(std::size_t index) const {
    const auto token = required(index);
    if (const auto number = plainNumber<double>(token)) return dateFromReferenceSeconds(*number);
    return dateFrom(parsed(token), m_names[index]);
  }
  [[nodiscard]] bool boolean(std::size_t index) const {
    const auto token = required(index);
    if (token != "true" && token != "false") throwExpected(index, "true or false");
    return token == "true";
  }
  [[nodiscard]] Uuid uuid(std::size_t index) const {
    const auto text = plainText(required(index));
    const auto uuid = Uuid::parse(text ? *text : string(index));
    if (!uuid) throwExpected(index, "a UUID");
    return *uuid;
  }
  [[nodiscard]] FileUrl url(std::size_t index) const {
    const auto text = plainText(required(index));
    auto url = FileUrl::fromAbsoluteString(text ? *text : string(index));
    if (!url) throwExpected(index, "a file URL with an absolute path");
    return *std::move(url);
  }
  [[nodiscard]] bool has(std::size_t index) const { return !m_tokens[index].empty() && m_tokens[index] != "null"; }

 private:
  void take(simdjson::ondemand::field& field) {
    const auto index = indexOf(field);
    auto value = field.value();
    const auto token = trimmed(simdjson::to_json_string(value).value());
    if (index == count) {
      static_cast<void>(parsed(token));
      return;
    }
    // Of several members of one name the last counts. The others have to be JSON all the same.
    if (!m_tokens[index].empty()) static_cast<void>(parsed(m_tokens[index]));
    m_tokens[index] = token;
  }

  [[nodiscard]] std::size_t indexOf(simdjson::ondemand::field& field) {
    const auto key = field.key();
    // Members mostly come in the order in which they are written.
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t index = (m_expected + i) % count;
      if (!key.unsafe_is_equal(m_names[index])) continue;
      m_expected = index + 1;
      return index;
    }
    // Anything else there is escaped, or no name of a member.
    const char* end = key.raw();
    while (*end != '"') end += *end == '\\' ? 2 : 1;
    const std::string_view quoted(key.raw() - 1, static_cast<std::size_t>(end - key.raw()) + 2);
    const auto name = parsed(quoted).template get<std::string>();
    return static_cast<std::size_t>(std::find(m_names.begin(), m_names.end(), name) - m_names.begin());
  }

  [[nodiscard]] std::string_view required(std::size_t index) const {
    if (has(index)) return m_tokens[index];
    throw JsonError(fmt::format("key \"{}\" is missing", m_names[index]));
  }

  [[noreturn]] void throwExpected(std::size_t index, std::string_view expected) const {
    throw JsonError(fmt::format("\"{}\" must be {}", m_names[index], expected));
  }

  const std::array<std::string_view, count>& m_names;
  std::array<std::string_view, count> m_tokens;
  std::size_t m_expected = 0;
};

namespace runs {
enum : std::size_t { runId, timestamp, itemCount, totalBytes, isRestored };
constexpr std::array<std::string_view, 5> names{"runId", "timestamp", "itemCount", "totalBytes", "isRestored"};
}  // namespace runs

namespace entries {
enum : std::size_t { id, runId, timestamp, originalURL, trashedURL, fileSize, checksum, action };
constexpr std::array<std::string_view, 8> names{"id",         "runId",    "timestamp", "originalURL",
                                                "trashedURL", "fileSize", "checksum",  "action"};
}  // namespace entries

}  // namespace

// Reads the objects of a piece of a list.
class JournalParser::Elements {
 public:
  // `list` begins with "[" and ends with "]"; the library may look at `capacity` bytes from its beginning.
  template <typename TakeObject>
  void forEach(std::string_view list, std::size_t capacity, TakeObject takeObject) {
    std::size_t count = 0;
    auto document = m_parser.iterate(simdjson::padded_string_view(list, capacity));
    for (auto element : document.get_array()) {
      takeObject(*this, element.get_object().value());
      ++count;
    }
    if (count == 0) throwInvalid("a list ends with a comma");
  }

  [[nodiscard]] CleanupRunSummary run(simdjson::ondemand::object object) {
    m_run.read(object);
    return {m_run.uuid(runs::runId), m_run.date(runs::timestamp), m_run.integer(runs::itemCount),
            m_run.integer(runs::totalBytes), m_run.boolean(runs::isRestored)};
  }

  [[nodiscard]] JournalEntry entry(simdjson::ondemand::object object) {
    m_entry.read(object);
    const auto action = journalActions.find(m_entry.string(entries::action));
    if (!action) throw JsonError(fmt::format("unknown \"action\" {}", m_entry.string(entries::action)));
    return {m_entry.uuid(entries::id),
            m_entry.uuid(entries::runId),
            m_entry.date(entries::timestamp),
            m_entry.url(entries::originalURL),
            m_entry.url(entries::trashedURL),
            m_entry.integer(entries::fileSize),
            m_entry.has(entries::checksum) ? std::optional(m_entry.string(entries::checksum)) : std::nullopt,
            *action};
  }

 private:
  simdjson::ondemand::parser m_parser;
  Members<runs::names.size()> m_run{runs::names};
  Members<entries::names.size()> m_entry{entries::names};
};

JournalParser::JournalParser(Source source)
    : m_source(std::move(source)),
      m_elements(std::make_unique<Elements>()),
      m_buffer(initialBuffer + simdjson::SIMDJSON_PADDING, ' ') {}

JournalParser::~JournalParser() = default;

void JournalParser::parse(JournalVisitor& visitor) {
  try {
    parseRoot(visitor);
  } catch (const simdjson::simdjson_error& error) {
    throwInvalid(error.what());
  }
}

void JournalParser::parseRoot(JournalVisitor& visitor) {
  static_cast<void>(peek());
  if (std::string_view(m_buffer).substr(m_position, m_end - m_position).starts_with(byteOrderMark)) {
    m_position += byteOrderMark.size();
  }
  bool hasRuns = false;
  bool hasEntries = false;
  forEachMember([&](const std::string& name) {
    if (name == "runs") {
      hasRuns = true;
      parseRuns(visitor);
    } else if (name == "entries") {
      hasEntries = true;
      parseEntries(visitor);
    } else {
      checkValue();
    }
  });
  if (!hasRuns || !hasEntries) throw JsonError(fmt::format("key \"{}\" is missing", hasRuns ? "entries" : "runs"));
  // A disk that lost its power may have filled the end with zeros.
  if (peek() != '\0') throwInvalid("more stands after its end");
}

void JournalParser::parseRuns(JournalVisitor& visitor) {
  if (peek() != '[') throw JsonError("\"runs\" must be an array");
  forEachObject([&](Elements& elements, simdjson::ondemand::object object) { visitor.takeRun(elements.run(object)); });
}

void JournalParser::parseEntries(JournalVisitor& visitor) {
  if (peek() != '{') throw JsonError("\"entries\" must be an object");
  forEachMember([&](const std::string& name) {
    const auto runId = Uuid::parse(name);
    if (!runId) {
      checkValue();
      return;
    }
    if (peek() != '[') throw JsonError("each value of \"entries\" must be an array");
    forEachObject([&](Elements& elements, simdjson::ondemand::object object) {
      visitor.takeEntry(*runId, elements.entry(object));
    });
  });
}

template <typename TakeObject>
void JournalParser::forEachObject(TakeObject takeObject) {
  expect('[', "a list");
  ++m_depth;
  if (peek() == ']') {
    ++m_position;
    --m_depth;
    return;
  }
  m_kept = m_position;
  for (bool atEnd = false; !atEnd;) {
    skipValue();
    atEnd = m_buffer[m_position] != ',';
    if (!atEnd && m_position - m_kept < batchBytes) {
      ++m_position;
      continue;
    }
    if (atEnd && m_buffer[m_position] != ']') throwInvalid("a list does not end with a bracket");
    // The characters around the objects were read already, so a list can be made of them where they stand.
    m_buffer[m_kept - 1] = '[';
    m_buffer[m_position] = ']';
    const std::string_view list(m_buffer.data() + m_kept - 1, m_position - m_kept + 2);
    m_elements->forEach(list, m_buffer.size() - (m_kept - 1), takeObject);
    m_kept = ++m_position;
  }
  --m_depth;
}

template <typename TakeMember>
void JournalParser::forEachMember(TakeMember takeMember) {
  expect('{', "an object");
  ++m_depth;
  if (peek() == '}') {
    ++m_position;
  } else {
    char separator = ',';
    while (separator == ',') {
      const std::string name = key();
      expect(':', "a name");
      static_cast<void>(peek());
      takeMember(name);
      separator = next();
    }
    if (separator != '}') throwInvalid("an object does not end with a brace");
  }
  --m_depth;
}

// A value that nobody asked for.
void JournalParser::checkValue() {
  static_cast<void>(peek());
  skipValue();
  static_cast<void>(parsed(std::string_view(m_buffer).substr(m_kept, m_position - m_kept)));
}

// The next character that is no white space; NUL at the end of the text. Drops the text before it.
char JournalParser::peek() {
  for (;; ++m_position) {
    m_kept = m_position;
    if (m_position == m_end && !fill()) return '\0';
    if (!isSpace(m_buffer[m_position])) break;
  }
  m_kept = m_position;
  return m_buffer[m_position];
}

char JournalParser::next() {
  const char c = peek();
  if (m_position < m_end) ++m_position;
  return c;
}

void JournalParser::expect(char wanted, const char* context) {
  if (next() != wanted) throwInvalid(fmt::format("'{}' is missing at {}", wanted, context));
}

std::string JournalParser::key() {
  if (peek() != '"') throwInvalid("the name of a member is missing");
  skipString();
  return parsed(std::string_view(m_buffer).substr(m_kept, m_position - m_kept)).get<std::string>();
}

// Goes to the comma or bracket that ends the value, past all that is nested in it.
void JournalParser::skipValue() {
  int depth = 0;
  while (m_position < m_end || fill()) {
    switch (m_buffer[m_position]) {
      case '"':
        skipString();
        continue;
      case '{':
      case '[':
        if (m_depth + ++depth > limits.depth) {
          throw JsonError(fmt::format("JSON is nested deeper than {} levels", limits.depth));
        }
        break;
      case '}':
      case ']':
        if (depth-- == 0) return;
        break;
      case ',':
        if (depth == 0) return;
        break;
      default:
        break;
    }
    ++m_position;
  }
  throwInvalid("it ends in the middle");
}

// From an opening quote to behind the closing one.
void JournalParser::skipString() {
  ++m_position;
  while (m_position < m_end || fill()) {
    const char* const end = m_buffer.data() + m_end;
    const char* place = m_buffer.data() + m_position;
    while (place != end && *place != '"' && *place != '\\') ++place;
    m_position = static_cast<std::size_t>(place - m_buffer.data());
    if (place == end) continue;
    ++m_position;
    if (*place == '"') return;
    if (m_position == m_end && !fill()) break;
    ++m_position;
  }
  throwInvalid("it ends in the middle");
}

// Reads on; false at the end of the text. The kept text moves to the front, behind one free character.
bool JournalParser::fill() {
  const std::size_t kept = m_end - m_kept;
  std::copy(m_buffer.begin() + static_cast<std::ptrdiff_t>(m_kept),
            m_buffer.begin() + static_cast<std::ptrdiff_t>(m_end), m_buffer.begin() + 1);
  m_position -= m_kept - 1;
  m_kept = 1;
  m_end = kept + 1;
  auto room = m_buffer.size() - simdjson::SIMDJSON_PADDING - m_end;
  if (room < initialBuffer / 4) {
    m_buffer.resize(2 * m_buffer.size(), ' ');
    room = m_buffer.size() - simdjson::SIMDJSON_PADDING - m_end;
  }
  const auto count = m_source(m_buffer.data() + m_end, room);
  m_end += count;
  return count > 0;
}

}  // namespace orvane
