#include "core/base/files/PathAccess.h"

#include "core/base/files/PathText.h"
#include "core/base/files/SearchFlags.h"

#include <fcntl.h>

#include <cerrno>

namespace orvane {
namespace {
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;
}

FileDescriptor openFolderWithoutLinks(int base, std::string_view relative) noexcept {
  while (relative.size() > 1 && relative.ends_with('/')) relative.remove_suffix(1);
  // Folders on the way need not be listable.
  const auto flags = [&](std::size_t end) { return end < relative.size() ? folderSearchFlags : folderFlags; };
  const bool isAbsolute = relative.starts_with('/');
  std::size_t start = isAbsolute ? 1 : 0;
  FileDescriptor folder(isAbsolute ? ::open("/", flags(1)) : ::openat(base, ".", flags(0)));
  while (folder && start < relative.size()) {
    auto end = relative.find('/', start);
    if (end == std::string_view::npos) end = relative.size();
    if (end > start) {
      const std::string component(relative.substr(start, end - start));
      folder = FileDescriptor(::openat(folder.get(), component.c_str(), flags(end)));
    }
    start = end + 1;
  }
  return folder;
}

std::optional<FileStatus> readPathStatus(const std::string& path) noexcept {
  if (auto status = readFileStatus(AT_FDCWD, path.c_str()); status || errno != ENAMETOOLONG) return status;
  const auto folder = openFolderWithoutLinks(AT_FDCWD, parentPath(path));
  if (!folder) return std::nullopt;
  return readFileStatus(folder.get(), std::string(lastComponent(path)).c_str());
}

Presence presenceAt(const std::string& path) noexcept {
  if (readPathStatus(path)) return Presence::there;
  if (errno != ENOENT && errno != ENOTDIR) return Presence::unreachable;
  return readPathStatus(std::string(parentPath(path))) ? Presence::nothing : Presence::unreachable;
}

bool PathLooks::holdFolderOf(const std::string& path) {
  if (path.ends_with('/')) return false;
  const auto folder = parentPath(path);
  if (folder != m_path) {
    m_path = folder;
    m_folder = FileDescriptor(::open(m_path.c_str(), folderSearchFlags & ~O_NOFOLLOW));
  }
  return static_cast<bool>(m_folder);
}

std::optional<FileStatus> PathLooks::readStatus(const std::string& path) {
  if (!holdFolderOf(path)) return readPathStatus(path);
  return readFileStatus(m_folder.get(), path.c_str() + (path.size() - lastComponent(path).size()));
}

Presence PathLooks::presenceAt(const std::string& path) {
  if (!holdFolderOf(path)) return orvane::presenceAt(path);
  if (readStatus(path)) return Presence::there;
  return errno == ENOENT || errno == ENOTDIR ? Presence::nothing : Presence::unreachable;
}

}  // namespace orvane
