#pragma once

#include "core/base/files/FileDescriptor.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Replaces a file's content so that a reader, and the disk after a power cut, holds the old content or the new, never a
// part: temporary file beside it, fsync, rename, fsync of the folder. Without commit() the old
// content stays.
class AtomicFile {
 public:
  // `mode` is that of the new file. Throws std::system_error.
  explicit AtomicFile(std::string path, unsigned mode = 0600);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  void write(std::string_view bytes);
  void commit();

  // All at once.
  static void replace(const std::string& path, std::string_view bytes, unsigned mode = 0600);

  // Removes what writers of `path` left that died before commit(). The caller holds the lock under which they write.
  static void removeAbandoned(const std::string& path) noexcept;
  // The same for a caller without that lock; what somebody who holds it left is theirs to remove.
  static void removeAbandoned(const std::string& path, const std::string& lockPath) noexcept;

 private:
  void flushBuffer();

  std::string m_path;
  std::string m_temporaryPath;
  FileDescriptor m_file;
  std::string m_buffer;
};

// Adds to the end of a regular file, which is made where it is missing. Durable when it returns. Throws
// std::system_error.
void appendDurably(const std::string& path, std::string_view text);

// Makes the names in a folder durable. Throws std::system_error.
void syncFolder(const std::string& path);

// Creates a folder with its parents, for this user alone where they are new. Throws std::system_error.
void createFolders(const std::string& path, unsigned mode = 0700);
// The same, with the names of the new folders made durable. Returns their paths, outermost first.
std::vector<std::string> createFoldersDurably(const std::string& path, unsigned mode = 0700);

}  // namespace orvane
