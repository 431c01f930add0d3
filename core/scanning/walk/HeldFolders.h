#pragma once

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace orvane {

// A folder kept open so that folders inside it can be opened by their names.
class HeldFolder {
 public:
  HeldFolder(FileDescriptor folder, std::atomic<int>& count) noexcept : m_folder(std::move(folder)), m_count(count) {}
  ~HeldFolder() { --m_count; }
  HeldFolder(const HeldFolder&) = delete;
  HeldFolder& operator=(const HeldFolder&) = delete;
  [[nodiscard]] int descriptor() const noexcept { return m_folder.get(); }

 private:
  FileDescriptor m_folder;
  std::atomic<int>& m_count;
};

// Bounds how many folders one walk keeps open, however deep and wide the tree. Outlives what it gives.
class HeldFolders {
 public:
  // Nothing when enough folders are held; their subfolders are then reached by path.
  [[nodiscard]] std::shared_ptr<const HeldFolder> hold(int descriptor);

 private:
  static constexpr int maxCount = 128;
  std::atomic<int> m_count = 0;
};

// A folder that waits to be read. It is never reached through a symbolic link below the walk's start.
struct UnreadFolder {
  std::shared_ptr<const HeldFolder> parent;
  std::string canonicalPath;

  // Absent when it is gone, unreadable or no folder any more. Lets go of the parent.
  [[nodiscard]] std::optional<DirectoryReader> open();
};

}  // namespace orvane
