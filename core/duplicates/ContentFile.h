#pragma once

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace orvane {

// A regular file open for reading. Reads always go to the file that was opened, whatever happens to its name.
class ContentFile {
 public:
  // Never blocks, whatever has the name by now, and follows no link that stands at it. Absent with errno set when it
  // cannot be opened; EINVAL where it is no regular file.
  static std::optional<ContentFile> open(const std::string& path) noexcept;

  // Opens, reads and closes at once whatever file has the name by now, without a look at its status: one system call
  // less for each of very many files. Returns how many bytes were read, zero where it cannot be read.
  [[nodiscard]] static std::size_t readAtOnce(const std::string& path, std::span<std::byte> buffer) noexcept;

  // As it was when it was opened.
  [[nodiscard]] const ItemIdentity& identity() const noexcept { return m_identity; }
  // Whether nothing has written to it since.
  [[nodiscard]] bool isUnchanged() const noexcept;
  // Whether this may be the other file seen through another mount: on another device, but the same in everything that
  // two files do not share by chance.
  [[nodiscard]] bool mayBeSameThroughOtherMount(const ContentFile& other) const noexcept;

  // Reads as much as `buffer` takes; less only at the end of the file and where the disk fails.
  [[nodiscard]] std::size_t read(std::int64_t offset, std::span<std::byte> buffer) noexcept;

  // Whether the file takes less room than its size: parts of it are holes, which read as zeros.
  [[nodiscard]] bool isSparse() const noexcept { return m_isSparse; }
  // Whether the whole range is known to be a hole, so that it need not be read.
  [[nodiscard]] bool isHole(std::int64_t offset, std::size_t length) noexcept;

  // Tells the system that the file will be read from its beginning to its end.
  void expectWholeRead() noexcept;

 private:
  ContentFile() = default;

  FileDescriptor m_file;
  ItemIdentity m_identity;
  FileTime m_statusChanged;
  bool m_isSparse = false;
  // The bytes from m_probed up to m_nextData are a hole.
  std::int64_t m_probed = 0;
  std::int64_t m_nextData = 0;
};

}  // namespace orvane
