#include "core/base/files/AtomicFile.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileLock.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/base/values/Uuid.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <system_error>

namespace orvane {
namespace {

constexpr std::size_t bufferSize = 256 * 1024;
constexpr std::string_view temporarySuffix = ".tmp";

// Whether `name` is that of a temporary file of the file `target`.
bool isTemporary(std::string_view name, std::string_view target) {
  if (!name.starts_with(target) || !name.ends_with(temporarySuffix)) return false;
  name.remove_prefix(target.size());
  if (name.size() <= temporarySuffix.size() || name.front() != '.') return false;
  return Uuid::parse(name.substr(1, name.size() - 1 - temporarySuffix.size())).has_value();
}

// Calls `found` with the folder's descriptor and the name of each temporary file of `path`, until it returns false.
template <typename Found>
void findTemporaries(const std::string& path, Found found) {
  const std::string folder(parentPath(path));
  auto reader = DirectoryReader::open(AT_FDCWD, folder.c_str(), DirectoryReader::Links::follow);
  while (reader) {
    const auto entry = reader->next();
    if (!entry) return;
    if (isTemporary(entry->name, lastComponent(path)) && !found(reader->descriptor(), entry->nameBytes())) return;
  }
}

}  // namespace

AtomicFile::AtomicFile(std::string path, unsigned mode)
    : m_path(std::move(path)),
      m_temporaryPath(m_path + "." + Uuid::random().toString() + std::string(temporarySuffix)) {
  m_file.reset(::open(m_temporaryPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
  if (!m_file) throwErrno();
}

AtomicFile::~AtomicFile() {
  if (!m_temporaryPath.empty()) ::unlink(m_temporaryPath.c_str());
}

void AtomicFile::write(std::string_view bytes) {
  m_buffer.append(bytes);
  if (m_buffer.size() >= bufferSize) flushBuffer();
}

void AtomicFile::flushBuffer() {
  writeAll(m_file.get(), m_buffer);
  m_buffer.clear();
}

void AtomicFile::commit() {
  flushBuffer();
  if (::fsync(m_file.get()) != 0) throwErrno();
  m_file.reset();
  if (std::rename(m_temporaryPath.c_str(), m_path.c_str()) != 0) throwErrno();
  m_temporaryPath.clear();
  syncFolder(std::string(parentPath(m_path)));
}

void AtomicFile::replace(const std::string& path, std::string_view bytes, unsigned mode) {
  AtomicFile file(path, mode);
  file.write(bytes);
  file.commit();
}

void AtomicFile::removeAbandoned(const std::string& path) noexcept {
  findTemporaries(path, [](int folder, const char* name) {
    ::unlinkat(folder, name, 0);
    return true;
  });
}

void AtomicFile::removeAbandoned(const std::string& path, const std::string& lockPath) noexcept {
  bool any = false;
  findTemporaries(path, [&](int, const char*) { return !(any = true); });
  if (!any) return;
  try {
    const auto lock = FileLock::acquire(lockPath, std::chrono::milliseconds(0));
    removeAbandoned(path);
  } catch (const std::system_error&) {
    // Left for a later start.
  }
}

void appendDurably(const std::string& path, std::string_view text) {
  const FileDescriptor file(
      ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0) throwErrno();
  if (!S_ISREG(status.st_mode)) throwErrno(EINVAL);
  writeAll(file.get(), text);
  if (::fdatasync(file.get()) != 0) throwErrno();
}

void syncFolder(const std::string& path) {
  const FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder || ::fsync(folder.get()) != 0) throwErrno();
}

namespace {

bool isFolder(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) {
    if (!S_ISDIR(status.st_mode)) throwErrno(ENOTDIR);
    return true;
  }
  return errno == ENAMETOOLONG && openFolderWithoutLinks(AT_FDCWD, path);
}

template <typename AfterEach>
void createMissingFolders(const std::string& path, unsigned mode, AfterEach afterEach) {
  if (isFolder(path)) return;
  if (errno != ENOENT) throwErrno();
  const std::string parent(parentPath(path));
  if (parent.empty() || parent == path) throwErrno(ENOENT);
  createMissingFolders(parent, mode, afterEach);
  const bool isNew = ::mkdir(path.c_str(), mode) == 0;
  if (!isNew && errno != EEXIST) throwErrno();
  afterEach(parent, isNew ? &path : nullptr);
}

}  // namespace

void createFolders(const std::string& path, unsigned mode) {
  createMissingFolders(path, mode, [](const std::string&, const std::string*) {});
}

std::vector<std::string> createFoldersDurably(const std::string& path, unsigned mode) {
  std::vector<std::string> made;
  createMissingFolders(path, mode, [&](const std::string& parent, const std::string* folder) {
    syncFolder(parent);
    if (folder != nullptr) made.push_back(*folder);
  });
  return made;
}

}  // namespace orvane
