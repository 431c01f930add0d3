#pragma once

#include "core/base/files/FileUrl.h"
#include "core/platform/PendingMove.h"
#include "core/safety/records/Boundary.h"
#include "core/safety/records/TrashError.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace orvane {

class FileMover;
class FolderLookups;
class PathValidator;
class Trash;

// The one place from which items leave where they are. Everything passes the path validator first; nothing is ever
// deleted.
class TrashMover {
 public:
  TrashMover(Trash& trash, FileMover& mover, const PathValidator& validator);
  static TrashMover& shared();

  // Moves one item (file, folder or bundle) to the Trash of its volume and returns where it went. Throws TrashError; on
  // every case but TrashedUrlMissing the item is where it was. Never follows a symbolic link: a link is moved as a
  // link. Records nothing: whoever wants the move undone goes through CleanupRun.
  FileUrl moveToTrash(const FileUrl& url, const Boundary& allowedRoots);

  // Clears the user's lock on an item, if it has one; failures are ignored.
  void clearImmutableFlagIfNeeded(const FileUrl& url) noexcept;

  // Whether the item lies inside a Trash, so that it is on its way out.
  [[nodiscard]] bool isInTrash(const FileUrl& url) const;

  // For batches: validates and decides, and moves nothing yet. `lookups` is that of the batch. Throw TrashError.
  std::unique_ptr<PendingMove> planTrash(const FileUrl& url, const Boundary& allowedRoots, FolderLookups& lookups);
  // Into `destinationFolder`, made where it is missing, under the item's name or the next free one. `isPromised` tells
  // of places that other moves of the same batch will take. The folder too must lie inside the allowed roots.
  std::unique_ptr<PendingMove> planMove(const FileUrl& url, const Boundary& allowedRoots,
                                        const FileUrl& destinationFolder,
                                        const std::function<bool(const FileUrl&)>& isPromised, FolderLookups& lookups);

 private:
  // Holds an item that may move, at its real place. Throws SecurityError, TrashError and std::runtime_error.
  [[nodiscard]] std::unique_ptr<HeldItem> held(const FileUrl& url, const Boundary& allowedRoots,
                                               FolderLookups& lookups) const;

  Trash& m_trash;
  FileMover& m_mover;
  const PathValidator& m_validator;
  std::mutex m_mutex;
};

}  // namespace orvane
