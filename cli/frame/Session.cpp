#include "cli/frame/Session.h"

#include "cli/frame/Arguments.h"
#include "core/base/files/FileDescriptor.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>

namespace orvane::cli {
namespace {

bool isCapableTerminal(int descriptor) {
  const char* kind = std::getenv("TERM");
  return ::isatty(descriptor) == 1 && kind != nullptr && std::string_view(kind) != "dumb";
}

bool colourIsWanted() {
  const char* refusal = std::getenv("NO_COLOR");
  return refusal == nullptr || *refusal == '\0';
}

}  // namespace

Session::Session(const Arguments& arguments)
    : m_format(arguments.has("--json") ? OutputFormat::json : OutputFormat::text),
      m_showsProgress(!arguments.has("--no-progress") && isCapableTerminal(STDERR_FILENO)),
      m_usesColour(m_format == OutputFormat::text && colourIsWanted() && isCapableTerminal(STDOUT_FILENO)),
      m_out(STDOUT_FILENO) {}

void Session::report(std::string_view text) noexcept {
  try {
    tell(fmt::format("orvanectl: {}", text));
  } catch (const std::exception&) {
    // Out of memory for a message: there is no better place to say so.
  }
}

void Session::tell(std::string_view text) noexcept {
  try {
    writeAll(STDERR_FILENO, fmt::format("{}\n", text));
  } catch (const std::exception&) {
    // Nobody reads the messages; the work goes on.
  }
}

std::stop_token Session::stop() {
  if (!m_interruption) m_interruption.emplace();
  return m_interruption->token();
}

bool Session::canAsk() noexcept {
  return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1;
}

}  // namespace orvane::cli
