#include "core/base/files/DirectoryReader.h"

#include <dirent.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace orvane {

namespace {

struct Block {
  alignas(dirent64) std::array<char, 32 * 1024> bytes;
};

// Of the folder that this thread read last: an allocation of this size in every folder makes malloc tidy up each time.
thread_local std::unique_ptr<Block> spareBlock;

}  // namespace

// Reads by getdents64(2). The C library's stream adds a lock to each entry and system calls to each folder.
struct DirectoryReader::Stream {
  explicit Stream(FileDescriptor opened) : folder(std::move(opened)), block(std::move(spareBlock)) {
    if (!block) block.reset(new (std::nothrow) Block);
  }
  ~Stream() { spareBlock = std::move(block); }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  // The number of bytes read: zero at the end, negative with errno set where the folder cannot be read.
  long readBlock() noexcept {
    const auto count = ::syscall(SYS_getdents64, folder.get(), block->bytes.data(), block->bytes.size());
    position = 0;
    end = count > 0 ? static_cast<std::size_t>(count) : 0;
    return count;
  }

  FileDescriptor folder;
  std::unique_ptr<Block> block;
  std::size_t position = 0;
  std::size_t end = 0;
};

void DirectoryReader::Closer::operator()(Stream* stream) const noexcept {
  delete stream;
}

std::optional<DirectoryReader> DirectoryReader::from(FileDescriptor folder) noexcept {
  if (!folder) return std::nullopt;
  DirectoryReader reader(new (std::nothrow) Stream(std::move(folder)));
  if (!reader.m_stream || !reader.m_stream->block) {
    errno = ENOMEM;
    return std::nullopt;
  }
  if (reader.m_stream->readBlock() < 0) return std::nullopt;
  return reader;
}

std::optional<DirectoryReader::Entry> DirectoryReader::next() noexcept {
  auto& stream = *m_stream;
  do {
    while (stream.position < stream.end) {
      // glibc's dirent64 has the layout of the kernel's linux_dirent64.
      const auto* record = reinterpret_cast<const dirent64*>(stream.block->bytes.data() + stream.position);
      stream.position += record->d_reclen;
      if (const auto entry = entryFrom(record->d_name, record->d_type)) return entry;
    }
  } while (stream.readBlock() > 0);
  return std::nullopt;
}

int DirectoryReader::descriptor() const noexcept {
  return m_stream->folder.get();
}

}  // namespace orvane
