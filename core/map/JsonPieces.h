#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace orvane {

// Reads JSON (RFC 8259) piece by piece, of any length and depth in the same memory. Texts may hold bytes that are not
// UTF-8, as names do in the files of other programs. The input may come from anybody.
class JsonPieces {
 public:
  // Fills the place and returns how much, zero at the end.
  using Source = std::function<std::size_t(std::span<char> place)>;
  enum class Kind : std::uint8_t { openArray, closeArray, openObject, closeObject, key, text, number, word, end };
  struct Piece {
    Kind kind = Kind::end;
    std::string text = {};    // of a key, a text, or "true", "false", "null"
    std::int64_t number = 0;  // its whole part, held within the range
  };

  explicit JsonPieces(Source source) : m_source(std::move(source)) {}
  // Throws JsonError where the text is no JSON.
  [[nodiscard]] Piece next();
  // Passes over the value that begins with a piece just read.
  void skip(const Piece& first);

 private:
  // The pieces that may come: the state of the innermost open array or object.
  enum class Expected : std::uint8_t { first, value, keyOrEnd, key, colon, commaOrEnd };
  int peek();
  int take();
  void skipSpace();
  Piece value();
  Piece close(char sign);
  std::string readText();
  void appendEscape(std::string& text);
  unsigned hexDigits();
  Piece readNumber();
  Piece readWord();
  void ended();

  Source m_source;
  std::string m_buffer = std::string(65536, '\0');
  std::size_t m_position = 0;
  std::size_t m_size = 0;
  std::string m_open;  // the signs of what is open, "[" or "{"
  Expected m_expected = Expected::value;
  bool m_isAfterDocument = false;
};

}  // namespace orvane
