#include "platform/linux/LinuxVolume.h"

#include "core/base/values/CheckedArithmetic.h"

#include <sys/statvfs.h>

#include <cerrno>

namespace orvane {

std::optional<VolumeCapacity> LinuxVolume::capacity(const FileUrl& location) const {
  struct statvfs status {};
  while (::statvfs(location.path().c_str(), &status) != 0) {
    if (errno != EINTR) return std::nullopt;
  }
  const auto bytes = [&](fsblkcnt_t blocks) {
    return checkedMultiply(static_cast<std::int64_t>(blocks), static_cast<std::int64_t>(status.f_frsize));
  };
  return VolumeCapacity{.totalBytes = bytes(status.f_blocks), .availableBytes = bytes(status.f_bavail)};
}

}  // namespace orvane
