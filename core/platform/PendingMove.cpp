#include "core/platform/PendingMove.h"

#include "core/base/files/FileDescriptor.h"
#include "core/platform/SyncError.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace orvane {
namespace {

// Above this, waiting for the whole volume costs less than waiting for each folder.
constexpr std::ptrdiff_t maxSingleSyncs = 8;

void check(int result) {
  if (result == 0) return;
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

void FolderSyncSet::add(std::shared_ptr<const FileDescriptor> folder, VolumeSync volumeSync) {
  const auto isSame = [&](const Member& present) { return present.folder == folder; };
  if (std::any_of(m_members.begin(), m_members.end(), isSame)) return;
  struct stat status {};
  if (::fstat(folder->get(), &status) != 0) throw SyncError(errorText(errno));
  const Member member{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                      std::move(folder), volumeSync};
  const bool known = std::any_of(m_members.begin(), m_members.end(), [&](const Member& present) {
    return present.device == member.device && present.inode == member.inode;
  });
  if (!known) m_members.push_back(member);
}

void FolderSyncSet::syncAll() {
  auto members = std::exchange(m_members, {});
  std::stable_sort(members.begin(), members.end(),
                   [](const Member& left, const Member& right) { return left.device < right.device; });
  for (auto first = members.begin(); first != members.end();) {
    const auto last = std::find_if(first, members.end(), [&](const Member& m) { return m.device != first->device; });
    if (last - first > maxSingleSyncs && first->volumeSync != nullptr) {
      check(first->volumeSync(first->folder->get()));
    } else {
      std::for_each(first, last, [](const Member& member) { check(::fsync(member.folder->get())); });
    }
    first = last;
  }
}

}  // namespace orvane
