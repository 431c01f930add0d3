#include "core/base/text/Json.h"

#include "core/base/files/PathText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <vector>

namespace orvane {
namespace {

// Of the text that an error quotes: it is for people, and the text may be megabytes of anything.
constexpr std::size_t quotedBytes = 200;

// Deepest nesting of a text, before any of it is parsed. Brackets inside strings do not count.
int nestingOf(std::string_view text) {
  int depth = 0;
  int deepest = 0;
  bool inString = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (inString) {
      if (c == '\\') ++i;
      inString = c != '"';
    } else if (c == '"') {
      inString = true;
    } else if (c == '{' || c == '[') {
      deepest = std::max(deepest, ++depth);
    } else if (c == '}' || c == ']') {
      --depth;
    }
  }
  return deepest;
}

// Refuses duplicate keys, and more keys than are allowed, while the text is being read.
class KeyChecker {
 public:
  explicit KeyChecker(std::size_t keysPerObject) : m_keysPerObject(keysPerObject) {}

  bool operator()(int /*depth*/, Json::parse_event_t event, Json& parsed) {
    using Event = Json::parse_event_t;
    if (event == Event::object_start) m_keys.emplace_back();
    if (event == Event::object_end) m_keys.pop_back();
    if (event == Event::key) {
      const auto& key = parsed.get_ref<const std::string&>();
      if (!m_keys.back().insert(key).second) {
        throw JsonError(fmt::format("JSON key \"{}\" stands twice", shortenedToBytes(key, quotedBytes)));
      }
      if (m_keys.back().size() > m_keysPerObject) {
        throw JsonError(fmt::format("a JSON object has more than {} keys", m_keysPerObject));
      }
    }
    return true;
  }

 private:
  std::size_t m_keysPerObject;
  std::vector<std::set<std::string>> m_keys;
};

void requireWithin(std::string_view text, const JsonLimits& limits) {
  if (text.size() > limits.bytes) {
    throw JsonError(fmt::format("JSON is longer than {} bytes", limits.bytes));
  }
  if (nestingOf(text) > limits.depth) {
    throw JsonError(fmt::format("JSON is nested deeper than {} levels", limits.depth));
  }
}

[[noreturn]] void throwInvalid(const Json::exception& error) {
  // The library's text starts with its own identifier in brackets.
  std::string_view message = error.what();
  if (const auto end = message.find("] "); end != std::string_view::npos) message.remove_prefix(end + 2);
  throw JsonError(fmt::format("not valid JSON: {}", shortenedToBytes(message, quotedBytes)));
}

[[noreturn]] void throwExpected(std::string_view what, std::string_view expected) {
  throw JsonError(fmt::format("\"{}\" must be {}", what, expected));
}

struct DecodedCharacter {
  unsigned code;
  std::size_t length;  // bytes
};

// Of valid UTF-8, up to three bytes; of more the code does not matter.
DecodedCharacter codePointAt(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t offset) { return static_cast<unsigned char>(text[at + offset]); };
  if (byte(0) < 0x80) return {byte(0), 1};
  if (byte(0) < 0xE0) return {(byte(0) & 0x1FU) << 6U | (byte(1) & 0x3FU), 2};
  return {(byte(0) & 0x0FU) << 12U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU), 3};
}

