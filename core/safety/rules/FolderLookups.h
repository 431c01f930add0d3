#pragma once

#include "core/base/files/FileUrl.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {

// Cached facts about the folders of one group of moves: thousands of items mostly share a few. Lives only as long
// as the group is planned, since links may change. Items themselves are never remembered.
class FolderLookups {
 public:
  // The folder's canonical path.
  [[nodiscard]] const std::string& canonical(std::string_view folder);
  // The canonical path of a folder to move into, after `prepare` made it ready; what that throws is not remembered.
  [[nodiscard]] const std::string& destination(const FileUrl& folder,
                                               const std::function<void(const FileUrl&)>& prepare);

  // The folders that were made on the way; takeMade() gives those since its last call.
  void noteMade(const std::vector<std::string>& folders);
  [[nodiscard]] std::vector<std::string> takeMade() noexcept { return std::exchange(m_made, {}); }

 private:
  std::map<std::string, std::string, std::less<>> m_canonicalPaths;
  std::map<FileUrl, std::string> m_destinations;
  std::vector<std::string> m_made;
};

}  // namespace orvane
