#pragma once

#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// Reads the entries of one folder in the order in which the file system gives them, "." and ".." left out. The port
// defines how the entries come from the system: the stream and the functions that use it.
class DirectoryReader {
 public:
  struct Entry {
    // Ends with a NUL byte and lives until the next call of next().
    std::string_view name;
    // `unknown` where the file system does not tell; ask the status then.
    FileType type = FileType::unknown;

    [[nodiscard]] const char* nameBytes() const noexcept { return name.data(); }
  };

  // The choice for a symbolic link at the name of the folder.
  enum class Links : std::uint8_t { follow, refuse };
  // Opens the folder `name` inside the folder open at `parent` (AT_FDCWD for a path). Absent when it cannot be
  // opened; errno tells why.
  static std::optional<DirectoryReader> open(int parent, const char* name, Links links) noexcept;
  // Takes over a folder that is already open. Absent when it cannot be read.
  static std::optional<DirectoryReader> from(FileDescriptor folder) noexcept;

  // The next entry; absent at the end and where the folder cannot be read further.
  std::optional<Entry> next() noexcept;
  // Descriptor for relative calls, owned by this reader.
  [[nodiscard]] int descriptor() const noexcept;

 private:
  struct Stream;
  struct Closer {
    void operator()(Stream* stream) const noexcept;
  };
  explicit DirectoryReader(Stream* stream) noexcept : m_stream(stream) {}
  // An entry from the fields of POSIX's dirent; absent for "." and "..".
  static std::optional<Entry> entryFrom(const char* name, unsigned char type) noexcept;

  std::unique_ptr<Stream, Closer> m_stream;
};

}  // namespace orvane
