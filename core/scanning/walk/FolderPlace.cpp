#include "core/scanning/walk/FolderPlace.h"

#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>

namespace orvane {

std::optional<DirectoryReader> FolderPlace::open() {
  if (canonicalPath.empty()) return std::nullopt;
  if (!parent) return DirectoryReader::from(openFolderWithoutLinks(AT_FDCWD, canonicalPath));
  const auto holder = std::move(parent);
  return DirectoryReader::open(holder->descriptor(), lastComponent(canonicalPath).data(),
                               DirectoryReader::Links::refuse);
}

}  // namespace orvane
