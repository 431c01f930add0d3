#include "platform/linux/VolumeCopy.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {
namespace {

constexpr std::size_t blockSize = 1024 * 1024;
// Each level holds two descriptors open, also while a copy is removed.
constexpr int maxLevels = 1000;

using InodeKey = std::pair<dev_t, ino_t>;

struct stat statusIn(int folder, const std::string& name) {
  struct stat status {};
  if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) throwErrno();
  return status;
}

FileDescriptor openForReading(int folder, const std::string& name, int extraFlags = 0) {
  FileDescriptor file(::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | extraFlags));
  if (!file) throwErrno();
  return file;
}

std::vector<std::string> namesIn(int folder) {
  std::vector<std::string> names;
  auto reader = DirectoryReader::open(folder, ".", DirectoryReader::Links::refuse);
  if (!reader) throwErrno();
  while (const auto entry = reader->next()) names.emplace_back(entry->name);
  std::sort(names.begin(), names.end());
  return names;
}

std::string linkTarget(int folder, const std::string& name) {
  std::string target(4096, '\0');
  const auto length = ::readlinkat(folder, name.c_str(), target.data(), target.size());
  if (length < 0) throwErrno();
  target.resize(static_cast<std::size_t>(length));
  return target;
}

bool isNotForThisUser(int error) noexcept {
  return error == EACCES || error == EPERM || error == ENODATA || error == EOPNOTSUPP;
}

// Throws std::system_error where one that this user may read cannot be read.
std::map<std::string, std::string> extendedAttributes(int file) {
  std::map<std::string, std::string> result;
  const auto size = ::flistxattr(file, nullptr, 0);
  if (size < 0 && errno != EOPNOTSUPP) throwErrno();
  if (size <= 0) return result;
  std::string names(static_cast<std::size_t>(size), '\0');
  if (::flistxattr(file, names.data(), names.size()) != size) throwErrno(EBUSY);
  for (std::size_t start = 0; start < names.size();) {
    const std::string name = names.c_str() + start;
    start += name.size() + 1;
    const auto length = ::fgetxattr(file, name.c_str(), nullptr, 0);
    if (length < 0 && !isNotForThisUser(errno)) throwErrno();
    if (length < 0) continue;
    std::string value(static_cast<std::size_t>(length), '\0');
    if (::fgetxattr(file, name.c_str(), value.data(), value.size()) != length) throwErrno(EBUSY);
    result[name] = std::move(value);
  }
  return result;
}

// Whether a copy without this attribute is still whole: a volume without access lists takes none, and labels of the
// system are for the system to give. A user's own attributes, and any that a full disk refuses, belong to the item.
bool mayStayBehind(std::string_view attribute, int error) {
  if (attribute.starts_with("user.")) return false;
  if (error == EOPNOTSUPP) return true;
  return !attribute.starts_with("system.posix_acl_") && (error == EPERM || error == EACCES || error == EINVAL);
}

void copyRange(int from, int to, off_t start, off_t end) {
  std::vector<char> block(blockSize);
  while (start < end) {
    const auto wanted = std::min<off_t>(static_cast<off_t>(block.size()), end - start);
    const auto count = ::pread(from, block.data(), static_cast<std::size_t>(wanted), start);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throwErrno();
    if (count == 0) throw std::runtime_error("it shrank while it was being copied");
    if (::lseek(to, start, SEEK_SET) < 0) throwErrno();
    writeAll(to, {block.data(), static_cast<std::size_t>(count)});
    start += count;
  }
}

// Only what holds data, so that a sparse file stays sparse.
void copyContent(int from, int to, off_t size) {
  if (::ftruncate(to, size) != 0) throwErrno();
  off_t position = 0;
  while (position < size) {
    const off_t data = ::lseek(from, position, SEEK_DATA);
    if (data < 0 && errno == ENXIO) return;
    if (data < 0) {
      copyRange(from, to, position, size);
      return;
    }
    off_t hole = ::lseek(from, data, SEEK_HOLE);
    if (hole < 0) hole = size;
    copyRange(from, to, data, std::min(hole, size));
    position = hole;
  }
}

bool sameContent(int left, int right, off_t size) {
  std::vector<char> a(blockSize);
  std::vector<char> b(blockSize);
  for (off_t position = 0; position < size;) {
    const auto wanted = static_cast<std::size_t>(std::min<off_t>(static_cast<off_t>(blockSize), size - position));
    const auto count = ::pread(left, a.data(), wanted, position);
    if (count <= 0 || ::pread(right, b.data(), static_cast<std::size_t>(count), position) != count) return false;
    if (std::memcmp(a.data(), b.data(), static_cast<std::size_t>(count)) != 0) return false;
    position += count;
  }
  return true;
}

class Copier {
 public:
  explicit Copier(int destinationRoot) : m_destinationRoot(destinationRoot) {}

  // `place` is the copy's path from the destination root.
  void copy(int fromFolder, const std::string& from, int toFolder, const std::string& to, const std::string& place) {
    const auto status = statusIn(fromFolder, from);
    if (S_ISDIR(status.st_mode)) {
      copyFolder(fromFolder, from, toFolder, to, place, status);
    } else if (S_ISREG(status.st_mode)) {
      copyFile(fromFolder, from, toFolder, to, place, status);
    } else if (S_ISLNK(status.st_mode)) {
      if (::symlinkat(linkTarget(fromFolder, from).c_str(), toFolder, to.c_str()) != 0) throwErrno();
      finishByName(toFolder, to, status);
    } else {
      if (::mknodat(toFolder, to.c_str(), status.st_mode, status.st_rdev) != 0) throwErrno();
      finishByName(toFolder, to, status);
    }
  }

