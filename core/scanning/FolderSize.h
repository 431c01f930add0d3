#pragma once

#include "core/scanning/FolderPlace.h"
#include "core/scanning/WorkStack.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace orvane {

// The logical bytes of the regular files of one folder tree, added up by the tasks that read its folders.
class FolderSize {
 public:
  enum class Contents : std::uint8_t {
    reclaimable,  // hidden entries, "node_modules", "Pods" and photo libraries left out
    everything,
  };

  // `whenComplete` is called once, from the thread that finishes.
  explicit FolderSize(std::function<void()> whenComplete = {}, Contents contents = Contents::reclaimable)
      : m_whenComplete(std::move(whenComplete)), m_contents(contents) {}

  // The whole of one tree at once, with as many threads as it is worth. Links at the path itself are followed.
  [[nodiscard]] static std::int64_t of(const std::string& path, Contents contents);

  // The task that reads `place`, the top of the tree, and makes the tasks for the rest. `held` and `stopped` must
  // outlive the tasks; once `stopped` is set they come to their end without a meaningful sum.
  [[nodiscard]] static std::unique_ptr<WorkStack::Task> task(std::shared_ptr<FolderSize> size, FolderPlace place,
                                                             HeldFolders& held, const std::atomic<bool>& stopped);

  [[nodiscard]] bool isComplete() const noexcept { return m_openFolders == 0; }
  // Valid once complete.
  [[nodiscard]] std::int64_t bytes() const noexcept { return m_bytes; }

 private:
  class ReadFolder;
  // An overflow ends the process.
  void add(std::int64_t bytes);
  void finishFolder(int newFolders);

  std::atomic<std::int64_t> m_bytes = 0;
  std::atomic<std::int64_t> m_openFolders = 1;
  std::function<void()> m_whenComplete;
  Contents m_contents;
};

}  // namespace orvane
