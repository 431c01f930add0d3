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

std::optional<DirectoryReader> DirectoryReader::open(int parent, const char* name, Links links) noexcept {
  const int followFlag = links == Links::refuse ? O_NOFOLLOW : 0;
  return from(FileDescriptor(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | followFlag)));
}

std::optional<DirectoryReader::Entry> DirectoryReader::entryFrom(const char* name, unsigned char type) noexcept {
  const std::string_view text = name;
  if (text == "." || text == "..") return std::nullopt;
  return Entry{text, typeOf(type)};
}

}  // namespace orvane
