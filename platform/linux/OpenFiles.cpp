#include "platform/linux/OpenFiles.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <optional>

namespace orvane {
namespace {

// The open descriptors of a process; absent for one of another user.
std::optional<DirectoryReader> descriptorsOf(std::string_view process) {
  const auto folder = joinPath(joinPath("/proc", process), "fd");
  return DirectoryReader::open(AT_FDCWD, folder.c_str(), DirectoryReader::Links::refuse);
}

bool holds(std::string_view process, const struct stat& wanted) {
  auto reader = descriptorsOf(process);
  if (!reader) return false;
  while (const auto entry = reader->next()) {
    struct stat status {};
    if (::fstatat(reader->descriptor(), entry->nameBytes(), &status, 0) != 0) continue;
    if (status.st_dev == wanted.st_dev && status.st_ino == wanted.st_ino) return true;
  }
  return false;
}

// Adds the files that a process has open. What has no path in the file system begins with no slash.
void addOpenFiles(std::string_view process, std::vector<std::string>& paths) {
  std::array<char, PATH_MAX> target{};
  auto reader = descriptorsOf(process);
  while (const auto entry = reader ? reader->next() : std::nullopt) {
    const auto length = ::readlinkat(reader->descriptor(), entry->nameBytes(), target.data(), target.size());
    if (length > 0 && target.front() == '/') paths.emplace_back(target.data(), static_cast<std::size_t>(length));
  }
}

// Visits the number of each process but this one, until `visit` returns false.
template <typename Visit>
void forEachOtherProcess(Visit visit) {
  auto processes = DirectoryReader::open(AT_FDCWD, "/proc", DirectoryReader::Links::refuse);
  const auto own = std::to_string(::getpid());
  while (const auto entry = processes ? processes->next() : std::nullopt) {
    const bool isProcess = std::ranges::all_of(entry->name, [](char c) { return c >= '0' && c <= '9'; });
    if (isProcess && entry->name != own && !visit(entry->name)) return;
  }
}

}  // namespace

OpenPaths OpenPaths::read() {
  OpenPaths result;
  forEachOtherProcess([&](std::string_view process) {
    addOpenFiles(process, result.m_paths);
    return true;
  });
  std::ranges::sort(result.m_paths);
  return result;
}

bool OpenPaths::areAtOrBelow(std::string_view path) const {
  const auto isFile = [](const std::string& open) {
    const auto status = readFileStatus(AT_FDCWD, open.c_str());
    return status && status->type != FileType::directory;
  };
  const auto same = std::ranges::lower_bound(m_paths, path);
  if (same != m_paths.end() && *same == path) return isFile(*same);
  const auto folder = joinPath(path, "");
  for (auto at = std::ranges::lower_bound(m_paths, folder); at != m_paths.end() && at->starts_with(folder); ++at) {
    if (isFile(*at)) return true;
  }
  return false;
}

bool isLocked(const std::string& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file) return false;
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return ::fcntl(file.get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

bool isOpenAnywhere(const std::string& path) {
  struct stat wanted {};
  if (::stat(path.c_str(), &wanted) != 0 || !S_ISREG(wanted.st_mode)) return false;
  // Virtual machines lock their disks, also those that run for another user.
  if (isLocked(path)) return true;
  bool isOpen = false;
  forEachOtherProcess([&](std::string_view process) {
    isOpen = holds(process, wanted);
    return !isOpen;
  });
  return isOpen;
}

}  // namespace orvane
