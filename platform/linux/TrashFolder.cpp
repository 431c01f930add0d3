#include "platform/linux/TrashFolder.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileUrl.h"
#include "core/base/files/PathText.h"
#include "core/base/values/Sha256.h"
#include "core/base/values/Uuid.h"
#include "core/platform/SyncError.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <span>
#include <system_error>

namespace orvane {
namespace {

constexpr std::string_view recordSuffix = ".trashinfo";
constexpr std::size_t maxItemNameBytes = maxNameBytes - recordSuffix.size();
constexpr std::int64_t maxNumberedTries = 16;
constexpr std::int64_t maxTries = 32;
constexpr std::uint64_t maxSingleSyncs = 8;
constexpr std::size_t maxSizesBytes = 64UL * 1024 * 1024;
constexpr const char* sizesName = "directorysizes";
constexpr const char* newSizesName = ".directorysizes.orvane";

std::shared_ptr<const FileDescriptor> subfolder(int trash, const char* name) {
  if (::mkdirat(trash, name, 0700) == 0) {
    static_cast<void>(::fsync(trash));
  } else if (errno != EEXIST) {
    throwErrno();
  }
  FileDescriptor folder(::openat(trash, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder) throwErrno();
  return std::make_shared<const FileDescriptor>(std::move(folder));
}

// A name that cannot be looked at is not taken: what takes it never replaces, and says why it fails.
bool existsIn(int folder, const std::string& name) {
  return readFileStatus(folder, name.c_str()).has_value();
}

bool isRegular(int file) noexcept {
  struct stat status {};
  return ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

bool isRemoved(int folder, const char* name) noexcept {
  return ::unlinkat(folder, name, 0) == 0 || errno == ENOENT;
}

bool isWritten(int file, std::string_view text) noexcept {
  try {
    writeAll(file, text);
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

// "name.2.ext", shortened so that its record's name fits.
std::string nameWithSuffix(std::string_view wanted, std::string_view suffix) {
  const auto [base, extension] = splitName(wanted);
  std::string ending = suffix.empty() ? std::string() : fmt::format(".{}", suffix);
  if (!extension.empty() && extension.size() < 64) ending += fmt::format(".{}", extension);
  const auto kept = extension.size() < 64 ? base : wanted;
  return std::string(shortenedToBytes(kept, maxItemNameBytes - ending.size())) + ending;
}

// Bytes on the disk of a folder's tree, each hard link counted, as far as it can be read.
std::int64_t sizeOnDisk(int parent, const char* name) {
  struct stat status {};
  if (::fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return 0;
  std::int64_t total = static_cast<std::int64_t>(status.st_blocks) * 512;
  if (!S_ISDIR(status.st_mode)) return total;
  auto reader = DirectoryReader::open(parent, name, DirectoryReader::Links::refuse);
  while (reader) {
    const auto entry = reader->next();
    if (!entry) break;
    total += sizeOnDisk(reader->descriptor(), entry->nameBytes());
  }
  return total;
}

}  // namespace

TrashFolder::TrashFolder(std::string path, std::string topFolder, FileDescriptor folder)
    : m_path(std::move(path)),
      m_topFolder(std::move(topFolder)),
      m_folder(std::move(folder)),
      m_files(subfolder(m_folder.get(), "files")),
      m_info(subfolder(m_folder.get(), "info")),
      m_mount(mountOf(m_files->get(), "")) {}

bool TrashFolder::isCurrent() const noexcept {
  const auto same = [&](const char* name, int folder) {
    struct stat there {};
    struct stat open {};
    return ::stat(fmt::format("{}/{}", m_path, name).c_str(), &there) == 0 && ::fstat(folder, &open) == 0 &&
           there.st_dev == open.st_dev && there.st_ino == open.st_ino;
  };
  return same("files", m_files->get()) && same("info", m_info->get());
}

std::string TrashFolder::recordedPath(std::string_view original) const {
  if (m_topFolder.empty()) return std::string(original);
  std::string_view relative = original.substr(std::min(original.size(), m_topFolder.size()));
  while (relative.starts_with('/')) relative.remove_prefix(1);
  return std::string(relative);
}

bool TrashFolder::isFree(const std::string& name) const {
  return !m_reserved.contains(name) && !existsIn(m_info->get(), recordName(name)) && !existsIn(m_files->get(), name);
}

std::string TrashFolder::reserveName(std::string_view wanted) {
  const std::lock_guard lock(m_mutex);
  std::string name = nameWithSuffix(wanted, {});
  if (!isFree(name)) {
    auto& number = m_numbers.try_emplace(name, 1).first->second;
    std::int64_t tries = 0;
    do {
      const bool numbered = ++tries <= maxNumberedTries;
      if (tries > maxTries) throwErrno(EEXIST);
      name = nameWithSuffix(wanted, numbered ? std::to_string(++number) : Uuid::random().toString());
    } while (!isFree(name));
  }
  m_reserved.insert(name);
  return name;
}

void TrashFolder::release(const std::string& name) noexcept {
  const std::lock_guard lock(m_mutex);
  m_reserved.erase(name);
}

std::uint64_t TrashFolder::noteRecordWritten() {
  const std::lock_guard lock(m_mutex);
  ++m_unsynced;
  return ++m_lastTicket;
}

void TrashFolder::makeRecordDurable(std::uint64_t ticket, int record) {
  const std::lock_guard lock(m_mutex);
  if (ticket <= m_durableTicket) return;
  if (m_unsynced > maxSingleSyncs) {
    if (::syncfs(m_info->get()) != 0) throw SyncError(errorText(errno));
    m_durableTicket = m_lastTicket;
    m_unsynced = 0;
    return;
  }
  if (::fsync(record) != 0) throw SyncError(errorText(errno));
  --m_unsynced;
}

std::string TrashFolder::recordName(std::string_view itemName) {
  return std::string(itemName) + std::string(recordSuffix);
}

std::string TrashFolder::newRecordName(std::string_view itemName) {
  Sha256 digest;
  digest.update(std::as_bytes(std::span(itemName)));
  return fmt::format(".{}.tmp", digestText(digest.finish()));
}

void TrashFolder::noteFolderSize(const std::string& name) const noexcept {
  struct stat record {};
  if (::fstatat(m_info->get(), recordName(name).c_str(), &record, AT_SYMLINK_NOFOLLOW) != 0) return;
  const std::string line = fmt::format("{} {} {}\n", sizeOnDisk(m_files->get(), name.c_str()),
                                       static_cast<std::int64_t>(record.st_mtime), percentEncodedPath(name));
  const FileDescriptor sizes(
      ::openat(m_folder.get(), sizesName, O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
  if (sizes && isRegular(sizes.get())) static_cast<void>(!::write(sizes.get(), line.data(), line.size()));
}

void TrashFolder::forgetFolderSize(const std::string& name) const noexcept {
  try {
    const FileDescriptor sizes(::openat(m_folder.get(), sizesName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!sizes || !isRegular(sizes.get())) return;
    const std::string text = readAll(sizes.get(), maxSizesBytes);
    const std::string ending = " " + percentEncodedPath(name);
    std::string kept;
    for (std::size_t start = 0; start < text.size();) {
      const auto end = std::min(text.find('\n', start), text.size() - 1);
      const std::string_view line = std::string_view(text).substr(start, end - start);
      if (!line.ends_with(ending)) kept.append(text, start, end + 1 - start);
      start = end + 1;
    }
    if (kept.size() == text.size()) return;
    const FileDescriptor file(
        ::openat(m_folder.get(), newSizesName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file) return;
    if (!isWritten(file.get(), kept) || ::renameat(m_folder.get(), newSizesName, m_folder.get(), sizesName) != 0) {
      ::unlinkat(m_folder.get(), newSizesName, 0);
    }
  } catch (const std::exception&) {
    // Desktops measure the folder again when the cache does not fit.
  }
}

bool TrashFolder::removeRecord(const std::string& name) const noexcept {
  if (readFileStatus(m_files->get(), name.c_str())) return true;
  if (errno != ENOENT) return false;
  return isRemoved(m_info->get(), recordName(name).c_str());
}

bool TrashFolder::removeNewRecord(const std::string& name) const noexcept {
  return isRemoved(m_info->get(), newRecordName(name).c_str());
}

bool TrashFolder::removeNewSizes() const noexcept {
  return isRemoved(m_folder.get(), newSizesName);
}

}  // namespace orvane
