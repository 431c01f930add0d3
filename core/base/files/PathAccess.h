#pragma once

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// Opens a folder component by component without following any link, so that it is the folder of that very path or
// nothing. `relative` is taken from the folder open at `base`, or from "/" when it starts with a slash; it holds no
// ".." and may be longer than the system's limit for one call. Absent with errno set when it cannot be opened.
[[nodiscard]] FileDescriptor openFolderWithoutLinks(int base, std::string_view relative) noexcept;

// Status of an absolute path of any length, links followed nowhere but in folders above the item where the path is
// short. Absent with errno set when it cannot be read.
[[nodiscard]] std::optional<FileStatus> readPathStatus(const std::string& path) noexcept;

// Whether anything stands at an absolute path. A folder that is gone together with what it held speaks of a volume that
// is not mounted.
enum class Presence : std::uint8_t { there, nothing, unreachable };
[[nodiscard]] Presence presenceAt(const std::string& path) noexcept;

// The same two for many items, most of which follow others of their folder: that is held open until one of another
// comes.
class PathLooks {
 public:
  [[nodiscard]] std::optional<FileStatus> readStatus(const std::string& path);
  [[nodiscard]] Presence presenceAt(const std::string& path);

 private:
  [[nodiscard]] bool holdFolderOf(const std::string& path);

  std::string m_path;
  FileDescriptor m_folder;
};

}  // namespace orvane
