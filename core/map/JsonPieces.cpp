#include "core/map/JsonPieces.h"

#include "core/base/text/HexDigit.h"
#include "core/base/text/Json.h"

#include <limits>
#include <utility>

namespace orvane {
namespace {

// No name of any file system is longer, and nothing else matters.
constexpr std::size_t maxTextBytes = 65536;
constexpr std::size_t deepest = 1'000'000;

[[noreturn]] void refuse(const char* what) {
  throw JsonError(what);
}

void appendUtf8(std::string& text, unsigned code) {
  const auto add = [&](unsigned byte) { text.push_back(static_cast<char>(byte)); };
  if (code < 0x80) return add(code);
  if (code < 0x800) {
    add(0xC0 | (code >> 6));
  } else if (code < 0x10000) {
    add(0xE0 | (code >> 12));
    add(0x80 | ((code >> 6) & 0x3F));
  } else {
    add(0xF0 | (code >> 18));
    add(0x80 | ((code >> 12) & 0x3F));
    add(0x80 | ((code >> 6) & 0x3F));
  }
  add(0x80 | (code & 0x3F));
}

}  // namespace

int JsonPieces::peek() {
  if (m_position == m_size) {
    m_size = m_source(std::span(m_buffer));
    m_position = 0;
    if (m_size == 0) return -1;
  }
  return static_cast<unsigned char>(m_buffer[m_position]);
}

int JsonPieces::take() {
  const int sign = peek();
  if (sign >= 0) ++m_position;
  return sign;
}

void JsonPieces::skipSpace() {
  for (int sign = peek(); sign == ' ' || sign == '\n' || sign == '\r' || sign == '\t'; sign = peek()) ++m_position;
}

void JsonPieces::ended() {
  m_expected = Expected::commaOrEnd;
  m_isAfterDocument = m_open.empty();
}

JsonPieces::Piece JsonPieces::next() {
  skipSpace();
  if (m_isAfterDocument) {
    if (peek() >= 0) refuse("text after the JSON document");
    return {};
  }
  if (m_expected == Expected::commaOrEnd) {
    const int sign = take();
    if (sign == ']' || sign == '}') return close(static_cast<char>(sign));
    if (sign != ',') refuse("a comma is missing in the JSON text");
    m_expected = m_open.back() == '{' ? Expected::key : Expected::value;
    skipSpace();
  }
  if (m_expected == Expected::first && peek() == ']') return close(static_cast<char>(take()));
  if (m_expected == Expected::keyOrEnd && peek() == '}') return close(static_cast<char>(take()));
  if (m_expected == Expected::key || m_expected == Expected::keyOrEnd) {
    if (take() != '"') refuse("a key is missing in the JSON text");
    Piece piece{Kind::key, readText()};
    skipSpace();
    if (take() != ':') refuse("a colon is missing in the JSON text");
    m_expected = Expected::value;
    return piece;
  }
  return value();
}

JsonPieces::Piece JsonPieces::close(char sign) {
  const char opened = sign == ']' ? '[' : '{';
  if (m_open.empty() || m_open.back() != opened) refuse("brackets of the JSON text do not match");
  m_open.pop_back();
  ended();
  return {sign == ']' ? Kind::closeArray : Kind::closeObject};
}

JsonPieces::Piece JsonPieces::value() {
  const int sign = peek();
  if (sign == '[' || sign == '{') {
    if (m_open.size() == deepest) refuse("the JSON text is too deep");
    m_open.push_back(static_cast<char>(take()));
    m_expected = sign == '[' ? Expected::first : Expected::keyOrEnd;
    return {sign == '[' ? Kind::openArray : Kind::openObject};
  }
  Piece piece;
  if (sign == '"') {
    ++m_position;
    piece = {Kind::text, readText()};
  } else if (sign == '-' || (sign >= '0' && sign <= '9')) {
    piece = readNumber();
  } else {
    piece = readWord();
  }
  ended();
  return piece;
}

unsigned JsonPieces::hexDigits() {
  unsigned code = 0;
  for (int digit = 0; digit < 4; ++digit) {
    const auto value = hexValue(static_cast<char>(take()));
    if (value < 0) refuse("an escape of the JSON text is cut");
    code = code * 16 + static_cast<unsigned>(value);
  }
  return code;
}

void JsonPieces::appendEscape(std::string& text) {
  const int sign = take();
  switch (sign) {
    case 'n':
      return text.push_back('\n');
    case 't':
      return text.push_back('\t');
    case 'r':
      return text.push_back('\r');
    case 'b':
      return text.push_back('\b');
    case 'f':
      return text.push_back('\f');
    case '"':
    case '\\':
    case '/':
      return text.push_back(static_cast<char>(sign));
    case 'u':
      break;
    default:
      refuse("an escape of the JSON text is unknown");
  }
  unsigned code = hexDigits();
  if (code >= 0xD800 && code < 0xDC00) {
    if (take() != '\\' || take() != 'u') refuse("half a character in the JSON text");
    const auto low = hexDigits();
    if (low < 0xDC00 || low > 0xDFFF) refuse("half a character in the JSON text");
    code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
  }
  appendUtf8(text, code);
}

std::string JsonPieces::readText() {
  std::string text;
  for (int sign = take(); sign != '"'; sign = take()) {
    if (sign < 0) refuse("the JSON text ends early");
    if (text.size() > maxTextBytes) refuse("a text of the JSON text is too long");
    if (sign == '\\') {
      appendEscape(text);
    } else {
      text.push_back(static_cast<char>(sign));
    }
  }
  return text;
}

JsonPieces::Piece JsonPieces::readNumber() {
  const bool isNegative = peek() == '-';
  if (isNegative) ++m_position;
  std::int64_t whole = 0;
  const auto isDigit = [&] { return peek() >= '0' && peek() <= '9'; };
  if (!isDigit()) refuse("a number of the JSON text has no digit");
  while (isDigit()) {
    const int digit = take() - '0';
    if (__builtin_mul_overflow(whole, 10, &whole) || __builtin_add_overflow(whole, digit, &whole)) {
      whole = std::numeric_limits<std::int64_t>::max();
    }
  }
  // A fraction and an exponent, which no size has.
  while (isDigit() || peek() == '.' || peek() == 'e' || peek() == 'E' || peek() == '+' || peek() == '-') ++m_position;
  return {Kind::number, {}, isNegative ? -whole : whole};
}

JsonPieces::Piece JsonPieces::readWord() {
  std::string word;
  while (peek() >= 'a' && peek() <= 'z' && word.size() < 6) word.push_back(static_cast<char>(take()));
  if (word != "true" && word != "false" && word != "null") refuse("a value of the JSON text is none");
  return {Kind::word, std::move(word)};
}

void JsonPieces::skip(const Piece& first) {
  if (first.kind != Kind::openArray && first.kind != Kind::openObject) return;
  const auto depth = m_open.size() - 1;
  while (m_open.size() > depth) {
    if (next().kind == Kind::end) refuse("the JSON text ends early");
  }
}

}  // namespace orvane