// Characters that a terminal takes for a command or that reorder what stands beside them.
bool isHidden(unsigned code) {
  return (code >= 0x7F && code <= 0x9F) || code == 0x061C || code == 0x200E || code == 0x200F ||
         (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

// Where the next of them stands in valid UTF-8; npos where there is none.
std::size_t nextHidden(std::string_view text, std::size_t from) {
  // The first bytes that they can have.
  constexpr std::string_view beginnings = "\x7F\xC2\xD8\xE2";
  for (auto at = text.find_first_of(beginnings, from); at != std::string_view::npos;
       at = text.find_first_of(beginnings, at + 1)) {
    if (isHidden(codePointAt(text, at).code)) return at;
  }
  return std::string_view::npos;
}

}  // namespace

Json parseJson(std::string_view text, const JsonLimits& limits) {
  requireWithin(text, limits);
  try {
    if (limits.duplicateKeys == DuplicateKeys::takeFirst) return Json::parse(text);
    KeyChecker checker(limits.keysPerObject);
    return Json::parse(text, std::ref(checker));
  } catch (const Json::exception& error) {
    throwInvalid(error);
  }
}

Json parseJsonRows(std::string_view text, const JsonLimits& limits, std::string_view rows,
                   const std::function<void(const Json& row)>& visit) {
  requireWithin(text, limits);
  constexpr int rowDepth = 2;
  KeyChecker checker(limits.keysPerObject);
  bool isInRows = false;
  const auto look = [&](int depth, Json::parse_event_t event, Json& parsed) {
    if (!checker(depth, event, parsed)) return false;
    if (event == Json::parse_event_t::key && depth == 1) isInRows = parsed == rows;
    if (!isInRows || depth != rowDepth) return true;
    if (event == Json::parse_event_t::value || event == Json::parse_event_t::array_end) {
      throw JsonError(fmt::format("\"{}\" must be an array of objects", rows));
    }
    if (event != Json::parse_event_t::object_end) return true;
    visit(parsed);
    return false;
  };
  try {
    return Json::parse(text, look);
  } catch (const Json::exception& error) {
    throwInvalid(error);
  }
}

// Escapes too what a terminal would take for a command.
std::string jsonText(const Json& value) {
  auto text = value.dump(-1, ' ', false, Json::error_handler_t::replace);
  auto at = nextHidden(text, 0);
  if (at == std::string::npos) return text;
  std::string escaped;
  std::size_t written = 0;
  for (; at != std::string::npos; at = nextHidden(text, written)) {
    escaped.append(text, written, at - written);
    const auto [code, length] = codePointAt(text, at);
    escaped += fmt::format("\\u{:04x}", code);
    written = at + length;
  }
  return escaped.append(text, written);
}

const Json& requiredKey(const Json& value, std::string_view key) {
  const Json* found = optionalKey(value, key);
  if (found != nullptr) return *found;
  if (value.contains(key)) throw JsonError(fmt::format("\"{}\" must not be null", key));
  throw JsonError(fmt::format("key \"{}\" is missing", key));
}

const Json* optionalKey(const Json& value, std::string_view key) {
  if (!value.is_object()) throw JsonError(fmt::format("expected an object with the key \"{}\"", key));
  const auto found = value.find(key);
  return found == value.end() || found->is_null() ? nullptr : &*found;
}

std::string stringFrom(const Json& value, std::string_view what) {
  if (!value.is_string()) throwExpected(what, "a string");
  return value.get<std::string>();
}

std::int64_t integerFrom(const Json& value, std::string_view what) {
  if (value.is_number_unsigned()) {
    const auto number = value.get<std::uint64_t>();
    if (number > static_cast<std::uint64_t>(INT64_MAX)) throwExpected(what, "an integer of at most 64 bits");
    return static_cast<std::int64_t>(number);
  }
  if (value.is_number_integer()) return value.get<std::int64_t>();
  if (value.is_number_float()) {
    // 9223372036854775808 is the first double above the range.
    const double number = value.get<double>();
    if (std::trunc(number) == number && number >= -9223372036854775808.0 && number < 9223372036854775808.0) {
      return static_cast<std::int64_t>(number);
    }
  }
  throwExpected(what, "an integer of at most 64 bits");
}

Date dateFrom(const Json& value, std::string_view what) {
  if (!value.is_number()) throwExpected(what, "a number of seconds since 2001-01-01T00:00:00Z");
  const auto seconds = value.get<double>();
  if (!std::isfinite(seconds)) throwExpected(what, "a finite number");
  return dateFromReferenceSeconds(seconds);
}

std::string stringAt(const Json& value, std::string_view key) {
  return stringFrom(requiredKey(value, key), key);
}

std::int64_t integerAt(const Json& value, std::string_view key) {
  return integerFrom(requiredKey(value, key), key);
}

bool booleanAt(const Json& value, std::string_view key) {
  const auto& found = requiredKey(value, key);
  if (!found.is_boolean()) throwExpected(key, "true or false");
  return found.get<bool>();
}

Date dateAt(const Json& value, std::string_view key) {
  return dateFrom(requiredKey(value, key), key);
}

Uuid uuidAt(const Json& value, std::string_view key) {
  const auto uuid = Uuid::parse(stringAt(value, key));
  if (!uuid) throwExpected(key, "a UUID");
  return *uuid;
}

FileUrl urlAt(const Json& value, std::string_view key) {
  auto url = FileUrl::fromAbsoluteString(stringAt(value, key));
  if (!url) throwExpected(key, "a file URL with an absolute path");
  return *std::move(url);
}

Json jsonFromDate(Date date) {
  constexpr double maxExactInteger = 9007199254740992.0;  // 2^53
  const double seconds = referenceSeconds(date);
  const bool whole = std::trunc(seconds) == seconds && std::abs(seconds) < maxExactInteger;
  if (whole && !(seconds == 0 && std::signbit(seconds))) return static_cast<std::int64_t>(seconds);
  return seconds;
}

void appendJsonDate(std::string& text, Date date) {
  const Json value = jsonFromDate(date);
  if (value.is_number_integer()) {
    text += fmt::format_int(value.get<std::int64_t>()).c_str();
  } else {
    fmt::format_to(std::back_inserter(text), "{}", value.get<double>());
  }
}

Json jsonFromUuid(const Uuid& uuid) {
  return uuid.toString();
}

Json jsonFromUrl(const FileUrl& url) {
  return url.absoluteString();
}

std::vector<std::string> stringsFrom(const Json& value, std::string_view what) {
  if (!value.is_array()) throw JsonError(fmt::format("\"{}\" must be an array of strings", what));
  std::vector<std::string> result;
  result.reserve(value.size());
  for (const auto& element : value) result.push_back(stringFrom(element, what));
  return result;
}

std::vector<FileUrl> urlsAt(const Json& value, std::string_view key) {
  std::vector<FileUrl> result;
  for (const auto& text : stringsFrom(requiredKey(value, key), key)) {
    auto url = FileUrl::fromAbsoluteString(text);
    if (!url) throwExpected(key, "an array of file URLs");
    result.push_back(*std::move(url));
  }
  return result;
}

Json jsonFromUrls(std::span<const FileUrl> urls) {
  Json json = Json::array();
  for (const auto& url : urls) json.push_back(jsonFromUrl(url));
  return json;
}

}  // namespace orvane
