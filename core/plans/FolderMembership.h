#pragma once

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileUrl.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

namespace orvane {

// Tells which files lie directly in one folder. The folder of the file that was asked about last is remembered, and
// where many files of this folder are asked about it is listed once: that costs a fraction of a look at each. For one
// thread.
class FolderMembership {
 public:
  // Links in the path are resolved now. A folder that is not there, or an empty location, has no files.
  explicit FolderMembership(const FileUrl& folder);

  // Whether it is a regular file, no symbolic link, that can be looked at and whose folder is really this one.
  [[nodiscard]] bool hasRegularFile(const FileUrl& file);

 private:
  [[nodiscard]] bool isThisFolder(const std::string& path) const;
  [[nodiscard]] bool isRegular(std::string_view name);
  void list();

  std::string m_canonicalPath;
  std::uint64_t m_device = 0;
  std::uint64_t m_inode = 0;
  FileDescriptor m_folder;    // open while the folder is there
  std::string m_askedFolder;  // of the file before, as its path names it
  bool m_askedFolderIsThis = false;

  std::size_t m_looks = 0;
  std::string m_listedBytes;  // names with a NUL behind each
  std::unordered_set<std::string_view> m_listedRegularFiles;
};

}  // namespace orvane
