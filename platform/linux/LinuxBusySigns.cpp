#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"
#include "platform/linux/LinuxProfile.h"
#include "platform/linux/OpenFiles.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <functional>
#include <optional>
#include <system_error>

namespace orvane {
namespace {

constexpr std::size_t maxSignBytes = 256 * 1024;
constexpr std::chrono::seconds lookAtProcessesAgain{1};

bool isRunning(pid_t process) noexcept {
  return process > 0 && (::kill(process, 0) == 0 || errno == EPERM);
}

std::optional<pid_t> processIn(std::string_view text) noexcept {
  pid_t process = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), process);
  if (end.ec != std::errc() || process <= 0) return std::nullopt;
  return process;
}

// A link that names its process: "host-123", "127.0.1.1:+123".
bool linkNamesRunningProcess(const std::string& path) {
  std::array<char, 512> target{};
  const auto length = ::readlink(path.c_str(), target.data(), target.size());
  if (length <= 0) return false;
  const std::string_view text(target.data(), static_cast<std::size_t>(length));
  const auto process = processIn(text.substr(text.find_last_of("-+") + 1));
  return process && isRunning(*process);
}

bool fileNamesRunningProcess(int file) {
  std::array<char, 32> text{};
  const auto length = ::pread(file, text.data(), text.size(), 0);
  const auto process = processIn({text.data(), length > 0 ? static_cast<std::size_t>(length) : 0});
  return process && isRunning(*process);
}

bool isMark(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return errno == EACCES;
  if (S_ISLNK(status.st_mode)) return linkNamesRunningProcess(path);
  if (!S_ISREG(status.st_mode)) return false;
  if (isLocked(path)) return true;
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
  if (!file) return errno == EACCES;
  // Programs may share it among them. The lock, if it was free, goes with the descriptor.
  if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return true;
  return fileNamesRunningProcess(file.get());
}

// Whether `tells` holds for a line of the file.
bool anyLine(const std::string& path, const std::function<bool(std::string_view line)>& tells) {
  std::string text;
  try {
    text = readFile(path, maxSignBytes);
  } catch (const std::system_error& error) {
    return error.code() == std::errc::permission_denied;
  }
  for (std::string_view rest = text; !rest.empty();) {
    const auto end = std::min(rest.find('\n'), rest.size());
    if (tells(rest.substr(0, end))) return true;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return false;
}

// Of Firefox: "Path" is absolute, or relative to the list.
bool hasRunningProfile(const std::string& list) {
  constexpr std::string_view key = "Path=";
  return anyLine(list, [&](std::string_view line) {
    if (!line.starts_with(key)) return false;
    const auto named = line.substr(key.size());
    const auto profile = named.starts_with('/') ? std::string(named) : joinPath(parentPath(list), named);
    return isMark(joinPath(profile, "lock")) || isMark(joinPath(profile, ".parentlock"));
  });
}

// Flatpak keeps a folder for each sandbox: what runs in it, and a file that stays locked until its last process ends.
bool describesRunning(const std::string& description, std::string_view program) {
  const auto name = fmt::format("name={}", program);
  return anyLine(description, [&](std::string_view line) { return line == name; }) &&
         isLocked(joinPath(parentPath(description), ".ref"));
}

// As snapd names the groups: "snap.NAME.APPLICATION".
bool isInGroupOf(const std::string& groups, std::string_view program) {
  const auto name = fmt::format("/snap.{}.", program);
  return anyLine(groups, [&](std::string_view line) { return line.find(name) != std::string_view::npos; });
}

}  // namespace

bool LinuxProfile::hasOpenFiles(const std::string& path) const {
  const std::lock_guard lock(m_openPathsMutex);
  const auto now = std::chrono::steady_clock::now();
  if (!m_openPathsRead || now - *m_openPathsRead >= lookAtProcessesAgain) {
    m_openPaths = OpenPaths::read();
    m_openPathsRead = now;
  }
  return m_openPaths.areAtOrBelow(path);
}

bool LinuxProfile::isBusySign(const std::string& path, BusySign::Check check, std::string_view program) const {
  switch (check) {
    case BusySign::Check::mark:
      return isMark(path);
    case BusySign::Check::profiles:
      return hasRunningProfile(path);
    case BusySign::Check::sandbox:
      return describesRunning(path, program);
    case BusySign::Check::groups:
      return isInGroupOf(path, program);
  }
  return false;
}

}  // namespace orvane
