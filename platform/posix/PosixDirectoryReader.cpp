#include "core/base/files/DirectoryReader.h"

#include <dirent.h>

#include <cerrno>
#include <new>

namespace orvane {

// The C library's stream.
struct DirectoryReader::Stream {
  DIR* folder;
};

void DirectoryReader::Closer::operator()(Stream* stream) const noexcept {
  ::closedir(stream->folder);
  delete stream;
}

std::optional<DirectoryReader> DirectoryReader::from(FileDescriptor folder) noexcept {
  if (!folder) return std::nullopt;
  DIR* opened = ::fdopendir(folder.get());
  if (opened == nullptr) return std::nullopt;
  static_cast<void>(folder.release());
  auto* stream = new (std::nothrow) Stream{opened};
  if (stream != nullptr) return DirectoryReader(stream);
  ::closedir(opened);
  errno = ENOMEM;
  return std::nullopt;
}

std::optional<DirectoryReader::Entry> DirectoryReader::next() noexcept {
  while (const dirent* record = ::readdir(m_stream->folder)) {
    if (const auto entry = entryFrom(record->d_name, record->d_type)) return entry;
  }
  return std::nullopt;
}

int DirectoryReader::descriptor() const noexcept {
  return ::dirfd(m_stream->folder);
}

}  // namespace orvane
