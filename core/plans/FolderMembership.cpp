#include "core/plans/FolderMembership.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace orvane {
namespace {

constexpr std::size_t looksBeforeListing = 64;

}  // namespace

FolderMembership::FolderMembership(const FileUrl& folder) {
  if (folder.path().empty()) return;
  m_canonicalPath = canonicalPath(folder.path());
  m_folder = openFolderWithoutLinks(AT_FDCWD, m_canonicalPath);
  struct stat status {};
  if (!m_folder || ::fstat(m_folder.get(), &status) != 0) {
    m_folder.reset();
    return;
  }
  m_device = status.st_dev;
  m_inode = status.st_ino;
}

bool FolderMembership::hasRegularFile(const FileUrl& file) {
  if (!m_folder) return false;
  const auto folder = parentPath(file.path());
  if (folder != m_askedFolder) {
    m_askedFolder = folder;
    m_askedFolderIsThis = isThisFolder(m_askedFolder);
  }
  if (!m_askedFolderIsThis) return false;
  return isRegular(file.lastPathComponent());
}

bool FolderMembership::isRegular(std::string_view name) {
  if (m_listedRegularFiles.contains(name)) return true;
  if (++m_looks == looksBeforeListing) list();
  // The last component ends where the path does, with a NUL behind it.
  const auto status = readFileStatus(m_folder.get(), name.data());
  return status && status->type == FileType::regular;
}

void FolderMembership::list() {
  auto reader = DirectoryReader::open(m_folder.get(), ".", DirectoryReader::Links::refuse);
  if (!reader) return;
  while (const auto entry = reader->next()) {
    if (entry->type == FileType::regular) m_listedBytes.append(entry->name).push_back('\0');
  }
  std::string_view rest = m_listedBytes;
  while (!rest.empty()) {
    const auto end = rest.find('\0');
    m_listedRegularFiles.insert(rest.substr(0, end));
    rest.remove_prefix(end + 1);
  }
}

bool FolderMembership::isThisFolder(const std::string& path) const {
  // One look at the folder rules out nearly all others; only the same folder can have the same path.
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || status.st_dev != m_device || status.st_ino != m_inode) return false;
  return canonicalPath(path) == m_canonicalPath;
}

}  // namespace orvane
