#include "core/safety/journal/UndoJournal.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FreeName.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "core/platform/Trash.h"
#include "core/safety/journal/FoundLogs.h"
#include "core/safety/journal/RunLog.h"
#include "core/safety/run/RunRecovery.h"
#include "core/safety/run/RunRestore.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iterator>
#include <set>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace orvane {
namespace {

constexpr std::int64_t minCheckpointBytes = 64 * 1024;
// Held by the process that restores.
constexpr std::string_view restoreLockName = "undo_journal.restore.lock";
constexpr std::chrono::seconds maxWaitForRestores{30};

// Processes restore one after the other: of two that bring back the same items, the second has to know what the first
// did. Absent when it was stopped meanwhile, or the folder takes no lock. Throws LockTimeout.
std::optional<FileLock> lockRestores(const std::string& folder, const std::stop_token& stop) {
  constexpr std::chrono::milliseconds step{100};
  const auto deadline = std::chrono::steady_clock::now() + maxWaitForRestores;
  while (!stop.stop_requested()) {
    try {
      return FileLock::acquire(joinPath(folder, restoreLockName), step);
    } catch (const LockTimeout&) {
      if (std::chrono::steady_clock::now() >= deadline) throw;
    } catch (const std::system_error&) {
      break;
    }
  }
  return std::nullopt;
}

std::string preparedFolder(const FileUrl& storageDirectory) {
  try {
    createFolders(storageDirectory.path());
  } catch (const std::system_error&) {
    // Without the folder nothing can be saved, and every save says so.
  }
  return canonicalPath(storageDirectory.path());
}

// A journal at one moment. Most logs are settled without it, so it is read only when it is asked.
class ItemsInJournal : public RecordedItems {
 public:
  ItemsInJournal(const JournalModel& model, const ItemRecords& records) : m_model(model), m_records(records) {}

  [[nodiscard]] std::vector<FileUrl> placesOf(const FileUrl& source) const override {
    std::vector<FileUrl> places;
    const auto [first, last] = away().bySource.equal_range(source);
    for (auto item = first; item != last; ++item) places.push_back(item->second);
    return places;
  }
  [[nodiscard]] bool isOfAnother(const FileUrl& place, const Uuid& entry) const override {
    const auto status = readPathStatus(place.path());
    if (!status) return false;
    std::vector<Uuid> others;
    const auto [first, last] = away().byPlace.equal_range(place);
    for (auto item = first; item != last; ++item) {
      if (item->second != entry) others.push_back(item->second);
    }
    return !others.empty() && isAnyOf(others, *status);
  }
  [[nodiscard]] bool isRestored(const Uuid& entry) const override { return m_model.isEntryRestored(entry); }

 private:
  struct Away {
    std::unordered_multimap<FileUrl, FileUrl> bySource;
    std::unordered_multimap<FileUrl, Uuid> byPlace;
  };

  // A name in the Trash may be given to another item once its own is gone, so the inode has to be the same; that of a
  // copy on another volume is not known.
  [[nodiscard]] bool isAnyOf(std::span<const Uuid> entries, const FileStatus& status) const {
    try {
      return std::ranges::any_of(m_records.find(entries), [&](const auto& found) {
        const auto inode = found.second.identity.inode;
        return (inode == 0 || inode == status.inode) && found.second.describes(status);
      });
    } catch (const std::system_error&) {
      return false;
    }
  }
  [[nodiscard]] const Away& away() const {
    if (!m_away) {
      m_away.emplace();
      m_model.forEachAway([&](const Uuid& entry, FileUrl source, const FileUrl& place) {
        m_away->byPlace.emplace(place, entry);
        m_away->bySource.emplace(std::move(source), place);
      });
    }
    return *m_away;
  }

  const JournalModel& m_model;
  const ItemRecords& m_records;
  mutable std::optional<Away> m_away;
};

}  // namespace

UndoJournal::UndoJournal(Trash& trash, FileMover& mover, const PathValidator& validator, FileUrl storageDirectory)
    : m_trash(trash),
      m_mover(mover),
      m_validator(validator),
      m_storageFolder(preparedFolder(storageDirectory)),
      m_store(m_storageFolder),
      m_records(m_storageFolder),
      m_madeFolders(m_storageFolder) {
  m_store.refresh(m_model);
  // Entries of a log can only be added to a journal that was read.
  if (!m_store.problem()) settleDeadRuns();
}

UndoJournal::~UndoJournal() = default;

FileUrl UndoJournal::defaultStorageDirectory() {
  return FileUrl(homeFolder() + "/Library/Application Support/Orvane");
}

const std::string& UndoJournal::storageFolder() const noexcept {
  return m_storageFolder;
}

