#pragma once

#include "core/base/files/PathText.h"

#include <string>
#include <string_view>
#include <unordered_set>

namespace orvane {

// Paths of files and folders. The paths must outlive this object.
class PathSet {
 public:
  void insert(std::string_view path) { m_paths.insert(path); }
  [[nodiscard]] bool empty() const noexcept { return m_paths.empty(); }
  // Whether one of them is a folder above the path.
  [[nodiscard]] bool holds(std::string_view path) const {
    while (path.size() > 1) {
      path = parentPath(path);
      if (m_paths.contains(path)) return true;
    }
    return false;
  }
  [[nodiscard]] bool contains(std::string_view path) const { return m_paths.contains(path); }

 private:
  std::unordered_set<std::string_view> m_paths;
};

}  // namespace orvane
