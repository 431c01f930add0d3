#include "cli/frame/InputLine.h"

#include "core/base/files/FileDescriptor.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <functional>

namespace orvane::cli {
namespace {

// Readable once a stop is requested, for poll(2).
class StopPipe {
 public:
  explicit StopPipe(const std::stop_token& stop) : StopPipe(stop, openPipe()) {}
  [[nodiscard]] int descriptor() const noexcept { return m_readEnd.get(); }

 private:
  using Ends = std::array<int, 2>;
  static Ends openPipe() {
    Ends ends{};
    if (::pipe(ends.data()) != 0) throwErrno();
    return ends;
  }
  StopPipe(const std::stop_token& stop, const Ends& ends)
      : m_readEnd(ends[0]), m_writeEnd(ends[1]), m_callback(stop, [this] { m_writeEnd.reset(); }) {}

  FileDescriptor m_readEnd;
  FileDescriptor m_writeEnd;
  std::stop_callback<std::function<void()>> m_callback;
};

}  // namespace

LineEnd readLine(std::string& line, const std::stop_token& stop) {
  const StopPipe stopped(stop);
  line.clear();
  while (line.size() < maxLineBytes) {
    std::array<pollfd, 2> waited{{{STDIN_FILENO, POLLIN, 0}, {stopped.descriptor(), POLLIN, 0}}};
    if (::poll(waited.data(), waited.size(), -1) < 0) {
      if (errno == EINTR) continue;
      throwErrno();
    }
    if (waited[1].revents != 0) return LineEnd::interrupted;
    char byte = 0;
    const auto count = ::read(STDIN_FILENO, &byte, 1);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return LineEnd::endOfInput;
    if (byte == '\n') return LineEnd::complete;
    line.push_back(byte);
  }
  return LineEnd::endOfInput;
}

}  // namespace orvane::cli
