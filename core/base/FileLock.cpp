#include "core/base/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

namespace orvane {

FileLock FileLock::acquire(const std::string& path) {
  FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!file) throwErrno();
  while (::flock(file.get(), LOCK_EX) != 0) {
    if (errno != EINTR) throwErrno();
  }
  return FileLock(std::move(file));
}

std::optional<FileLock> FileLock::tryAcquire(FileDescriptor& descriptor) {
  if (::flock(descriptor.get(), LOCK_EX | LOCK_NB) != 0) return std::nullopt;
  return FileLock(std::move(descriptor));
}

}  // namespace orvane
