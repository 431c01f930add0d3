#pragma once

#include "core/base/FileUrl.h"

#include <string>
#include <vector>

namespace orvane {

// The folders inside which an operation may act. None at all means that only the fixed rules hold.
class AllowedRoots {
 public:
  AllowedRoots() = default;
  // Canonicalises the folders once (an empty location allows nothing); later changes of links on the disk do not move
  // the boundary.
  explicit AllowedRoots(std::vector<FileUrl> folders);

  [[nodiscard]] bool empty() const noexcept { return m_folders.empty(); }
  [[nodiscard]] const std::vector<FileUrl>& folders() const noexcept { return m_folders; }
  // In the order of folders().
  [[nodiscard]] const std::vector<std::string>& canonicalPaths() const noexcept { return m_canonicalPaths; }

 private:
  std::vector<FileUrl> m_folders;
  std::vector<std::string> m_canonicalPaths;
};

}  // namespace orvane
