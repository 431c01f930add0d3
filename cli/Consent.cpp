#include "cli/Consent.h"

#include "cli/Arguments.h"
#include "cli/Session.h"
#include "cli/UsageError.h"
#include "core/base/FileDescriptor.h"
#include "core/base/UnicodeText.h"

#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <functional>
#include <stop_token>
#include <string>

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

Answer answerOf(std::string_view line) {
  const auto word = lowercased(trimmed(line));
  return word == "y" || word == "yes" ? Answer::yes : Answer::no;
}

Answer readAnswer(const std::stop_token& stop) {
  const StopPipe stopped(stop);
  std::string line;
  while (true) {
    std::array<pollfd, 2> waited{{{STDIN_FILENO, POLLIN, 0}, {stopped.descriptor(), POLLIN, 0}}};
    if (::poll(waited.data(), waited.size(), -1) < 0) {
      if (errno == EINTR) continue;
      throwErrno();
    }
    if (waited[1].revents != 0) return Answer::interrupted;
    char byte = 0;
    const auto count = ::read(STDIN_FILENO, &byte, 1);
    if (count < 0 && errno == EINTR) continue;
    // Without the end of a line nobody has said yes to the end.
    if (count <= 0) return Answer::no;
    if (byte == '\n') return answerOf(line);
    line.push_back(byte);
  }
}

}  // namespace

void requireConsentPossible(const Arguments& arguments) {
  if (arguments.has("--yes") || Session::canAsk()) return;
  throw UsageError("this changes files, and nobody can be asked here: add --yes to go ahead");
}

Answer askConsent(Session& session, const Arguments& arguments, std::string_view question) {
  if (arguments.has("--yes")) return Answer::yes;
  const auto stop = session.stop();
  session.out().flush();
  writeAll(STDERR_FILENO, fmt::format("{} [y/N] ", question));
  const auto answer = readAnswer(stop);
  if (answer == Answer::interrupted) Session::tell("");
  return answer;
}

}  // namespace orvane::cli
