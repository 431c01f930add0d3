#include "core/base/files/FileStatus.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace orvane {

FileStatus fileStatusFrom(const struct stat& status) noexcept {
  FileStatus result;
  if (S_ISREG(status.st_mode)) {
    result.type = FileType::regular;
  } else if (S_ISDIR(status.st_mode)) {
    result.type = FileType::directory;
  } else if (S_ISLNK(status.st_mode)) {
    result.type = FileType::symbolicLink;
  } else {
    result.type = FileType::other;
  }
  result.mode = static_cast<std::uint32_t>(status.st_mode & 07777);
  result.device = static_cast<std::uint64_t>(status.st_dev);
  result.inode = static_cast<std::uint64_t>(status.st_ino);
  result.linkCount = static_cast<std::uint64_t>(status.st_nlink);
  result.size = static_cast<std::int64_t>(status.st_size);
  result.modified = {status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
  result.accessed = {status.st_atim.tv_sec, status.st_atim.tv_nsec};
  return result;
}

std::optional<FileStatus> readFileStatus(int folder, const char* name) noexcept {
  struct stat status {};
  if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
  return fileStatusFrom(status);
}

bool itemExists(const char* path) noexcept {
  struct stat status {};
  return ::lstat(path, &status) == 0;
}

}  // namespace orvane
