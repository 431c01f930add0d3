#pragma once

#include "core/base/files/FileDescriptor.h"

#include <atomic>
#include <memory>
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
  static constexpr int maximum = 128;
  std::atomic<int> m_count = 0;
};

}  // namespace orvane
