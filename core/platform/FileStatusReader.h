#pragma once

#include "core/base/files/FileStatus.h"

#include <optional>

namespace orvane {

// Reads an entry's status with its creation date, which POSIX has no call for.
class FileStatusReader {
 public:
  virtual ~FileStatusReader() = default;
  // Of `name` in the folder open at `folder` (AT_FDCWD for a path), links not followed. Absent when it fails.
  [[nodiscard]] virtual std::optional<FileStatus> read(int folder, const char* name) const noexcept = 0;
};

}  // namespace orvane
