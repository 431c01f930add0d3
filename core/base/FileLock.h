#pragma once

#include "core/base/FileDescriptor.h"

#include <optional>
#include <string>

namespace orvane {

// An exclusive advisory lock on a file (flock), held until this object ends or the process dies. Locks of one process
// on two open files exclude each other too.
class FileLock {
 public:
  // Creates the file where it is missing and waits for the lock. Throws std::system_error.
  static FileLock acquire(const std::string& path);
  // Takes the lock of an open file if nobody holds it; leaves `descriptor` with the caller otherwise.
  static std::optional<FileLock> tryAcquire(FileDescriptor& descriptor);

  [[nodiscard]] int descriptor() const noexcept { return m_file.get(); }

 private:
  explicit FileLock(FileDescriptor file) noexcept : m_file(std::move(file)) {}
  FileDescriptor m_file;
};

}  // namespace orvane
