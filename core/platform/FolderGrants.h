#pragma once

#include "core/base/files/FileUrl.h"

#include <optional>
#include <string>

namespace orvane {

// Bookmarks: what the operating system needs to give a program access to a folder again in a later start.
class FolderGrants {
 public:
  // The folder that a bookmark resolves to.
  struct Resolved {
    FileUrl folder;
    bool isStale = false;  // it still works, but should be made anew
  };

  virtual ~FolderGrants() = default;

  // The bookmark of a folder: bytes that only this system understands. Throws std::runtime_error.
  [[nodiscard]] virtual std::string makeBookmark(const FileUrl& folder) = 0;
  // Absent when the bookmark leads nowhere.
  [[nodiscard]] virtual std::optional<Resolved> resolve(const std::string& bookmark) = 0;

  // Access to a folder between the two. Ended only where starting it succeeded.
  [[nodiscard]] virtual bool startAccess(const FileUrl& folder) = 0;
  virtual void stopAccess(const FileUrl& folder) noexcept = 0;
};

}  // namespace orvane
