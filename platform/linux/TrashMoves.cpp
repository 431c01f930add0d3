#include "platform/linux/TrashMoves.h"

#include "core/base/files/PathText.h"
#include "platform/linux/LinuxFileMover.h"
#include "platform/linux/TrashFolder.h"
#include "platform/linux/TrashInfo.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace orvane {
namespace {

constexpr int placingTries = 64;

class MoveIntoTrash : public PendingMove {
 public:
  MoveIntoTrash(const FileUrl& item, OpenItem open, std::shared_ptr<TrashFolder> folder)
      : m_item(std::move(open)), m_folder(std::move(folder)) {
    m_source = item;
    m_identity = m_item.identity();
    m_isLocked = m_item.isImmutable;
    takeName(m_folder->reserveName(m_item.name));
  }

  ~MoveIntoTrash() override { m_folder->release(m_name); }

  void prepare() override {
    const int info = m_folder->info()->get();
    m_record.reset(::openat(info, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
    if (!m_record) {
      // Some file systems know no unnamed files.
      if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL && errno != ENOENT) throwErrno();
      openNamedRecord();
    }
    writeAll(m_record.get(), trashInfoText(m_folder->recordedPath(m_source.path()), ReferenceClock::now()));
    m_ticket = m_folder->noteRecordWritten();
  }

  [[nodiscard]] bool finishPreparing(FolderSyncSet& folders) override {
    if (m_tries == 0) m_folder->makeRecordDurable(m_ticket, m_record.get());
    if (!giveRecordItsName()) {
      takeAnotherName(++m_tries);
      return false;
    }
    m_record.reset();
    m_hasRecord = true;
    folders.add(m_folder->info(), ::syncfs);
    return true;
  }

  void carryOut(FolderSyncSet& destinations, FolderSyncSet& sources) override {
    destinations.add(m_folder->files(), ::syncfs);
    sources.add(m_item.folder, ::syncfs);
    renameChecked(m_item, m_folder->files()->get(), m_name);
  }

  [[nodiscard]] bool finish() noexcept override {
    if (m_item.status.type == FileType::directory) m_folder->noteFolderSize(m_name);
    return true;
  }

  [[nodiscard]] bool abandon() noexcept override {
    const bool hasNone = m_temporaryName.empty() ||
                         ::unlinkat(m_folder->info()->get(), m_temporaryName.c_str(), 0) == 0 || errno == ENOENT;
    return (!m_hasRecord || m_folder->removeRecord(m_name)) && hasNone;
  }

 private:
  void takeName(std::string name) {
    m_name = std::move(name);
    m_destination = FileUrl(joinPath(joinPath(m_folder->path(), "files"), m_name));
  }

  // Another process has taken the name.
  void takeAnotherName(int tries) {
    if (tries == placingTries) throwErrno(EEXIST);
    const std::string taken = m_name;
    takeName(m_folder->reserveName(m_item.name));
    m_folder->release(taken);
  }

  void openNamedRecord() {
    for (int tries = 1;; ++tries) {
      std::string name = TrashFolder::newRecordName(m_name);
      m_record.reset(::openat(m_folder->info()->get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
      if (m_record) {
        m_temporaryName = std::move(name);
        return;
      }
      if (errno != EEXIST) throwErrno();
      takeAnotherName(tries);
    }
  }

  // False when another process took the name first.
  bool giveRecordItsName() {
    const int info = m_folder->info()->get();
    const std::string recordName = TrashFolder::recordName(m_name);
    if (m_temporaryName.empty()) {
      const std::string open = fmt::format("/proc/self/fd/{}", m_record.get());
      if (::linkat(AT_FDCWD, open.c_str(), info, recordName.c_str(), AT_SYMLINK_FOLLOW) == 0) return true;
      if (errno == EEXIST) return false;
      throwErrno();
    }
    try {
      renameWithoutReplacing(info, m_temporaryName, info, recordName);
      m_temporaryName.clear();
      return true;
    } catch (const std::system_error& error) {
      if (error.code() == std::errc::file_exists) return false;
      throw;
    }
  }

  OpenItem m_item;
  std::shared_ptr<TrashFolder> m_folder;
  std::string m_name;
  FileDescriptor m_record;
  std::uint64_t m_ticket = 0;
  std::string m_temporaryName;
  int m_tries = 0;  // of other names for the record
  bool m_hasRecord = false;
};

class MoveOutOfTrash : public LinuxMove {
 public:
  MoveOutOfTrash(const FileUrl& trashed, OpenItem open, std::shared_ptr<TrashFolder> folder, const FileUrl& destination)
      : LinuxMove(trashed, std::move(open), destination,
                  openFolderAndMount(parentPath(destination.path()), parentPath(destination.path()))),
        m_folder(std::move(folder)) {}

  // The record goes last: until the item is back for good, the Trash can still tell where it belongs.
  [[nodiscard]] bool finish() noexcept override {
    if (!m_folder || copies()) return true;
    const std::string name(source().lastPathComponent());
    if (itemType() == FileType::directory) m_folder->forgetFolderSize(name);
    return m_folder->removeRecord(name);
  }

 private:
  std::shared_ptr<TrashFolder> m_folder;
};

}  // namespace

std::unique_ptr<PendingMove> makeMoveIntoTrash(const FileUrl& item, OpenItem open,
                                               std::shared_ptr<TrashFolder> folder) {
  return std::make_unique<MoveIntoTrash>(item, std::move(open), std::move(folder));
}

std::unique_ptr<PendingMove> makeMoveOutOfTrash(const FileUrl& trashed, OpenItem open,
                                                std::shared_ptr<TrashFolder> folder, const FileUrl& destination) {
  open.isInTrash = true;
  return std::make_unique<MoveOutOfTrash>(trashed, std::move(open), std::move(folder), destination);
}

}  // namespace orvane
