#pragma once

#include "core/base/files/FileStatus.h"
#include "core/scanning/walk/TreeWalk.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace orvane {

// The logical bytes of the regular files of one folder tree, added up by the tasks that read its folders. Links are not
// followed; what cannot be read adds nothing.
class FolderSize {
 public:
  enum class Extent : std::uint8_t {
    likeScan,    // hidden entries, "node_modules", "Pods" and photo libraries are left out
    everything,  // a file with several names counts once
  };

  // `whenComplete` is called once, from the thread that finishes.
  explicit FolderSize(std::function<void()> whenComplete = {}, Extent extent = Extent::likeScan)
      : m_whenComplete(std::move(whenComplete)), m_extent(extent) {}
  explicit FolderSize(Extent extent) : m_extent(extent) {}

  // The whole of one tree at once, with as many threads as it is worth. A link at the path itself is followed.
  [[nodiscard]] static std::int64_t of(const std::string& path, Extent extent);

  // The task that reads `unread`, the top of the tree, and makes the tasks for the rest. Once the walk is stopped they
  // come to their end without a meaningful sum.
  [[nodiscard]] static std::unique_ptr<WorkStack::Task> task(std::shared_ptr<FolderSize> size, UnreadFolder unread,
                                                             TreeWalk& walk);

  [[nodiscard]] bool isComplete() const noexcept { return m_openFolders == 0; }
  // Valid once complete.
  [[nodiscard]] std::int64_t bytes() const noexcept { return m_bytes; }

 private:
  class ReadFolder;
  [[nodiscard]] bool takes(std::string_view name) const noexcept;
  [[nodiscard]] bool isEntered(std::string_view name) const noexcept;
  [[nodiscard]] bool counts(const FileStatus& file);
  // An overflow ends the process.
  void add(std::int64_t bytes);
  void finishFolder(int newFolders);

  std::atomic<std::int64_t> m_bytes = 0;
  std::atomic<std::int64_t> m_openFolders = 1;
  std::function<void()> m_whenComplete;
  Extent m_extent = Extent::likeScan;
  std::mutex m_linkedMutex;
  std::set<std::pair<std::uint64_t, std::uint64_t>> m_linked;  // device and inode of files with several names
};

}  // namespace orvane
