#pragma once

#include "core/base/files/FileLock.h"
#include "core/base/files/FileUrl.h"
#include "core/scanning/records/FileItem.h"

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

class TrashMover;

// Sees to it that of identical files one copy stays outside the Trash, whatever happened since the search.
//
// Right before a copy moves, it and one that stays are opened and compared byte by byte through these descriptors, and
// both must still be the files of their names. A copy that changed since the search is left alone, and so is one of
// which no other copy stays: one outside every Trash, and another file.
//
// Cleanups of one user take turns, by a lock in the journal's folder: two that keep different copies cannot both move
// theirs. A program that knows nothing of the lock can still remove the copy that stays in the moment after the check;
// the copy that moved is then in the Trash.
class DuplicateGuard {
 public:
  // The lock's file.
  static constexpr std::string_view lockName = "duplicates.lock";

  // Waits for another cleanup's end. Absent when it is stopped before. Throws std::system_error where the lock's file
  // cannot be written.
  [[nodiscard]] static std::optional<FileLock> takeTurn(const std::string& journalFolder, std::stop_token stop);
  DuplicateGuard(FileLock turn, const TrashMover& mover, std::stop_token stop);
  ~DuplicateGuard();

  // Copies of one content that are not to move.
  using Staying = std::vector<FileUrl>;
  // The last check of a move request for a copy with its identity. Its exception says why the copy is left alone. The
  // copy, the guard and the mover must outlive it.
  [[nodiscard]] std::function<void()> check(const FileItem& copy, std::shared_ptr<const Staying> staying) const;

 private:
  struct ComparedPair;
  class CopyCheck;

  FileLock m_turn;
  const TrashMover& m_mover;
  std::stop_token m_stop;
  // One copy moves at a time.
  std::unique_ptr<ComparedPair> m_pair;
};

}  // namespace orvane
