#include "platform/linux/OpenFiles.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

namespace orvane {
namespace {

bool holds(std::string_view process, const struct stat& wanted) {
  const auto folder = joinPath(joinPath("/proc", process), "fd");
  auto reader = DirectoryReader::open(AT_FDCWD, folder.c_str(), DirectoryReader::Links::refuse);
  if (!reader) return false;
  while (const auto entry = reader->next()) {
    struct stat status {};
    if (::fstatat(reader->descriptor(), entry->nameBytes(), &status, 0) != 0) continue;
    if (status.st_dev == wanted.st_dev && status.st_ino == wanted.st_ino) return true;
  }
  return false;
}

}  // namespace

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
  auto processes = DirectoryReader::open(AT_FDCWD, "/proc", DirectoryReader::Links::refuse);
  if (!processes) return false;
  const auto own = std::to_string(::getpid());
  while (const auto entry = processes->next()) {
    const bool isProcess = std::ranges::all_of(entry->name, [](char c) { return c >= '0' && c <= '9'; });
    if (isProcess && entry->name != own && holds(entry->name, wanted)) return true;
  }
  return false;
}

}  // namespace orvane
