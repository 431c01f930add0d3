#pragma once

#include "core/base/values/Date.h"

#include <cstdint>
#include <optional>

struct stat;

namespace orvane {

enum class FileType : std::uint8_t { regular, directory, symbolicLink, other, unknown };

// A point in time as the file system keeps it.
struct FileTime {
  std::int64_t seconds = 0;  // since 1970-01-01T00:00:00Z
  std::int64_t nanoseconds = 0;

  [[nodiscard]] Date date() const noexcept { return dateFromUnix(seconds, nanoseconds); }
  bool operator==(const FileTime&) const = default;
};

// The system's facts about one directory entry, links not followed.
struct FileStatus {
  FileType type = FileType::unknown;
  std::uint32_t mode = 0;  // permission bits only
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t linkCount = 0;
  std::int64_t size = 0;  // logical bytes
  FileTime modified;
  FileTime accessed;
  // Absent where the file system keeps none.
  std::optional<FileTime> created;
};

// Tells one item from every other: a name can be given to another file at any time, this cannot.
struct ItemIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  FileTime modified;
  FileType type = FileType::unknown;

  [[nodiscard]] static ItemIdentity of(const FileStatus& status) noexcept {
    return {status.device, status.inode, status.size, status.modified, status.type};
  }
  // Whether `now` is the item that had this identity when somebody was shown it. A folder's size and time follow what
  // is put into it, so only its inode counts.
  [[nodiscard]] bool isStill(const ItemIdentity& now) const noexcept {
    if (type != FileType::directory) return *this == now;
    return now.type == type && now.device == device && now.inode == inode;
  }
  bool operator==(const ItemIdentity&) const = default;
};

// Status of `name` in the folder open at `folder` (AT_FDCWD for a path), links not followed, without the creation
// date, which POSIX does not know. Absent when the call fails; errno tells why.
[[nodiscard]] std::optional<FileStatus> readFileStatus(int folder, const char* name) noexcept;
[[nodiscard]] FileStatus fileStatusFrom(const struct stat& status) noexcept;

// Whether anything stands at the path, a dangling link included.
[[nodiscard]] bool itemExists(const char* path) noexcept;

}  // namespace orvane
