#pragma once

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace orvane {

// One mount of a file system. Renames do not cross mounts, not even of the same device.
struct Mount {
  std::uint64_t device = 0;
  std::uint64_t identifier = 0;  // zero where the kernel tells none
  bool operator==(const Mount&) const = default;
};
// Of a path, links not followed, or of the descriptor itself when `path` is empty. Throws std::system_error.
[[nodiscard]] Mount mountOf(int folder, const char* path);

// A folder kept open, with its mount.
struct OpenFolder {
  std::shared_ptr<const FileDescriptor> folder;
  Mount mount;
};

// An item seen through its open folder: from here on its path no longer matters.
struct OpenItem {
  std::shared_ptr<const FileDescriptor> folder;
  std::string name;
  FileStatus status;
  Mount mount;               // of the folder
  bool isImmutable = false;  // has the attribute (chattr +i)
  // No other program swaps what lies there, but it may swap an item as soon as that has returned to its place: another
  // one in that place then says nothing of the move.
  bool isInTrash = false;

  [[nodiscard]] ItemIdentity identity() const noexcept { return ItemIdentity::of(status); }
  // Status as it is now. Throws std::system_error.
  [[nodiscard]] FileStatus currentStatus() const;
};

// Opens a folder of canonical path without following any link, as openat2(2) with RESOLVE_NO_SYMLINKS. `boundary` is a
// canonical folder that holds it; below it the resolution is held by RESOLVE_BENEATH. Throws std::system_error.
[[nodiscard]] std::shared_ptr<const FileDescriptor> openFolder(std::string_view folder, std::string_view boundary);

// The same with the folder's mount.
[[nodiscard]] OpenFolder openFolderAndMount(std::string_view folder, std::string_view boundary);

// Opens an item's folder and reads its status. Throws std::system_error.
[[nodiscard]] OpenItem openItem(const FileUrl& item, std::string_view boundary);
// The same in a folder that is open.
[[nodiscard]] OpenItem openItemIn(OpenFolder folder, std::string_view name);

// Opens folders as openFolder() does. The one opened last is shared for as long as anybody holds it: the items of a
// batch mostly have theirs in common.
class SharedFolder {
 public:
  [[nodiscard]] OpenFolder open(std::string_view folder, std::string_view boundary);

 private:
  std::mutex m_mutex;
  std::string m_path;
  std::string m_boundary;
  std::weak_ptr<const FileDescriptor> m_folder;
  Mount m_mount;
};

// Changes the immutable attribute (chattr +i) where it is the other way and this process may; otherwise nothing
// happens.
enum class Immutable : std::uint8_t { no, yes };
void changeImmutableAttribute(int folder, const std::string& name, Immutable wanted) noexcept;

// Renames without replacing, as renameat2(2) with RENAME_NOREPLACE, also on file systems that do not know that flag.
// Throws std::system_error.
void renameWithoutReplacing(int fromFolder, const std::string& from, int toFolder, const std::string& to);

// The same for an item that must be, before and after, the one that was looked at: another one is put back. The
// immutable attribute is cleared for the move alone, and given back when it fails. Throws std::runtime_error; the item
// is then where it was.
void renameChecked(const OpenItem& item, int toFolder, const std::string& to);

}  // namespace orvane
