#include "core/base/files/DirectoryReader.h"

#include <dirent.h>
#include <fcntl.h>

namespace orvane {
namespace {

FileType typeOf(unsigned char type) noexcept {
  switch (type) {
    case DT_REG:
      return FileType::regular;
    case DT_DIR:
      return FileType::directory;
    case DT_LNK:
      return FileType::symbolicLink;
    case DT_UNKNOWN:
      return FileType::unknown;
    default:
      return FileType::other;
  }
}

}  // namespace

void DirectoryReader::Closer::operator()(void* stream) const noexcept {
  ::closedir(static_cast<DIR*>(stream));
}

std::optional<DirectoryReader> DirectoryReader::open(int parent, const char* name, Links links) noexcept {
  const int followFlag = links == Links::refuse ? O_NOFOLLOW : 0;
  return from(FileDescriptor(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | followFlag)));
}

std::optional<DirectoryReader> DirectoryReader::from(FileDescriptor folder) noexcept {
  if (!folder) return std::nullopt;
  DIR* stream = ::fdopendir(folder.get());
  if (stream == nullptr) return std::nullopt;
  static_cast<void>(folder.release());
  return DirectoryReader(stream);
}

std::optional<DirectoryReader::Entry> DirectoryReader::next() noexcept {
  while (const dirent* entry = ::readdir(static_cast<DIR*>(m_stream.get()))) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    return Entry{name, typeOf(entry->d_type)};
  }
  return std::nullopt;
}

int DirectoryReader::descriptor() const noexcept {
  return ::dirfd(static_cast<DIR*>(m_stream.get()));
}

}  // namespace orvane
