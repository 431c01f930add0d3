#include "core/scanning/walk/HeldFolders.h"

#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>

namespace orvane {

std::shared_ptr<const HeldFolder> HeldFolders::hold(int descriptor) {
  if (++m_count > maxCount) {
    --m_count;
    return nullptr;
  }
  FileDescriptor copy(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
  if (!copy) {
    --m_count;
    return nullptr;
  }
  return std::make_shared<const HeldFolder>(std::move(copy), m_count);
}

std::optional<DirectoryReader> UnreadFolder::open() {
  if (canonicalPath.empty()) return std::nullopt;
  if (!parent) return DirectoryReader::from(openFolderWithoutLinks(AT_FDCWD, canonicalPath));
  const auto holder = std::move(parent);
  return DirectoryReader::open(holder->descriptor(), lastComponent(canonicalPath).data(),
                               DirectoryReader::Links::refuse);
}

}  // namespace orvane
