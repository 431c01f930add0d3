#include "platform/linux/LinuxFileStatusReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>

namespace orvane {
namespace {

FileType typeOf(unsigned mode) noexcept {
  if (S_ISREG(mode)) return FileType::regular;
  if (S_ISDIR(mode)) return FileType::directory;
  if (S_ISLNK(mode)) return FileType::symbolicLink;
  return FileType::other;
}

FileTime timeOf(const statx_timestamp& time) noexcept {
  return {time.tv_sec, time.tv_nsec};
}

}  // namespace

std::optional<FileStatus> LinuxFileStatusReader::read(int folder, const char* name) const noexcept {
  struct statx status;  // clearing a quarter of a kilobyte for each file would show
  const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
  if (::statx(folder, name, flags, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) return std::nullopt;
  return fileStatusFrom(status);
}

FileStatus fileStatusFrom(const struct statx& status) noexcept {
  FileStatus result;
  result.type = typeOf(status.stx_mode);
  result.mode = status.stx_mode & 07777U;
  result.device = makedev(status.stx_dev_major, status.stx_dev_minor);
  result.inode = status.stx_ino;
  result.linkCount = status.stx_nlink;
  result.size = static_cast<std::int64_t>(status.stx_size);
  result.modified = timeOf(status.stx_mtime);
  result.accessed = timeOf(status.stx_atime);
  if ((status.stx_mask & STATX_BTIME) != 0) result.created = timeOf(status.stx_btime);
  return result;
}

}  // namespace orvane
