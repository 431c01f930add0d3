#pragma once

#include "core/platform/FolderGrants.h"

namespace orvane {

// Nothing stands between a program and its user's folders here, so a bookmark is the folder's URL.
class LinuxFolderGrants : public FolderGrants {
 public:
  [[nodiscard]] std::string makeBookmark(const FileUrl& folder) override;
  [[nodiscard]] std::optional<Resolved> resolve(const std::string& bookmark) override;
  [[nodiscard]] bool startAccess(const FileUrl& folder) override;
  void stopAccess(const FileUrl& folder) noexcept override;
};

}  // namespace orvane
