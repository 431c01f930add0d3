#include "platform/linux/AutostartEntry.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"
#include "platform/linux/ConfigurationFolder.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

namespace orvane {
namespace {

constexpr std::size_t maxEntryBytes = 64 * 1024;

// An argument of "Exec" in double quotes. Backslashes are doubled once for the quoting and once more for the string.
std::string quoted(std::string_view argument) {
  std::string text = "\"";
  for (const char c : argument) {
    if (c == '\\') {
      text += "\\\\\\\\";
    } else if (c == '"' || c == '`' || c == '$') {
      text += "\\\\";
      text += c;
    } else if (c == '%') {
      text += "%%";
    } else {
      text += c;
    }
  }
  return text + "\"";
}

bool hasLine(std::string_view text, std::string_view wanted) {
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    if (text.substr(0, end) == wanted) return true;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return false;
}

}  // namespace

AutostartEntry::AutostartEntry(std::string path, std::string executable)
    : m_path(std::move(path)), m_executable(std::move(executable)) {}

std::string AutostartEntry::defaultPath() {
  return joinPath(configurationFolder(), "autostart/orvane.desktop");
}

bool AutostartEntry::isEnabled() const {
  try {
    const auto text = readFile(m_path, maxEntryBytes);
    return !hasLine(text, "Hidden=true") && !hasLine(text, "X-GNOME-Autostart-enabled=false");
  } catch (const std::system_error&) {
    return false;
  }
}

void AutostartEntry::setEnabled(bool isEnabled) {
  if (!isEnabled) {
    if (::unlink(m_path.c_str()) != 0 && errno != ENOENT) throwErrno();
    return;
  }
  if (m_executable.find_first_of(std::string_view("\n\r\0", 3)) != std::string::npos) throwErrno(EINVAL);
  createFolders(std::string(parentPath(m_path)));
  AtomicFile::replace(
      m_path,
      fmt::format("[Desktop Entry]\nType=Application\nName=Orvane\nExec={}\nTerminal=false\n", quoted(m_executable)),
      0644);
}

}  // namespace orvane
