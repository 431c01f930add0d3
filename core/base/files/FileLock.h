#pragma once

#include "core/base/files/FileDescriptor.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>

namespace orvane {

// Another process kept a lock for too long, perhaps because it is stopped. what() names the process where it is known.
class LockTimeout : public std::system_error {
 public:
  LockTimeout(const std::string& path, const std::string& holder);
  [[nodiscard]] const char* what() const noexcept override { return m_text.c_str(); }

 private:
  std::string m_text;
};

// An advisory lock on a file (flock), held until this object ends or the process dies. Locks of one process on two open
// files exclude each other too.
class FileLock {
 public:
  // An exclusive lock waits for every other one, a shared lock for exclusive ones only.
  enum class Mode : std::uint8_t { exclusive, shared };
  static constexpr std::chrono::milliseconds maxWait{10'000};
  // Creates the file where it is missing and waits for the lock. The file then names the process that holds it alone.
  // Throws LockTimeout after `wait`, std::system_error when it is no regular file or cannot be opened.
  static FileLock acquire(const std::string& path, std::chrono::milliseconds wait = maxWait,
                          Mode mode = Mode::exclusive);
  // Takes the lock of an open file if nobody holds one that excludes it; leaves `descriptor` with the caller otherwise.
  static std::optional<FileLock> tryAcquire(FileDescriptor& descriptor, Mode mode = Mode::exclusive);

  [[nodiscard]] int descriptor() const noexcept { return m_file.get(); }

 private:
  explicit FileLock(FileDescriptor file) noexcept : m_file(std::move(file)) {}
  FileDescriptor m_file;
};

}  // namespace orvane
