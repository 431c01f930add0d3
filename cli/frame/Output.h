#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace orvane::cli {

// Standard output cannot be written. A pipe that nobody reads any more is the ordinary end of `orvanectl ... | head`.
class OutputError : public std::runtime_error {
 public:
  explicit OutputError(int error);
  [[nodiscard]] bool isClosedPipe() const noexcept;

 private:
  int m_error;
};

// Standard output, for data alone. Text is held back until flush() or until enough has come together.
class Output {
 public:
  explicit Output(int descriptor) noexcept : m_descriptor(descriptor) {}

  // For texts that are built in place; call settle() after each piece.
  [[nodiscard]] std::string& buffer() noexcept { return m_buffer; }
  // Writes when enough has come together. Throws OutputError.
  void settle();
  // Throw OutputError.
  void write(std::string_view text);
  void line(std::string_view text);
  void flush();

 private:
  int m_descriptor;
  std::string m_buffer;
};

}  // namespace orvane::cli
