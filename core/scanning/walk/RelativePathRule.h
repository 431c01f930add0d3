#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// The path shown to the user for something found below a root folder: every occurrence of the root's path taken out of
// the item's path, slashes at both ends trimmed; the last component where nothing is left.
[[nodiscard]] std::string relativePath(std::string_view path, std::string_view root);

// relativePath() for the entries of one folder.
class RelativePathRule {
 public:
  // `folderPrefix` is the folder's path with a slash at its end; both must outlive this object.
  RelativePathRule(std::string_view root, std::string_view folderPrefix) noexcept;

  // Where in the path of the entry `name` its relative path begins; absent when it is no end of the path.
  [[nodiscard]] std::optional<std::uint32_t> start(std::string_view name) const noexcept;

 private:
  bool m_isPlain = false;
  std::uint32_t m_start = 0;
  // A name that begins with this may complete the root's path once more.
  std::optional<std::string_view> m_suspiciousPrefix;
};

}  // namespace orvane
