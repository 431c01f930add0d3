#pragma once

#include "core/base/files/DirectoryReader.h"
#include "core/scanning/walk/HeldFolders.h"

#include <memory>
#include <optional>
#include <string>

namespace orvane {

// A folder that waits to be read. It is never reached through a symbolic link below the walk's start.
struct FolderPlace {
  std::shared_ptr<const HeldFolder> parent;
  std::string canonicalPath;

  // Absent when it is gone, unreadable or no folder any more. Lets go of the parent.
  [[nodiscard]] std::optional<DirectoryReader> open();
};

}  // namespace orvane
