#pragma once

#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"

#include <compare>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// A file that a search found, in as few bytes as it takes: there may be millions. Its name and its path are the
// folder's.
class FoundFile {
 public:
  FoundFile(const FileStatus& status, std::uint32_t nameStart) noexcept;

  [[nodiscard]] std::uint64_t device() const noexcept { return m_device; }
  [[nodiscard]] std::uint64_t inode() const noexcept { return m_inode; }
  [[nodiscard]] std::int64_t size() const noexcept { return m_size; }
  [[nodiscard]] FileTime modified() const noexcept { return {m_modifiedSeconds, m_modifiedNanoseconds}; }
  // Absent where the file system keeps none.
  [[nodiscard]] std::optional<FileTime> created() const noexcept;
  [[nodiscard]] std::uint32_t nameStart() const noexcept { return m_nameStart; }

 private:
  static constexpr std::uint32_t unknown = UINT32_MAX;

  std::uint64_t m_device;
  std::uint64_t m_inode;
  std::int64_t m_size;
  std::int64_t m_modifiedSeconds;
  std::int64_t m_createdSeconds = 0;
  std::uint32_t m_modifiedNanoseconds;
  std::uint32_t m_createdNanoseconds = unknown;
  std::uint32_t m_nameStart;
};

// A folder of the walk and the files in it, in the order in which they were found.
struct FoundFolder {
  const FoundFolder* parent = nullptr;
  std::string name;  // the whole path where there is no parent
  std::string fileNames;
  std::vector<FoundFile> files;
  std::vector<FoundFolder*> folders;

  // Replaces `path` by the path of this folder with a slash at its end.
  void pathInto(std::string& path) const;
};

// One of the files: where it stands in the order of the walk, all files of a folder before those of its subfolders.
struct FoundFileIndex {
  std::uint32_t folder = 0;
  std::uint32_t file = 0;
  auto operator<=>(const FoundFileIndex&) const = default;
};

class FoundFiles;

// Makes one path after the other; cheap for those of one folder in a row.
class FoundPaths {
 public:
  explicit FoundPaths(const FoundFiles& files) noexcept : m_files(files) {}
  // Valid until the next call.
  [[nodiscard]] const std::string& of(FoundFileIndex found);

 private:
  const FoundFiles& m_files;
  std::string m_path;
  std::size_t m_prefix = 0;
  const FoundFolder* m_folder = nullptr;
};

// All files of one search.
class FoundFiles {
 public:
  // From any thread. `parent` is null for a folder at which a walk starts.
  FoundFolder& addFolder(const FoundFolder* parent, std::string name);
  // Settles the order of the walk, which starts at `starts` one after the other. Nothing is added afterwards.
  void settleOrder(const std::vector<FoundFolder*>& starts);

  // In the order of the walk.
  [[nodiscard]] const std::vector<const FoundFolder*>& folders() const noexcept { return m_ordered; }
  [[nodiscard]] const FoundFile& file(FoundFileIndex found) const { return m_ordered[found.folder]->files[found.file]; }
  [[nodiscard]] std::string_view name(FoundFileIndex found) const;

 private:
  std::mutex m_mutex;
  std::deque<FoundFolder> m_folders;
  std::vector<const FoundFolder*> m_ordered;
};

}  // namespace orvane
