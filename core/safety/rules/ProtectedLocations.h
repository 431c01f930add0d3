#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The places that no operation may list or touch, whatever the user allows: parts of the system, and the files of the
// home folder that make up the user's identity. All paths are canonical.
class ProtectedLocations {
 public:
  // The home folder counts as given and, where a link leads to it, also where it really is.
  explicit ProtectedLocations(const std::string& homeFolder);

  // Refused together with everything inside.
  [[nodiscard]] std::span<const std::string> trees() const noexcept { return m_trees; }
  // Refused as such; what they hold is not.
  [[nodiscard]] std::span<const std::string> places() const noexcept { return m_places; }

 private:
  std::vector<std::string> m_trees;
  std::vector<std::string> m_places;
};

// Folders that are refused but for the temporary folders of single users inside them.
inline constexpr std::string_view privateSystemFolders[] = {"/private", "/var"};
// The exceptions inside those, admitted where an allowed root covers them.
inline constexpr std::string_view userTemporaryFolders[] = {"/private/var/folders", "/var/folders"};

[[nodiscard]] bool isVersionControlName(std::string_view name) noexcept;

// Whether the path is `folder` or starts with `folder` and a slash. By this text rule "/" contains nothing but itself:
// the whole file system is never an allowed root.
[[nodiscard]] bool isAtOrBelow(std::string_view path, std::string_view folder) noexcept;
// Whether the path starts with `folder` and a slash.
[[nodiscard]] bool isBelow(std::string_view path, std::string_view folder) noexcept;

}  // namespace orvane
