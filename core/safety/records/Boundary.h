#pragma once

#include "core/base/files/FileUrl.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The folders inside which an operation may act. One that holds no folder allows nothing.
class Boundary {
 public:
  Boundary() = default;
  // Canonicalises the folders once (an empty location allows nothing); later changes of links on the disk do not move
  // the boundary.
  explicit Boundary(std::vector<FileUrl> folders);

  [[nodiscard]] const std::vector<FileUrl>& folders() const noexcept { return m_folders; }
  // In the order of folders().
  [[nodiscard]] const std::vector<std::string>& canonicalPaths() const noexcept { return m_canonicalPaths; }
  // Whether a canonical path is one of the folders or lies in one.
  [[nodiscard]] bool contains(std::string_view canonicalPath) const noexcept;

 private:
  std::vector<FileUrl> m_folders;
  std::vector<std::string> m_canonicalPaths;
};

// In the place of a boundary where none is drawn and only the fixed rules are asked: for looking, never for moving.
struct FixedRulesOnly {};
inline constexpr FixedRulesOnly fixedRulesOnly;

}  // namespace orvane