void UndoJournal::settleDeadRuns() {
  try {
    if (!hasLogsToSettle(m_storageFolder)) return;
    // Where items are, what logs say of them and which records the Trash has belong together.
    const auto alone = RunLog::lockOutMoves(m_storageFolder);
    const auto dead = findLogsToSettle(m_storageFolder, m_notices);
    const auto living = findOtherLogs(m_storageFolder, dead, m_notices);
    // Without knowing what the others did nothing can be taken back.
    if (!living) return;
    for (const auto& log : dead) settleDeadRun(log, settle(log, dead, *living));
  } catch (const std::system_error&) {
    // The logs stay for the next start.
  }
}

SettledRun UndoJournal::settle(const FoundLog& log, std::span<const FoundLog> dead, std::span<const FoundLog> living) {
  m_store.refresh(m_model);
  noteReturns(dead);
  noteReturns(living);
  const ItemsInJournal recorded(m_model, m_records);
  OtherRuns others(recorded);
  const auto add = [&](const FoundLog& other) {
    if (other.path != log.path)
      others.add(other.intents, other.lock ? OtherRuns::State::dead : OtherRuns::State::alive);
  };
  std::ranges::for_each(dead, add);
  std::ranges::for_each(living, add);
  return settleRunLog(log.intents, others, m_trash, m_mover);
}

// The items that restores brought back, as far as their logs say: the Trash no longer holds them, whatever the journal
// still says of them.
void UndoJournal::noteReturns(std::span<const FoundLog> logs) {
  for (const auto& log : logs) {
    for (const auto& [intent, done] : log.intents) {
      if (done && intent.entry.action == JournalAction::restored) m_model.recordUnlessSuperseded(intent.entry);
    }
  }
}

void UndoJournal::settleDeadRun(const FoundLog& log, SettledRun settled) {
  std::move(settled.notices.begin(), settled.notices.end(), std::back_inserter(m_notices));
  // The process may have died after its journal was saved, and the run may have been restored since.
  m_store.refresh(m_model);
  for (const auto& entry : settled.entries) m_model.recordUnlessSuperseded(entry);
  // While the log stays it keeps the records too.
  if (settled.log != SettledRun::Log::pending) m_unsavedRecords = std::move(settled.records);
  if (!settled.entries.empty() && !save()) return;
  if (settled.log == SettledRun::Log::finished) ::unlink(log.path.c_str());
  if (settled.log == SettledRun::Log::unclear) {
    const auto aside = freeUrl(FileUrl(log.path + ".unclear"), NumberingStyle::plain);
    if (std::rename(log.path.c_str(), aside.path().c_str()) == 0) {
      m_notices.push_back(
          fmt::format("What the interrupted run was doing is kept in '{}'.", escapedForDisplay(aside.path())));
    }
  }
}

bool UndoJournal::save() {
  try {
    m_records.append(m_unsavedRecords);
    m_unsavedRecords.clear();
  } catch (const std::system_error& error) {
    m_notices.push_back(fmt::format("What the undo journal in '{}' knows of its items cannot be saved: {}.",
                                    escapedForDisplay(m_storageFolder), error.code().message()));
    return false;
  }
  return m_store.save(m_model);
}

void UndoJournal::record(const JournalEntry& entry) {
  const std::lock_guard lock(m_mutex);
  m_model.record(entry);
  // A failure is in the notices; what is in memory stays authoritative.
  static_cast<void>(m_store.save(m_model));
}

std::vector<CleanupRunSummary> UndoJournal::getRuns() {
  const std::lock_guard lock(m_mutex);
  m_store.refresh(m_model);
  return m_model.runs();
}

std::vector<JournalEntry> UndoJournal::getEntries(const Uuid& runId) {
  const std::lock_guard lock(m_mutex);
  m_store.refresh(m_model);
  return m_model.entries(runId);
}

std::int64_t UndoJournal::remainingCount(const Uuid& runId) {
  const std::lock_guard lock(m_mutex);
  m_store.refresh(m_model);
  const auto count = m_model.isRestored(runId) ? countThatCanComeBack(runId) : m_model.remainingCount(runId);
  return count + copiesLeft(runId);
}

std::vector<Uuid> UndoJournal::lostEntries(const Uuid& runId) {
  const std::lock_guard lock(m_mutex);
  m_store.refresh(m_model);
  return lostAmong(m_model.entries(runId));
}

std::vector<Uuid> UndoJournal::lostEntries(std::span<const JournalEntry> entries) {
  const std::lock_guard lock(m_mutex);
  return lostAmong(entries);
}

