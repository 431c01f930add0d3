#pragma once

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "platform/linux/OpenItem.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace orvane {

// One Trash folder of the user: "files" with the items, "info" with a record for each, and "directorysizes".
class TrashFolder {
 public:
  // Takes over the open Trash folder of canonical path `path` and makes what is missing in it. `topFolder` is the
  // volume's top folder, empty for the home Trash. Throws std::system_error.
  TrashFolder(std::string path, std::string topFolder, FileDescriptor folder);

  [[nodiscard]] const std::string& path() const noexcept { return m_path; }
  [[nodiscard]] const Mount& mount() const noexcept { return m_mount; }
  [[nodiscard]] const std::shared_ptr<const FileDescriptor>& files() const noexcept { return m_files; }
  [[nodiscard]] const std::shared_ptr<const FileDescriptor>& info() const noexcept { return m_info; }
  // Whether the folder is still the one at its path.
  [[nodiscard]] bool isCurrent() const noexcept;

  // The origin that an item's record names. `original` is canonical.
  [[nodiscard]] std::string recordedPath(std::string_view original) const;

  // A name that neither an item, nor a record, nor another pending move has, as far as can be seen; promised until
  // release(). Throws std::system_error when there is none to be found.
  [[nodiscard]] std::string reserveName(std::string_view wanted);
  void release(const std::string& name) noexcept;

  // Adds a folder's size on the disk to "directorysizes". A cache for desktops: failures are ignored.
  void noteFolderSize(const std::string& name) const noexcept;
  void forgetFolderSize(const std::string& name) const noexcept;
  // A record that was written but may not be on the disk yet, and the wait until it is. Many records at once are made
  // durable by one syncfs(2), which costs a fraction of an fsync(2) each and also waits for what others wrote to the
  // volume. Throws SyncError.
  [[nodiscard]] std::uint64_t noteRecordWritten();
  void makeRecordDurable(std::uint64_t ticket, int record);

  // Removes the record of an item that is not there (any more); false when it may still be there without an item.
  bool removeRecord(const std::string& name) const noexcept;
  // Remove what a process that died left while it wrote the record of that item, or the sizes; false when it may be
  // there still.
  [[nodiscard]] bool removeNewRecord(const std::string& name) const noexcept;
  [[nodiscard]] bool removeNewSizes() const noexcept;

  [[nodiscard]] static std::string recordName(std::string_view itemName);
  // Of the record while it is written, where the file system knows no unnamed files. Follows from the item's name, so
  // that it is found again, and is never too long.
  [[nodiscard]] static std::string newRecordName(std::string_view itemName);

 private:
  [[nodiscard]] bool isFree(const std::string& name) const;

  std::string m_path;
  std::string m_topFolder;
  FileDescriptor m_folder;
  std::shared_ptr<const FileDescriptor> m_files;
  std::shared_ptr<const FileDescriptor> m_info;
  Mount m_mount;
  std::mutex m_mutex;
  std::unordered_set<std::string> m_reserved;
  // Last number given to a name: a run may trash ten thousand items of one name.
  std::unordered_map<std::string, std::int64_t> m_numbers;
  std::uint64_t m_lastTicket = 0;
  std::uint64_t m_durableTicket = 0;  // this one and all before it are on the disk
  std::uint64_t m_unsynced = 0;
};

}  // namespace orvane
