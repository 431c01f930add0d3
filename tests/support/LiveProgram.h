#pragma once

#include "core/base/files/FileDescriptor.h"
#include "tests/support/ChildProcess.h"

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::test {

// A program that runs beside the test, which can talk to it, wait for what it says and send it signals. One that is
// still running at the end is killed.
class LiveProgram {
 public:
  enum class Terminal : std::uint8_t { none, all };  // all: the three standard streams are one pseudo-terminal
  enum class User : std::uint8_t { own, nobody };    // nobody: only where the test runs as root
  struct Setup {
    std::vector<std::string> arguments;              // the first is the program's path
    std::map<std::string, std::string> environment;  // the whole of it
    std::string workingFolder = "/";
    Terminal terminal = Terminal::none;
    User user = User::own;
    std::vector<int> closedDescriptors = {};
  };

  explicit LiveProgram(const Setup& setup);
  ~LiveProgram();
  LiveProgram(const LiveProgram&) = delete;
  LiveProgram& operator=(const LiveProgram&) = delete;

  void send(std::string_view text);
  void closeInput();
  // Throws std::runtime_error when the program ends without having said it.
  void waitForOutput(std::string_view text);
  void signal(int number);
  // Returns when the program has taken every signal that was sent to it.
  void waitForSignalsTaken();
  [[nodiscard]] pid_t id() const noexcept { return m_id; }
  // Closes the input, reads everything and waits for the end.
  ChildResult finish();

 private:
  [[noreturn]] static void becomeProgram(const Setup& setup);
  // False when everything has been read.
  bool readMore();

  pid_t m_id = -1;
  FileDescriptor m_input;
  FileDescriptor m_output;
  FileDescriptor m_errors;
  ChildResult m_result;
};

}  // namespace orvane::test
