#include "core/duplicates/ContentFile.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

namespace orvane {
namespace {

constexpr int readFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
constexpr std::int64_t bytesPerBlock = 512;  // of st_blocks

FileDescriptor openFile(const std::string& path) noexcept {
  FileDescriptor file(::open(path.c_str(), readFlags));
  if (file || errno != ENAMETOOLONG) return file;
  const auto folder = openFolderWithoutLinks(AT_FDCWD, canonicalPath(parentPath(path)));
  if (!folder) return {};
  return FileDescriptor(::openat(folder.get(), std::string(lastComponent(path)).c_str(), readFlags));
}

FileTime statusChange(const struct stat& status) noexcept {
  return {status.st_ctim.tv_sec, status.st_ctim.tv_nsec};
}

}  // namespace

std::optional<ContentFile> ContentFile::open(const std::string& path) noexcept {
  ContentFile result;
  result.m_file = openFile(path);
  struct stat status {};
  if (!result.m_file || ::fstat(result.m_file.get(), &status) != 0) return std::nullopt;
  if (!S_ISREG(status.st_mode)) {
    errno = EINVAL;
    return std::nullopt;
  }
  result.m_identity = ItemIdentity::of(fileStatusFrom(status));
  result.m_statusChanged = statusChange(status);
  result.m_isSparse = status.st_blocks < status.st_size / bytesPerBlock;
  return result;
}

std::size_t ContentFile::readAtOnce(const std::string& path, std::span<std::byte> buffer) noexcept {
  const auto file = openFile(path);
  if (!file) return 0;
  ssize_t count = -1;
  do {
    // A read shorter than the buffer ends at the file's end: looking again for it would be one more call.
    count = ::pread(file.get(), buffer.data(), buffer.size(), 0);
  } while (count < 0 && errno == EINTR);
  return count < 0 ? 0 : static_cast<std::size_t>(count);
}

bool ContentFile::isUnchanged() const noexcept {
  struct stat status {};
  return ::fstat(m_file.get(), &status) == 0 && ItemIdentity::of(fileStatusFrom(status)) == m_identity;
}

bool ContentFile::mayBeSameThroughOtherMount(const ContentFile& other) const noexcept {
  auto here = m_identity;
  here.device = other.m_identity.device;
  return here == other.m_identity && m_statusChanged == other.m_statusChanged;
}

std::size_t ContentFile::read(std::int64_t offset, std::span<std::byte> buffer) noexcept {
  std::size_t done = 0;
  while (done < buffer.size()) {
    const auto rest = buffer.subspan(done);
    const auto count = ::pread(m_file.get(), rest.data(), rest.size(), offset + static_cast<std::int64_t>(done));
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

bool ContentFile::isHole(std::int64_t offset, std::size_t length) noexcept {
  if (!m_isSparse) return false;
  if (offset < m_probed || offset >= m_nextData) {
    const auto next = ::lseek(m_file.get(), offset, SEEK_DATA);
    // Behind the last data there is nothing but a hole.
    if (next < 0 && errno != ENXIO) m_isSparse = false;
    m_probed = offset;
    m_nextData = next < 0 ? std::numeric_limits<std::int64_t>::max() : next;
  }
  return m_isSparse && m_nextData - offset >= static_cast<std::int64_t>(length);
}

void ContentFile::expectWholeRead() noexcept {
  static_cast<void>(::posix_fadvise(m_file.get(), 0, 0, POSIX_FADV_SEQUENTIAL));
}

}  // namespace orvane
