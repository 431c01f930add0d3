#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/safety/records/JournalEntry.h"
#include "core/tasks/ItemList.h"
#include "core/tasks/Notice.h"
#include "core/tasks/RunOrigins.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

struct TaskServices;

// The kind of a run, derived from the outcome of its items.
enum class RunKind : std::uint8_t { clean, duplicates, tidy, organize, other };
// Where the items of a run are that have not been brought back.
enum class RunState : std::uint8_t { restored, inTrash, moved };

struct RecordedRun {
  CleanupRunSummary summary;
  RunKind kind = RunKind::other;
  RunState state = RunState::restored;
  std::optional<RunOrigin> origin = {};  // absent where nothing tells who had it done
  std::int64_t remaining = 0;            // items that have not been brought back

  [[nodiscard]] bool canBeRestored() const noexcept { return remaining > 0; }
};

struct History {
  std::vector<RecordedRun> runs;  // newest first
  // Moved to the Trash and not brought back; moves to other folders reclaim nothing.
  std::int64_t lifetimeReclaimedBytes = 0;
};
// Everything that was ever recorded. Looks at every entry.
[[nodiscard]] History readHistory(const TaskServices& services);
// The state of every item that was ever moved. Looks at the disk.
struct HistoryTotals {
  struct Week {
    Date start;
    RowSum moved = {};
  };
  static constexpr std::size_t weekCount = 12;

  RowSum moved;  // everything; what went to another volume once
  RowSum restored;
  RowSum inTrash;    // still there, and no other item in its place
  RowSum inFolders;  // moved to other folders, and still there
  // On volumes that are not there, by the place where each should be.
  std::map<FileUrl, RowSum> away;
  // Of `moved`, by the user's calendar: the oldest week first, the last one that of the call.
  std::vector<Week> weeks;
};
// Once `stop` is requested the sums are not whole.
[[nodiscard]] HistoryTotals historyTotals(const TaskServices& services, Date now = ReferenceClock::now(),
                                          const std::stop_token& stop = {});
// Newest first.
[[nodiscard]] std::vector<CleanupRunSummary> recordedRuns(const TaskServices& services);
// Whether the journal could be read; where not, the notices say why.
[[nodiscard]] bool isHistoryReadable(const TaskServices& services);
// How many items of a run have not been brought back.
[[nodiscard]] std::int64_t remainingCount(const TaskServices& services, const Uuid& runId);
// In recording order; empty for an unknown run.
[[nodiscard]] std::vector<JournalEntry> recordedEntries(const TaskServices& services, const Uuid& runId);

// Where an item is that was moved. One in whose place in the Trash another item lies is gone.
enum class ItemState : std::uint8_t { restored, inTrash, moved, gone };
struct RecordedItem {
  JournalEntry entry;
  ItemState state;
  // Where it was moved to is a Trash, whatever became of it there.
  bool wentToTrash = false;
  // Something stands where the item was.
  bool isPlaceTaken = false;
  // A copy on another volume: its original, an item of its own, comes back from the Trash instead.
  bool isCopy = false;

  [[nodiscard]] bool canComeBack() const noexcept {
    return !isCopy && (state == ItemState::inTrash || state == ItemState::moved);
  }
};
// In recording order. Looks at the disk.
[[nodiscard]] std::vector<RecordedItem> recordedItems(const TaskServices& services, const Uuid& runId);

// Indexes of items that are no longer, or are again, where they were found.
struct MovedItems {
  std::vector<std::uint32_t> gone;
  std::vector<std::uint32_t> back;
};
// Looks up which of the items a run recorded since `since` moved or brought back, by whichever program. `gone` holds a
// byte for each item, not zero where it had left its place before.
[[nodiscard]] MovedItems movedSince(const TaskServices& services, const ItemList& items,
                                    std::span<const std::uint8_t> gone, Date since);

// Where the program keeps the journal. It need not be there yet: the first of the calls above makes it.
[[nodiscard]] FileUrl journalFolder();
// The file that changes with every recorded move.
[[nodiscard]] FileUrl journalFile(const TaskServices& services);
// The faults found in the journal or in runs that died, one line each, since the last call.
[[nodiscard]] std::vector<std::string> takeJournalNotices(const TaskServices& services);

}  // namespace orvane
