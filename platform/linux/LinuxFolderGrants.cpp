#include "platform/linux/LinuxFolderGrants.h"

#include "core/base/files/FileDescriptor.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <cerrno>
#include <stdexcept>

namespace orvane {

std::string LinuxFolderGrants::makeBookmark(const FileUrl& folder) {
  const FileDescriptor opened(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened) throw std::runtime_error(fmt::format("{}: {}", folder.path(), errorText(errno)));
  return folder.absoluteString();
}

std::optional<FolderGrants::Resolved> LinuxFolderGrants::resolve(const std::string& bookmark) {
  auto folder = FileUrl::fromAbsoluteString(bookmark);
  if (!folder) return std::nullopt;
  return Resolved{*std::move(folder), false};
}

bool LinuxFolderGrants::startAccess(const FileUrl& /*folder*/) {
  return true;
}

void LinuxFolderGrants::stopAccess(const FileUrl& /*folder*/) noexcept {}

}  // namespace orvane
