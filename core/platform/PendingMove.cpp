#include "core/platform/PendingMove.h"

#include "core/base/FileDescriptor.h"
#include "core/platform/SyncError.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace orvane {
namespace {

void syncFolderDescriptor(int folder) {
  if (::fsync(folder) == 0) return;
  switch (errno) {
    case EBADF:  // opened for searching only, since this user may not list it
      ::sync();
      return;
    case EINVAL:
    case ENOTSUP:
    case ENOSYS:  // a file system whose folders cannot be made durable any further
      return;
    default:
      throw SyncError(errorText(errno));
  }
}

}  // namespace

void FolderSyncSet::add(std::shared_ptr<const FileDescriptor> folder) {
  struct stat status {};
  if (::fstat(folder->get(), &status) != 0) throw SyncError(errorText(errno));
  const Member member{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                      std::move(folder)};
  const bool known = std::any_of(m_members.begin(), m_members.end(), [&](const Member& present) {
    return present.device == member.device && present.inode == member.inode;
  });
  if (!known) m_members.push_back(member);
}

void FolderSyncSet::syncAll() {
  const auto members = std::exchange(m_members, {});
  for (const auto& member : members) syncFolderDescriptor(member.folder->get());
}

}  // namespace orvane
