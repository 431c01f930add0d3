#include "cli/frame/Output.h"

#include "core/base/files/FileDescriptor.h"

#include <cerrno>
#include <system_error>

namespace orvane::cli {
namespace {

constexpr std::size_t flushBytes = 64 * 1024;

}  // namespace

OutputError::OutputError(int error)
    : std::runtime_error("standard output cannot be written: " + errorText(error)), m_error(error) {}

bool OutputError::isClosedPipe() const noexcept {
  return m_error == EPIPE;
}

void Output::settle() {
  if (m_buffer.size() >= flushBytes) flush();
}

void Output::write(std::string_view text) {
  m_buffer += text;
  settle();
}

void Output::line(std::string_view text) {
  m_buffer += text;
  m_buffer += '\n';
  settle();
}

void Output::flush() {
  if (m_buffer.empty()) return;
  try {
    writeAll(m_descriptor, m_buffer);
    m_buffer.clear();
  } catch (const std::system_error& error) {
    // Nothing is tried twice.
    m_buffer.clear();
    throw OutputError(error.code().value());
  }
}

}  // namespace orvane::cli