 private:
  void copyFolder(int fromFolder, const std::string& from, int toFolder, const std::string& to,
                  const std::string& place, const struct stat& status) {
    if (m_level == maxLevels) {
      throw std::runtime_error("its folders are nested too deeply to be copied to another volume");
    }
    ++m_level;
    const auto source = openForReading(fromFolder, from, O_DIRECTORY);
    if (::mkdirat(toFolder, to.c_str(), 0700) != 0) throwErrno();
    const auto copy = openForReading(toFolder, to, O_DIRECTORY);
    for (const auto& name : namesIn(source.get())) {
      this->copy(source.get(), name, copy.get(), name, joinPath(place, name));
    }
    finishOpen(source.get(), copy.get(), status);
    --m_level;
  }

  void copyFile(int fromFolder, const std::string& from, int toFolder, const std::string& to, const std::string& place,
                const struct stat& status) {
    if (status.st_nlink > 1) {
      const auto [first, isNew] = m_firstNames.emplace(InodeKey{status.st_dev, status.st_ino}, place);
      if (!isNew) {
        if (::linkat(m_destinationRoot, first->second.c_str(), toFolder, to.c_str(), 0) != 0) throwErrno();
        return;
      }
    }
    const auto source = openForReading(fromFolder, from);
    const FileDescriptor copy(::openat(toFolder, to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!copy) throwErrno();
    copyContent(source.get(), copy.get(), status.st_size);
    finishOpen(source.get(), copy.get(), status);
  }

  // The owner before attributes and mode: a new one takes capabilities and set-user-ID away. Times last: writing
  // changes them.
  static void finishOpen(int source, int copy, const struct stat& status) {
    static_cast<void>(!::fchown(copy, status.st_uid, status.st_gid));
    for (const auto& [name, value] : extendedAttributes(source)) {
      if (::fsetxattr(copy, name.c_str(), value.data(), value.size(), 0) != 0 && !mayStayBehind(name, errno))
        throwErrno();
    }
    if (::fchmod(copy, status.st_mode & 07777) != 0) throwErrno();
    const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
    if (::futimens(copy, times.data()) != 0) throwErrno();
    if (::fsync(copy) != 0) throwErrno();
  }

  static void finishByName(int folder, const std::string& name, const struct stat& status) {
    static_cast<void>(!::fchownat(folder, name.c_str(), status.st_uid, status.st_gid, AT_SYMLINK_NOFOLLOW));
    const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
    if (::utimensat(folder, name.c_str(), times.data(), AT_SYMLINK_NOFOLLOW) != 0) throwErrno();
  }

  int m_destinationRoot;
  int m_level = 0;
  std::map<InodeKey, std::string> m_firstNames;
};

void requireSame(bool same) {
  if (!same) throw std::runtime_error("the copy on the other volume is not the same; nothing was moved");
}

void compare(int leftFolder, const std::string& left, int rightFolder, const std::string& right) {
  const auto a = statusIn(leftFolder, left);
  const auto b = statusIn(rightFolder, right);
  requireSame(a.st_mode == b.st_mode && a.st_mtim.tv_sec == b.st_mtim.tv_sec);
  if (S_ISLNK(a.st_mode)) requireSame(linkTarget(leftFolder, left) == linkTarget(rightFolder, right));
  if (S_ISREG(a.st_mode)) {
    requireSame(a.st_size == b.st_size);
    const auto leftFile = openForReading(leftFolder, left);
    const auto rightFile = openForReading(rightFolder, right);
    requireSame(sameContent(leftFile.get(), rightFile.get(), a.st_size));
    return;
  }
  if (!S_ISDIR(a.st_mode)) return;
  const auto leftOpen = openForReading(leftFolder, left, O_DIRECTORY);
  const auto rightOpen = openForReading(rightFolder, right, O_DIRECTORY);
  const auto names = namesIn(leftOpen.get());
  requireSame(names == namesIn(rightOpen.get()));
  for (const auto& name : names) compare(leftOpen.get(), name, rightOpen.get(), name);
}

}  // namespace

void copyToVolume(const OpenItem& item, int destinationFolder, const std::string& name) {
  try {
    Copier(destinationFolder).copy(item.folder->get(), item.name, destinationFolder, name, name);
    compare(item.folder->get(), item.name, destinationFolder, name);
    if (ItemIdentity::of(item.currentStatus()) != item.identity()) {
      throw std::runtime_error("it changed while it was being copied");
    }
  } catch (const std::exception&) {
    removeCopy(destinationFolder, name);
    throw;
  }
}

void removeCopy(int folder, const std::string& name) noexcept {
  if (::unlinkat(folder, name.c_str(), 0) == 0 || errno == ENOENT) return;
  // A folder that was copied without write permission for its owner has to get it back before it can be emptied.
  const FileDescriptor open(::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!open) return;
  static_cast<void>(::fchmod(open.get(), 0700));
  auto reader = DirectoryReader::open(open.get(), ".", DirectoryReader::Links::refuse);
  while (reader) {
    const auto entry = reader->next();
    if (!entry) break;
    removeCopy(open.get(), std::string(entry->name));
  }
  ::unlinkat(folder, name.c_str(), AT_REMOVEDIR);
}

}  // namespace orvane
