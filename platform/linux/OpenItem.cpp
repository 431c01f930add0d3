#include "platform/linux/OpenItem.h"

#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "platform/linux/LinuxFileStatusReader.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <linux/openat2.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>

namespace orvane {
namespace {

// Longest path given to one call; PATH_MAX counts the closing NUL byte.
constexpr std::size_t maxPieceBytes = 4000;

constexpr std::uint64_t folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

int openWithoutLinks(int base, const std::string& path, std::uint64_t flags, std::uint64_t resolve) noexcept {
  open_how how{};
  how.flags = flags;
  how.resolve = resolve | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
  return static_cast<int>(::syscall(SYS_openat2, base, path.c_str(), &how, sizeof how));
}

// A piece of at most maxPieceBytes bytes that ends before a slash; the rest stays in `path`.
std::string takePiece(std::string_view& path) {
  auto end = path.size();
  if (end > maxPieceBytes) end = path.rfind('/', maxPieceBytes);
  std::string piece(path.substr(0, end));
  path.remove_prefix(std::min(path.size(), end + 1));
  return piece;
}

FileDescriptor openPieces(int base, std::string_view path, std::uint64_t resolve) {
  FileDescriptor folder;
  do {
    const int from = folder ? folder.get() : base;
    const std::string piece = takePiece(path);
    int next = openWithoutLinks(from, piece, folderFlags, resolve);
    // A folder that may be searched but not listed can still be moved from.
    if (next < 0 && errno == EACCES) next = openWithoutLinks(from, piece, O_PATH | O_DIRECTORY | O_CLOEXEC, resolve);
    folder = FileDescriptor(next);
  } while (folder && !path.empty());
  return folder;
}

}  // namespace

Mount mountOf(int folder, const char* path) {
  struct statx status {};
  const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | (path[0] == '\0' ? AT_EMPTY_PATH : 0);
  if (::statx(folder, path, flags, STATX_MNT_ID, &status) != 0) throwErrno();
  const bool known = (status.stx_mask & STATX_MNT_ID) != 0;
  return {makedev(status.stx_dev_major, status.stx_dev_minor), known ? status.stx_mnt_id : 0};
}

FileStatus OpenItem::currentStatus() const {
  const auto current = readFileStatus(folder->get(), name.c_str());
  if (!current) throwErrno();
  return *current;
}

std::shared_ptr<const FileDescriptor> openFolder(std::string_view folder, std::string_view boundary) {
  FileDescriptor root = openPieces(AT_FDCWD, boundary, 0);
  if (!root && errno == ENOSYS) {
    root = openFolderWithoutLinks(AT_FDCWD, folder);
    if (!root) throwErrno();
    return std::make_shared<const FileDescriptor>(std::move(root));
  }
  if (!root) throwErrno();
  std::string_view relative = folder.substr(std::min(folder.size(), boundary.size()));
  while (relative.starts_with('/')) relative.remove_prefix(1);
  if (relative.empty()) return std::make_shared<const FileDescriptor>(std::move(root));
  FileDescriptor opened = openPieces(root.get(), relative, RESOLVE_BENEATH);
  if (!opened) throwErrno();
  return std::make_shared<const FileDescriptor>(std::move(opened));
}

OpenFolder openFolderAndMount(std::string_view folder, std::string_view boundary) {
  auto opened = openFolder(folder, boundary);
  const auto mount = mountOf(opened->get(), "");
  return {std::move(opened), mount};
}

OpenItem openItem(const FileUrl& item, std::string_view boundary) {
  return openItemIn(openFolderAndMount(parentPath(item.path()), boundary), item.lastPathComponent());
}

OpenItem openItemIn(OpenFolder folder, std::string_view name) {
  OpenItem result;
  result.folder = std::move(folder.folder);
  result.mount = folder.mount;
  result.name = std::string(name);
  struct statx status {};
  const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
  if (::statx(result.folder->get(), result.name.c_str(), flags, STATX_BASIC_STATS, &status) != 0) throwErrno();
  result.status = fileStatusFrom(status);
  result.isImmutable = (status.stx_attributes & STATX_ATTR_IMMUTABLE) != 0;
  return result;
}

OpenFolder SharedFolder::open(std::string_view folder, std::string_view boundary) {
  const std::lock_guard lock(m_mutex);
  if (auto shared = m_folder.lock(); shared && m_path == folder && m_boundary == boundary) {
    return {std::move(shared), m_mount};
  }
  auto opened = openFolderAndMount(folder, boundary);
  m_path = folder;
  m_boundary = boundary;
  m_folder = opened.folder;
  m_mount = opened.mount;
  return opened;
}

void changeImmutableAttribute(int folder, const std::string& name, Immutable wanted) noexcept {
  const FileDescriptor file(::openat(folder, name.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
  int attributes = 0;
  if (!file || ::ioctl(file.get(), FS_IOC_GETFLAGS, &attributes) != 0) return;
  const bool isSet = (attributes & FS_IMMUTABLE_FL) != 0;
  if (isSet == (wanted == Immutable::yes)) return;
  attributes ^= FS_IMMUTABLE_FL;
  static_cast<void>(::ioctl(file.get(), FS_IOC_SETFLAGS, &attributes));
}

void renameWithoutReplacing(int fromFolder, const std::string& from, int toFolder, const std::string& to) {
  if (::renameat2(fromFolder, from.c_str(), toFolder, to.c_str(), RENAME_NOREPLACE) == 0) return;
  if (errno != EINVAL && errno != ENOSYS) throwErrno();
  const auto status = readFileStatus(fromFolder, from.c_str());
  if (!status) throwErrno();
  if (status->type == FileType::directory) {
    // A folder takes no name but that of an empty folder. One made in place of it first would stay after a crash.
    if (readFileStatus(toFolder, to.c_str())) throwErrno(EEXIST);
    if (::renameat(fromFolder, from.c_str(), toFolder, to.c_str()) != 0) throwErrno();
    return;
  }
  if (::linkat(fromFolder, from.c_str(), toFolder, to.c_str(), 0) != 0) throwErrno();
  if (::unlinkat(fromFolder, from.c_str(), 0) != 0) {
    const int error = errno;
    ::unlinkat(toFolder, to.c_str(), 0);
    throwErrno(error);
  }
}

namespace {

void moveChecked(const OpenItem& item, int toFolder, const std::string& to) {
  constexpr const char* changed = "it changed while it was being moved and was left where it is";
  if (ItemIdentity::of(item.currentStatus()) != item.identity()) throw std::runtime_error(changed);
  if (item.isImmutable) changeImmutableAttribute(item.folder->get(), item.name, Immutable::no);
  renameWithoutReplacing(item.folder->get(), item.name, toFolder, to);
  if (item.isInTrash) return;
  const auto landed = readFileStatus(toFolder, to.c_str());
  if (landed && ItemIdentity::of(*landed) == item.identity()) return;
  try {
    renameWithoutReplacing(toFolder, to, item.folder->get(), item.name);
  } catch (const std::system_error& error) {
    // Its own item is there after all: a writer that has it open went on writing, and it cannot go back.
    if (landed && landed->inode == item.status.inode) return;
    throw std::runtime_error(std::string("another item took its name and could not be put back: ") + error.what());
  }
  throw std::runtime_error(changed);
}

}  // namespace

void renameChecked(const OpenItem& item, int toFolder, const std::string& to) {
  try {
    moveChecked(item, toFolder, to);
  } catch (const std::runtime_error&) {
    const auto still = readFileStatus(item.folder->get(), item.name.c_str());
    if (item.isImmutable && still && still->inode == item.status.inode) {
      changeImmutableAttribute(item.folder->get(), item.name, Immutable::yes);
    }
    throw;
  }
}

}  // namespace orvane
