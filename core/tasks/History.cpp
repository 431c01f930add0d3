#include "core/tasks/History.h"

#include "core/base/files/FileStatus.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/safety/journal/UndoJournal.h"
#include "core/tasks/TaskServices.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view journalName = "undo_journal.json";

bool liesInTrash(const JournalEntry& entry) {
  const auto& path = entry.trashedURL.path();
  return path.find("/Trash/files/") != std::string::npos || path.find("/.Trash") != std::string::npos;
}

bool liesInTidyFolder(const JournalEntry& entry) {
  const auto& path = entry.trashedURL.path();
  return path.find("/Recents/") != std::string::npos || path.find("/Sorted/") != std::string::npos;
}

RunKind kindOf(const std::vector<JournalEntry>& entries) {
  if (std::ranges::all_of(entries, liesInTrash)) {
    const bool areCopies = std::ranges::all_of(entries, [](const auto& entry) { return entry.checksum.has_value(); });
    return areCopies ? RunKind::duplicates : RunKind::clean;
  }
  if (std::ranges::all_of(entries, liesInTidyFolder)) return RunKind::tidy;
  return std::ranges::none_of(entries, liesInTrash) ? RunKind::organize : RunKind::other;
}

RecordedRun runOf(const CleanupRunSummary& summary, const std::vector<JournalEntry>& entries) {
  RecordedRun run{.summary = summary, .kind = kindOf(entries)};
  bool someAreInTrash = false;
  for (const auto& entry : entries) {
    if (entry.action == JournalAction::restored) continue;
    ++run.remaining;
    if (entry.action == JournalAction::trashed) someAreInTrash = true;
  }
  if (!summary.isRestored && run.remaining > 0) run.state = someAreInTrash ? RunState::inTrash : RunState::moved;
  return run;
}

// The first folder on the way to a place that is not there.
FileUrl missingPlace(std::string path) {
  std::string missing = path;
  while (path.size() > 1 && !itemExists(path.c_str())) {
    missing = path;
    path = std::string(parentPath(path));
  }
  return FileUrl(missing);
}

// Where the items of those runs came from. A run that was brought back tells of items that are there again.
std::vector<std::string> originsSince(UndoJournal& journal, Date since) {
  std::vector<std::string> origins;
  for (const auto& run : journal.getRuns()) {
    for (const auto& entry : journal.getEntries(run.runId)) {
      if (entry.timestamp >= since) origins.push_back(entry.originalURL.path());
    }
  }
  return origins;
}

// Whether the item moved, or a folder that it lies in.
bool isAmong(const std::unordered_set<std::string_view>& origins, std::string_view path) {
  while (path.size() > 1) {
    if (origins.contains(path)) return true;
    path = parentPath(path);
  }
  return false;
}

}  // namespace

History readHistory(const TaskServices& services) {
  History history;
  auto& journal = services.journal();
  const auto origins = recordedOrigins(services);
  for (const auto& summary : journal.getRuns()) {
    const auto entries = journal.getEntries(summary.runId);
    for (const auto& entry : entries) {
      if (entry.action != JournalAction::trashed) continue;
      history.lifetimeReclaimedBytes = checkedAdd(history.lifetimeReclaimedBytes, entry.fileSize);
    }
    auto run = runOf(summary, entries);
    if (const auto origin = origins.find(summary.runId); origin != origins.end()) run.origin = origin->second;
    history.runs.push_back(std::move(run));
  }
  return history;
}

HistoryTotals historyTotals(const TaskServices& services) {
  HistoryTotals totals;
  auto& journal = services.journal();
  for (const auto& summary : journal.getRuns()) {
    const auto entries = journal.getEntries(summary.runId);
    std::unordered_set<std::string_view> origins;
    for (const auto& entry : entries) {
      if (origins.insert(entry.originalURL.path()).second) totals.moved.add(entry.fileSize);
      if (entry.action == JournalAction::restored) {
        totals.restored.add(entry.fileSize);
        continue;
      }
      const auto& place = entry.trashedURL.path();
      const auto presence = presenceAt(place);
      if (presence == Presence::unreachable) totals.away[missingPlace(place)].add(entry.fileSize);
      if (presence != Presence::there) continue;
      (entry.action == JournalAction::trashed ? totals.inTrash : totals.inFolders).add(entry.fileSize);
    }
  }
  return totals;
}

std::vector<CleanupRunSummary> recordedRuns(const TaskServices& services) {
  return services.journal().getRuns();
}

bool isHistoryReadable(const TaskServices& services) {
  return services.journal().isReadable();
}

std::int64_t remainingCount(const TaskServices& services, const Uuid& runId) {
  return services.journal().remainingCount(runId);
}

std::vector<JournalEntry> recordedEntries(const TaskServices& services, const Uuid& runId) {
  return services.journal().getEntries(runId);
}

std::vector<RecordedItem> recordedItems(const TaskServices& services, const Uuid& runId) {
  auto& journal = services.journal();
  const auto lost = journal.lostEntries(runId);
  const std::unordered_set<Uuid> gone(lost.begin(), lost.end());
  const auto stateOf = [&](const JournalEntry& entry) {
    if (entry.action == JournalAction::restored) return ItemState::restored;
    if (!itemExists(entry.trashedURL.path().c_str())) return ItemState::gone;
    // A file that was moved to another folder may be worked with there.
    if (entry.action == JournalAction::moved) return ItemState::moved;
    return gone.contains(entry.id) ? ItemState::gone : ItemState::inTrash;
  };
  std::vector<RecordedItem> items;
  for (auto& entry : journal.getEntries(runId)) {
    const auto state = stateOf(entry);
    items.push_back({std::move(entry), state});
  }
  return items;
}

MovedItems movedSince(const TaskServices& services, const ItemList& items, std::span<const std::uint8_t> gone,
                      Date since) {
  MovedItems moved;
  const auto origins = originsSince(services.journal(), since);
  if (origins.empty()) return moved;
  const std::unordered_set<std::string_view> lookup(origins.begin(), origins.end());
  items.forEach([&](std::size_t index, const FileItem& item) {
    const auto& path = item.url().path();
    if (!isAmong(lookup, path)) return true;
    const bool isThere = itemExists(path.c_str());
    const bool wasThere = gone[index] == 0;
    if (isThere != wasThere) (isThere ? moved.back : moved.gone).push_back(static_cast<std::uint32_t>(index));
    return true;
  });
  return moved;
}

FileUrl journalFolder() {
  return UndoJournal::defaultStorageDirectory();
}

FileUrl journalFile(const TaskServices& services) {
  return FileUrl(joinPath(services.journal().storageFolder(), journalName));
}

std::vector<std::string> takeJournalNotices(const TaskServices& services) {
  return services.journal().takeNotices();
}

}  // namespace orvane
