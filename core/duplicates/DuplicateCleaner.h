#pragma once

#include "core/base/Uuid.h"
#include "core/duplicates/DuplicateGroup.h"
#include "core/safety/Boundary.h"
#include "core/safety/CleanupRun.h"

#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

class TrashMover;
class UndoJournal;

// What a cleanup of duplicates came to.
struct DuplicateCleanup {
  static constexpr std::string_view title = "Duplicate Cleanup";

  std::optional<Uuid> runId;          // absent when nothing was tried
  std::vector<MoveOutcome> outcomes;  // of the selected items, in their order
  std::int64_t filesMoved = 0;
  std::int64_t bytesFreed = 0;

  // What the user is told at the end, below the title.
  [[nodiscard]] std::string closingText() const;
  // What the console is told of an item that failed.
  [[nodiscard]] static std::string failureLine(const MoveOutcome& outcome);
};

// Moves the selected items of groups to the Trash as one run.
//
// Right before a copy moves, it and a copy of its group that stays are opened and compared byte by byte through these
// descriptors, and both must still be the files of their names. A copy that changed since the search is left alone, and
// so is one of which no other copy stays: one that is unselected, outside every Trash, and another file. So a group
// never loses its last copy, whatever happened since the search.
//
// Cleanups of one user take turns, by a lock in the journal's folder: two that keep different copies of a group cannot
// both move theirs. A program that knows nothing of the lock can still remove the copy that stays in the moment after
// the check; the copy that moved is then in the Trash.
class DuplicateCleaner {
 public:
  DuplicateCleaner(TrashMover& mover, UndoJournal& journal) : m_mover(mover), m_journal(journal) {}
  static DuplicateCleaner& shared();

  // One that fails is reported and the rest go on. Waits for another cleanup's end. Throws nothing for what the disk
  // does.
  DuplicateCleanup clean(std::span<const DuplicateGroup> groups, const Boundary& roots,
                         const CleanupRun::Progress& progress = {}, std::stop_token stop = {});

  // The lock's file, in the journal's folder.
  static constexpr std::string_view lockName = "duplicates.lock";

 private:
  TrashMover& m_mover;
  UndoJournal& m_journal;
};

}  // namespace orvane
