#include "core/scanning/walk/HeldFolders.h"

#include <fcntl.h>

namespace orvane {

std::shared_ptr<const HeldFolder> HeldFolders::hold(int descriptor) {
  if (++m_count > maximum) {
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

}  // namespace orvane
