#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The user's downloads folder where it has another name than the given rows know it by. Holds nothing by default.
class DownloadsFolder {
 public:
  // As the system's settings have it now.
  [[nodiscard]] static DownloadsFolder ofUser();
  // Whether a folder, as a path with a slash at its end, is it or lies in it.
  [[nodiscard]] bool holds(std::string_view folderPrefix) const noexcept;

 private:
  std::vector<std::string> m_prefixes;  // as it is named and where it leads
};

}  // namespace orvane
