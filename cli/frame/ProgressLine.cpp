#include "cli/frame/ProgressLine.h"

#include "cli/frame/Session.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/text/UnicodeText.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <exception>

namespace orvane::cli {
namespace {

constexpr auto interval = std::chrono::milliseconds(100);
constexpr std::string_view toLineStart = "\r\x1b[K";

int terminalColumns() {
  winsize size{};
  if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  return 80;
}

void draw(std::string_view text) noexcept {
  try {
    writeAll(STDERR_FILENO, text);
  } catch (const std::exception&) {
    // A terminal that went away is no reason to stop the work.
  }
}

}  // namespace

ProgressLine::ProgressLine(const Session& session) noexcept : m_shows(session.showsProgress()) {}

ProgressLine::~ProgressLine() {
  clear();
}

void ProgressLine::update(const std::function<std::string()>& text) {
  if (!m_shows) return;
  const auto now = std::chrono::steady_clock::now();
  if (now < m_nextDrawing) return;
  m_nextDrawing = now + interval;
  m_isDrawn = true;
  // The last column stays free: some terminals wrap as soon as it is taken.
  draw(fmt::format("{}{}", toLineStart, fittedTo(text(), terminalColumns() - 1)));
}

void ProgressLine::clear() {
  if (!m_isDrawn) return;
  m_isDrawn = false;
  draw(toLineStart);
}

std::string fittedTo(std::string_view text, int columns) {
  if (displayWidth(text) <= columns) return std::string(text);
  std::size_t end = text.size();
  const auto isContinuation = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U; };
  while (end > 0 && displayWidth(text.substr(0, end)) > columns - 1) {
    --end;
    while (end > 0 && isContinuation(end)) --end;
  }
  return std::string(text.substr(0, end)) + "…";
}

}  // namespace orvane::cli
