#include "core/tasks/History.h"

#include "core/base/files/FileStatus.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/base/values/Calendar.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/safety/journal/UndoJournal.h"
#include "core/tasks/TaskServices.h"

#include <algorithm>
#include <iterator>
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

// Adds run after run to the totals.
class Totalling {
 public:
  Totalling(UndoJournal& journal, Date now) : m_journal(journal) {
    for (const auto start : weekStarts(now, HistoryTotals::weekCount)) m_totals.weeks.push_back({.start = start});
  }

  void add(const CleanupRunSummary& run, const std::vector<JournalEntry>& entries) {
    std::unordered_set<std::string_view> origins;
    auto* week = weekOf(run.timestamp);
    for (const auto& entry : entries) {
      if (origins.insert(entry.originalURL.path()).second) {
        m_totals.moved.add(entry.fileSize);
        if (week != nullptr) week->moved.add(entry.fileSize);
      }
      addState(entry);
    }
  }

  HistoryTotals finish() {
    countTrashed();
    return std::move(m_totals);
  }

 private:
  // Each look at them reads the records of all items.
  static constexpr std::size_t maxAtOnce = 65'536;

  HistoryTotals::Week* weekOf(Date date) {
    const auto after = std::ranges::upper_bound(m_totals.weeks, date, {}, &HistoryTotals::Week::start);
    return after == m_totals.weeks.begin() ? nullptr : &*std::prev(after);
  }

  void addState(const JournalEntry& entry) {
    if (entry.action == JournalAction::restored) {
      m_totals.restored.add(entry.fileSize);
      return;
    }
    const auto& place = entry.trashedURL.path();
    const auto presence = m_looks.presenceAt(place);
    if (presence == Presence::unreachable) m_totals.away[missingPlace(place)].add(entry.fileSize);
    if (presence != Presence::there) return;
    if (entry.action == JournalAction::moved) {
      m_totals.inFolders.add(entry.fileSize);
      return;
    }
    m_trashed.push_back(entry);
    if (m_trashed.size() == maxAtOnce) countTrashed();
  }

  void countTrashed() {
    if (m_trashed.empty()) return;
    const auto lost = m_journal.lostEntries(m_trashed);
    const std::unordered_set<Uuid> gone(lost.begin(), lost.end());
    for (const auto& entry : m_trashed) {
      if (!gone.contains(entry.id)) m_totals.inTrash.add(entry.fileSize);
    }
    m_trashed.clear();
  }

  UndoJournal& m_journal;
  PathLooks m_looks;
  HistoryTotals m_totals;
  std::vector<JournalEntry> m_trashed;  // something stands in the place of each
};

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

HistoryTotals historyTotals(const TaskServices& services, Date now, const std::stop_token& stop) {
  auto& journal = services.journal();
  Totalling totalling(journal, now);
  for (const auto& summary : journal.getRuns()) {
    if (stop.stop_requested()) break;
    totalling.add(summary, journal.getEntries(summary.runId));
  }
  return totalling.finish();
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
  std::unordered_set<FileUrl> originals;
  for (auto& entry : journal.getEntries(runId)) {
    const auto state = stateOf(entry);
    if (state == ItemState::inTrash) originals.insert(entry.originalURL);
    const bool wentToTrash = liesInTrash(entry);
    items.push_back({std::move(entry), state, wentToTrash});
  }
  for (auto& item : items) {
    item.isCopy = item.state == ItemState::moved && originals.contains(item.entry.originalURL);
    item.isPlaceTaken = item.canComeBack() && itemExists(item.entry.originalURL.path().c_str());
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
