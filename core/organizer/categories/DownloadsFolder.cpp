#include "core/organizer/categories/DownloadsFolder.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"
#include "core/base/files/UserFolders.h"

#include <algorithm>

namespace orvane {

DownloadsFolder DownloadsFolder::ofUser() {
  DownloadsFolder result;
  if (const auto own = userFolder("Downloads", homeFolder())) {
    result.m_prefixes = {joinPath(*own, ""), joinPath(canonicalPath(*own), "")};
  }
  return result;
}

bool DownloadsFolder::holds(std::string_view folderPrefix) const noexcept {
  return std::ranges::any_of(m_prefixes, [&](const std::string& prefix) { return folderPrefix.starts_with(prefix); });
}

}  // namespace orvane
