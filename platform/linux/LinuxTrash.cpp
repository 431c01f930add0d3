#include "platform/linux/LinuxTrash.h"
#include "platform/linux/LinuxFileMover.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/CanonicalPath.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "platform/linux/ConfigurationFolder.h"
#include "platform/linux/TrashFolder.h"
#include "platform/linux/TrashInfo.h"
#include "platform/linux/TrashMoves.h"
#include "platform/linux/XdgFolders.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace orvane {
namespace {

// A batch holds two descriptors an item.
void raiseDescriptorLimit() noexcept {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = std::max(limit.rlim_cur, std::min<rlim_t>(limit.rlim_max, 4096));
  static_cast<void>(::setrlimit(RLIMIT_NOFILE, &limit));
}

bool isTopTrashName(std::string_view name) {
  constexpr std::string_view shared = ".Trash";
  if (name == shared) return true;
  if (!name.starts_with(".Trash-") || name.size() == shared.size() + 1) return false;
  name.remove_prefix(shared.size() + 1);
  return std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool isInTrash(std::string_view item, std::string_view homeTrash) {
  for (auto rest = item; rest.size() > 1; rest = parentPath(rest)) {
    if (isTopTrashName(lastComponent(rest))) return true;
  }
  return isSameOrInside(item, homeTrash);
}

// A Trash folder at a volume's top that belongs to this user and that nobody else may write to.
FileDescriptor ownFolder(int parent, const std::string& name) {
  if (::mkdirat(parent, name.c_str(), 0700) == 0) {
    static_cast<void>(::fsync(parent));
  } else if (errno != EEXIST) {
    throwErrno();
  }
  FileDescriptor folder(::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder) throwErrno();
  struct stat status {};
  if (::fstat(folder.get(), &status) != 0) throwErrno();
  if (status.st_uid != ::geteuid() || (status.st_mode & 022) != 0) throwErrno(EPERM);
  return folder;
}

// The administrator's shared ".Trash": used only when it is sticky and no link.
FileDescriptor sharedTopTrash(int top, const std::string& user) {
  const FileDescriptor shared(::openat(top, ".Trash", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat status {};
  if (!shared || ::fstat(shared.get(), &status) != 0 || (status.st_mode & S_ISVTX) == 0) return {};
  try {
    return ownFolder(shared.get(), user);
  } catch (const std::system_error&) {
    return {};
  }
}

std::string topFolderOf(const Mount& mount, std::string folder) {
  while (folder != "/") {
    std::string above(parentPath(folder));
    if (mountOf(AT_FDCWD, above.c_str()) != mount) break;
    folder = std::move(above);
  }
  return folder;
}

}  // namespace

LinuxTrash::LinuxTrash(std::string homeTrash) : m_homeTrash(std::move(homeTrash)) {
  raiseDescriptorLimit();
}

LinuxTrash::~LinuxTrash() = default;

std::string LinuxTrash::defaultHomeTrash() {
  return joinPath(XdgFolders::fromEnvironment().data, "Trash");
}

bool LinuxTrash::holds(const FileUrl& item) const {
  return isInTrash(item.path(), canonicalPath(m_homeTrash));
}

void LinuxTrash::refuseInTrash(const FileUrl& item) const {
  const std::string home = canonicalPath(m_homeTrash);
  if (isInTrash(item.path(), home)) {
    throw std::runtime_error(fmt::format("'{}' is in the Trash already.", escapedForDisplay(item.path())));
  }
  if (isSameOrInside(home, item.path())) {
    throw std::runtime_error(fmt::format("'{}' holds the Trash itself.", escapedForDisplay(item.path())));
  }
}

std::shared_ptr<TrashFolder> LinuxTrash::openHomeTrash() const {
  createFoldersDurably(m_homeTrash);
  const std::string path = canonicalPath(m_homeTrash);
  FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder) throwErrno();
  return std::make_shared<TrashFolder>(path, std::string(), std::move(folder));
}

std::shared_ptr<TrashFolder> LinuxTrash::openTopTrash(const Mount& mount, const std::string& parent) const {
  const std::string top = topFolderOf(mount, parent);
  const std::string user = std::to_string(::geteuid());
  try {
    const auto topFolder = openFolder(top, top);
    std::string path = joinPath(top, ".Trash/" + user);
    FileDescriptor folder = sharedTopTrash(topFolder->get(), user);
    if (!folder) {
      path = joinPath(top, ".Trash-" + user);
      folder = ownFolder(topFolder->get(), ".Trash-" + user);
    }
    auto trash = std::make_shared<TrashFolder>(path, top, std::move(folder));
    if (trash->mount() != mount) throwErrno(EXDEV);
    return trash;
  } catch (const std::system_error& error) {
    throw std::runtime_error(fmt::format("The volume '{}' has no Trash that can be used ({}). Nothing was moved.",
                                         escapedForDisplay(top), error.code().message()));
  }
}

std::shared_ptr<TrashFolder> LinuxTrash::remembered(const Mount& mount) {
  std::erase_if(m_folders, [](const auto& folder) { return !folder->isCurrent(); });
  for (const auto& folder : m_folders) {
    if (folder->mount() == mount) return folder;
  }
  return nullptr;
}

std::shared_ptr<TrashFolder> LinuxTrash::folderFor(const OpenItem& item, const std::string& parent) {
  const std::lock_guard lock(m_mutex);
  if (auto folder = remembered(item.mount)) return folder;
  std::shared_ptr<TrashFolder> folder;
  try {
    folder = openHomeTrash();
  } catch (const std::system_error& error) {
    if (mountOf(AT_FDCWD, homeFolder().c_str()) == item.mount) {
      throw std::runtime_error(fmt::format("The Trash '{}' cannot be used ({}). Nothing was moved.",
                                           escapedForDisplay(m_homeTrash), error.code().message()));
    }
  }
  if (!folder || folder->mount() != item.mount) folder = openTopTrash(item.mount, parent);
  m_folders.push_back(folder);
  return folder;
}

std::shared_ptr<TrashFolder> LinuxTrash::folderOf(const FileUrl& trashed) {
  const std::string_view files = parentPath(trashed.path());
  if (lastComponent(files) != "files") return nullptr;
  const std::string path(parentPath(files));
  FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  struct stat info {};
  if (!folder || ::fstatat(folder.get(), "info", &info, AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return nullptr;
    throwErrno();
  }
  if (!S_ISDIR(info.st_mode)) return nullptr;
  // Relative records begin at the volume's top folder.
  std::string top;
  const std::string_view above = parentPath(path);
  if (lastComponent(above) == ".Trash") {
    top = parentPath(above);
  } else if (isTopTrashName(lastComponent(path))) {
    top = above;
  } else if (lastComponent(path) != "Trash") {
    return nullptr;
  }
  return std::make_shared<TrashFolder>(path, std::move(top), std::move(folder));
}

std::unique_ptr<PendingMove> LinuxTrash::planTrash(std::unique_ptr<HeldItem> item) {
  const auto& place = item->place();
  refuseInTrash(place);
  auto open = LinuxHeldItem::take(*item);
  auto folder = folderFor(open, std::string(parentPath(place.path())));
  return makeMoveIntoTrash(place, std::move(open), std::move(folder));
}

std::unique_ptr<PendingMove> LinuxTrash::planTakeOut(const FileUrl& trashed, const FileUrl& destination) {
  const auto folder = parentPath(trashed.path());
  OpenItem open = openItemIn(m_trashed.open(folder, folder), trashed.lastPathComponent());
  return makeMoveOutOfTrash(trashed, std::move(open), folderOf(trashed), destination);
}

bool LinuxTrash::mayHold(const FileUrl& trashed, const FileUrl& original) noexcept {
  constexpr std::size_t maxRecordBytes = 64 * 1024;
  try {
    const auto folder = folderOf(trashed);
    if (!folder) return true;
    const auto name = TrashFolder::recordName(trashed.lastPathComponent());
    const FileDescriptor record(
        ::openat(folder->info()->get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!record) return true;
    const auto path = trashInfoPath(readAll(record.get(), maxRecordBytes));
    return !path || *path == folder->recordedPath(original.path()) ||
           *path == folder->recordedPath(canonicalPlace(original.path()));
  } catch (const std::exception&) {
    return true;
  }
}

bool LinuxTrash::forget(const FileUrl& trashed) noexcept {
  try {
    const auto folder = folderOf(trashed);
    return !folder || (folder->removeRecord(std::string(trashed.lastPathComponent())) && folder->removeNewSizes());
  } catch (const std::exception&) {
    // The record stays: a desktop shows an entry without an item.
    return false;
  }
}

bool LinuxTrash::takeBackRecord(const FileUrl& trashed, const FileUrl& original) noexcept {
  try {
    const auto folder = folderOf(trashed);
    if (!folder) return true;
    const std::string name(trashed.lastPathComponent());
    const bool hasNone = folder->removeNewRecord(name);
    return (!mayHold(trashed, original) || folder->removeRecord(name)) && hasNone;
  } catch (const std::exception&) {
    return false;
  }
}

namespace {

void changeFlag(const FileUrl& item, Immutable wanted) noexcept {
  try {
    const FileUrl place(canonicalPlace(item.path()));
    const auto open = openItem(place, parentPath(place.path()));
    changeImmutableAttribute(open.folder->get(), open.name, wanted);
  } catch (const std::exception&) {
    // The move reports any fault that keeps the flag from being read.
  }
}

}  // namespace

void LinuxTrash::clearImmutableFlag(const FileUrl& item) noexcept {
  changeFlag(item, Immutable::no);
}

void LinuxTrash::setImmutableFlag(const FileUrl& item) noexcept {
  changeFlag(item, Immutable::yes);
}

}  // namespace orvane
