#pragma once

#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace orvane {

class FileDescriptor;

// Folders whose names have to become durable, each of them once.
class FolderSyncSet {
 public:
  // A system call that makes everything on a folder's volume durable, as syncfs(2); null where the system has none.
  using VolumeSync = int (*)(int descriptor);
  void add(std::shared_ptr<const FileDescriptor> folder, VolumeSync volumeSync);
  // Makes all of them durable and empties the set. Throws SyncError.
  void syncAll();

 private:
  struct Member {
    std::uint64_t device;
    std::uint64_t inode;
    std::shared_ptr<const FileDescriptor> folder;
    VolumeSync volumeSync;
  };
  std::vector<Member> m_members;
};

// An item whose folder is held open: from here on its path no longer matters.
class HeldItem {
 public:
  HeldItem(const HeldItem&) = delete;
  HeldItem& operator=(const HeldItem&) = delete;
  virtual ~HeldItem() = default;

  // Its folder's canonical path and its name.
  [[nodiscard]] const FileUrl& place() const noexcept { return m_place; }
  // As it was when it was held.
  [[nodiscard]] virtual const FileStatus& status() const noexcept = 0;

 protected:
  explicit HeldItem(FileUrl place) : m_place(std::move(place)) {}

 private:
  FileUrl m_place;
};

// One item between decision and done. It holds the item's folder open, so that nothing that is swapped on the way can
// redirect it. Dropping it at any point leaves the item whole at its source or at its destination.
//
// A group is carried out stage by stage: prepare() for all, finishPreparing() for all, sync; carryOut() for all, sync;
// finish() for all. Every stage throws std::runtime_error (with the system's reason) when the item cannot be moved,
// and SyncError when the disk refuses to make something durable, after which nothing more may be tried.
class PendingMove {
 public:
  PendingMove(const PendingMove&) = delete;
  PendingMove& operator=(const PendingMove&) = delete;
  virtual ~PendingMove() = default;

  // Where the item is: its folder's canonical path and its name.
  [[nodiscard]] const FileUrl& source() const noexcept { return m_source; }
  // Where it will be. finishPreparing() changes it when another process takes the name first.
  [[nodiscard]] const FileUrl& destination() const noexcept { return m_destination; }
  [[nodiscard]] const ItemIdentity& identity() const noexcept { return m_identity; }
  // Whether a lock kept its owner from moving the item; it is taken off with the move.
  [[nodiscard]] bool isLocked() const noexcept { return m_isLocked; }
  // Whether the item goes to another volume: it is copied, and what it came from stays where it is.
  [[nodiscard]] bool copies() const noexcept { return m_partial.has_value(); }
  // Where a copy grows until it is whole and takes its name at the destination; absent for a plain move.
  [[nodiscard]] const std::optional<FileUrl>& partial() const noexcept { return m_partial; }

  // Starts writing what has to be on the disk before the item moves. Does not wait for the disk.
  virtual void prepare() {}
  // Makes it durable and gives it its name. False when another process has the name: the destination is another one
  // then, and is to be logged before this is called again, so that nothing stays of a name that no log knows.
  [[nodiscard]] virtual bool finishPreparing(FolderSyncSet& /*folders*/) { return true; }
  // Moves the item without replacing anything, and puts it back if what moved is not what was meant.
  virtual void carryOut(FolderSyncSet& destinations, FolderSyncSet& sources) = 0;
  // Tidies up once the move is durable. Never throws: the item has moved. False when the system refuses, so
  // that something is left for the next start.
  [[nodiscard]] virtual bool finish() noexcept { return true; }
  // Takes back what prepare() wrote, for an item that did not move. False as above.
  [[nodiscard]] virtual bool abandon() noexcept { return true; }

 protected:
  PendingMove() = default;
  FileUrl m_source;
  FileUrl m_destination;
  ItemIdentity m_identity;
  bool m_isLocked = false;
  std::optional<FileUrl> m_partial;
};

}  // namespace orvane
