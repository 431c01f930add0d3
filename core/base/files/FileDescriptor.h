#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace orvane {

// Owns one open file descriptor and closes it at the end.
class FileDescriptor {
 public:
  FileDescriptor() noexcept = default;
  explicit FileDescriptor(int descriptor) noexcept : m_descriptor(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    if (this != &other) reset(std::exchange(other.m_descriptor, -1));
    return *this;
  }
  ~FileDescriptor() { reset(); }

  [[nodiscard]] int get() const noexcept { return m_descriptor; }
  [[nodiscard]] explicit operator bool() const noexcept { return m_descriptor >= 0; }
  // Gives the descriptor up; the caller closes it.
  [[nodiscard]] int release() noexcept { return std::exchange(m_descriptor, -1); }
  void reset(int descriptor = -1) noexcept;

 private:
  int m_descriptor = -1;
};

// Writes all of `bytes`, going on after partial writes and signals. Throws std::system_error.
void writeAll(int descriptor, std::string_view bytes);
// Reads what there is, at most as much as `place` holds; zero at the end of the file. Throws std::system_error.
[[nodiscard]] std::size_t readSome(int descriptor, std::span<char> place);
// Reads to the end of the file. Throws std::system_error, with EFBIG when the file holds more than `limit` bytes.
[[nodiscard]] std::string readAll(int descriptor, std::size_t limit = static_cast<std::size_t>(-1));
// Opens a regular file for reading, never blocking on anything else that has the name. Throws std::system_error.
[[nodiscard]] FileDescriptor openRegularFile(const std::string& path);
// Reads a whole regular file, never blocking on anything else that has the name. Throws std::system_error.
[[nodiscard]] std::string readFile(const std::string& path, std::size_t limit = static_cast<std::size_t>(-1));

// The error of the last failed system call, `errno`, as an exception whose text is the system's.
[[noreturn]] void throwErrno();
[[noreturn]] void throwErrno(int error);
// The system's text for an error number.
[[nodiscard]] std::string errorText(int error);

}  // namespace orvane