RunRestore::Records UndoJournal::recordsOf(std::span<const JournalEntry> entries) const {
  std::vector<Uuid> ids;
  std::ranges::transform(entries, std::back_inserter(ids), &JournalEntry::id);
  try {
    return m_records.find(ids);
  } catch (const std::system_error&) {
    // The restore itself will say so.
    return {};
  }
}

std::vector<Uuid> UndoJournal::lostAmong(std::span<const JournalEntry> entries) const {
  const auto records = recordsOf(entries);
  PathLooks looks;
  const auto isLost = [&](const JournalEntry& entry) {
    const auto status = looks.readStatus(entry.trashedURL.path());
    if (!status) return looks.presenceAt(entry.trashedURL.path()) == Presence::nothing;
    // A record tells more than the Trash, which is only asked where there is none.
    if (const auto record = records.find(entry.id); record != records.end()) return !record->second.describes(*status);
    return entry.action == JournalAction::trashed && !m_trash.mayHold(entry.trashedURL, entry.originalURL);
  };
  std::vector<Uuid> lost;
  for (const auto& entry : entries) {
    if (entry.action != JournalAction::restored && isLost(entry)) lost.push_back(entry.id);
  }
  return lost;
}

std::int64_t UndoJournal::countThatCanComeBack(const Uuid& runId) const {
  if (m_model.remainingCount(runId) == 0) return 0;
  const auto remaining = m_model.remainingEntries(runId);
  return static_cast<std::int64_t>(remaining.size() - lostAmong(remaining).size());
}

std::int64_t UndoJournal::copiesLeft(const Uuid& runId) const {
  const auto copies = m_model.copiesLeft(runId);
  if (copies.empty()) return 0;
  const auto records = recordsOf(copies);
  return std::ranges::count_if(copies, [&](const JournalEntry& entry) {
    const auto status = readPathStatus(entry.trashedURL.path());
    const auto record = records.find(entry.id);
    return status && (record == records.end() || record->second.describes(*status));
  });
}

bool UndoJournal::isReadable() {
  const std::lock_guard lock(m_mutex);
  m_store.refresh(m_model);
  return !m_store.problem();
}

std::vector<std::string> UndoJournal::takeNotices() {
  const std::lock_guard lock(m_mutex);
  auto notices = std::exchange(m_notices, {});
  auto more = m_store.takeNotices();
  std::move(more.begin(), more.end(), std::back_inserter(notices));
  return notices;
}

std::unique_ptr<RunLog> UndoJournal::beginRun(const Uuid& runId) {
  {
    const std::lock_guard lock(m_mutex);
    m_store.refresh(m_model);
    if (m_store.problem()) throw std::system_error(*m_store.problem());
  }
  createFolders(m_storageFolder);
  return std::make_unique<RunLog>(m_storageFolder, runId);
}

void UndoJournal::recordLogged(std::span<const JournalEntry> entries, RunLog& log, Checkpoint checkpoint) {
  const std::lock_guard lock(m_mutex);
  for (const auto& entry : entries) m_model.record(entry);
  std::ranges::move(log.takeRecords(), std::back_inserter(m_unsavedRecords));
  const bool due = log.size() > std::max(minCheckpointBytes, m_store.fileSize() / 4);
  if (checkpoint == Checkpoint::whenDue && !due) return;
  if (!save()) return;
  if (checkpoint == Checkpoint::atEnd) {
    log.remove();
  } else {
    log.clear();
  }
}

void UndoJournal::recordUnsettled(std::span<const JournalEntry> entries) {
  const std::lock_guard lock(m_mutex);
  for (const auto& entry : entries) m_model.record(entry);
}

FileUrl UndoJournal::resolveCollisionIfNeeded(const FileUrl& url) {
  return freeUrl(url, NumberingStyle::restored);
}

void UndoJournal::recordMade(std::span<const std::string> folders) {
  const std::lock_guard lock(m_mutex);
  m_madeFolders.append(folders);
}

std::vector<JournalEntry> UndoJournal::restoredInto(const FileUrl& folder) {
  const std::lock_guard lock(m_mutex);
  m_store.refresh(m_model);
  return m_model.restoredInto(folder.path());
}

std::optional<FileLock> UndoJournal::beginRestore(const std::stop_token& stop) {
  try {
    auto alone = lockRestores(m_storageFolder, stop);
    const std::lock_guard lock(m_mutex);
    m_store.refresh(m_model);
    // The process that restored before may have died meanwhile.
    if (alone && !m_store.problem()) settleDeadRuns();
    return alone;
  } catch (const LockTimeout& error) {
    throw UndoError(UndoError::RestorationFailed{m_storageFolder, error.what()});
  }
}

std::vector<JournalEntry> UndoJournal::requireEntries(const Uuid& runId) {
  const std::lock_guard lock(m_mutex);
  m_store.refresh(m_model);
  if (m_store.problem()) {
    throw UndoError(UndoError::RestorationFailed{m_storageFolder, "the undo journal cannot be read"});
  }
  auto entries = m_model.entries(runId);
  if (entries.empty()) throw UndoError(UndoError::RunNotFound{runId});
  return entries;
}

RestoreResult UndoJournal::restoreRun(const Uuid& runId, const Progress& progress, std::stop_token stop) {
  const std::lock_guard restoring(m_restoreMutex);
  const auto alone = beginRestore(stop);
  const auto entries = requireEntries(runId);
  return restoreChosen(runId, entries, entries, {}, progress, stop);
}

RestoreResult UndoJournal::restoreEntries(const Uuid& runId, std::span<const RestoreRequest> requests,
                                          const Progress& progress, const std::stop_token& stop) {
  const std::lock_guard restoring(m_restoreMutex);
  const auto alone = beginRestore(stop);
  const auto entries = requireEntries(runId);
  std::unordered_set<Uuid> wanted;
  RunRestore::Expected expected;
  for (const auto& request : requests) {
    wanted.insert(request.entry);
    if (request.expectedIdentity) expected.emplace(request.entry, *request.expectedIdentity);
  }
  std::size_t known = 0;
  std::unordered_map<FileUrl, JournalAction> wantedOrigins;
  for (const auto& entry : entries) {
    if (!wanted.contains(entry.id)) continue;
    ++known;
    if (entry.action != JournalAction::restored) wantedOrigins.emplace(entry.originalURL, entry.action);
  }
  if (known < wanted.size()) throw UndoError(UndoError::RunNotFound{runId});
  std::vector<JournalEntry> chosen;
  std::ranges::copy_if(entries, std::back_inserter(chosen), [&](const JournalEntry& entry) {
    if (wanted.contains(entry.id)) return true;
    // Of an item that went to another volume: the copy there, or the original in the Trash.
    const auto half = wantedOrigins.find(entry.originalURL);
    return half != wantedOrigins.end() && entry.action != JournalAction::restored && entry.action != half->second;
  });
  return restoreChosen(runId, entries, chosen, std::move(expected), progress, stop);
}

RestoreResult UndoJournal::restoreEntry(const Uuid& runId, const Uuid& entryId) {
  const RestoreRequest request{entryId, {}};
  return restoreEntries(runId, std::span(&request, 1));
}

RestoreResult UndoJournal::restoreChosen(const Uuid& runId, std::span<const JournalEntry> run,
                                         std::span<const JournalEntry> chosen, RunRestore::Expected expected,
                                         const Progress& progress, const std::stop_token& stop) {
  std::vector<Uuid> ids;
  std::ranges::transform(chosen, std::back_inserter(ids), &JournalEntry::id);
  RunRestore::Records records;
  std::unique_ptr<RunLog> log;
  std::string reason;
  try {
    records = m_records.find(ids);
    // Not the run's own identifier: another process may be restoring the same run.
    log = beginRun(Uuid::random());
  } catch (const std::system_error& error) {
    reason = error.code().message();
  }
  RunRestore restore(m_trash, m_mover, m_validator, run, std::move(records), std::move(expected));
  if (!log) return restore.failAll(chosen, fmt::format("the undo journal cannot be written: {}", reason));
  std::vector<JournalEntry> ordered(chosen.begin(), chosen.end());
  const auto copies = static_cast<std::size_t>(
      std::stable_partition(ordered.begin(), ordered.end(), [&](const auto& entry) { return !restore.isCopy(entry); }) -
      ordered.begin());
  for (std::size_t start = 0; start < ordered.size() && !stop.stop_requested();) {
    const auto end = std::min(start + maxBatchSize, start < copies ? copies : ordered.size());
    const bool durable = restore.carryOut(std::span(ordered).subspan(start, end - start), *log, stop);
    if (!durable) {
      recordUnsettled(restore.takeRestored());
      restore.noteNotTried(std::span(ordered).subspan(end));
      return restore.result();
    }
    recordLogged(restore.takeRestored(), *log, Checkpoint::whenDue);
    start = end;
    if (progress) progress(start, ordered.size());
  }
  {
    const std::lock_guard lock(m_mutex);
    const bool isWhole = chosen.size() == run.size() || countThatCanComeBack(runId) == 0;
    if (!stop.stop_requested() && isWhole) m_model.markRestored(runId);
  }
  recordLogged({}, *log, Checkpoint::atEnd);
  std::set<std::string> left;
  for (const auto& entry : chosen) {
    if (entry.action == JournalAction::moved) left.emplace(parentPath(entry.trashedURL.path()));
  }
  m_madeFolders.removeEmpty(left);
  return restore.result();
}

}  // namespace orvane
