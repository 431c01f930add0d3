#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Uuid.h"
#include "core/safety/journal/ItemRecords.h"
#include "core/safety/journal/JournalModel.h"
#include "core/safety/journal/JournalStore.h"
#include "core/safety/journal/MadeFolders.h"
#include "core/safety/records/JournalEntry.h"
#include "core/safety/records/UndoError.h"
#include "core/safety/run/RunRestore.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

class FileMover;
class PathValidator;
class RunLog;
class Trash;
struct FoundLog;
struct SettledRun;

// The record of every move, by run, in one file that several processes share. Records of another process show at the
// next call.
class UndoJournal {
 public:
  using Progress = std::function<void(std::size_t done, std::size_t total)>;

  // Loads `storageDirectory`/undo_journal.json, creating the folder, and settles what runs that died left behind.
  // Never throws for what is on the disk: a file that does not decode is set aside and the journal starts empty; while
  // one cannot be read at all, nothing is recorded, moved or restored.
  UndoJournal(Trash& trash, FileMover& mover, const PathValidator& validator, FileUrl storageDirectory);
  ~UndoJournal();
  static UndoJournal& shared();
  // The default storage directory, below the home folder.
  static FileUrl defaultStorageDirectory();

  // Adds one entry and saves.
  void record(const JournalEntry& entry);
  // Newest first.
  [[nodiscard]] std::vector<CleanupRunSummary> getRuns();
  // In recording order; empty when unknown.
  [[nodiscard]] std::vector<JournalEntry> getEntries(const Uuid& runId);

  // The entries of all runs whose items came back right into a folder, which is named as the entries name it. Each
  // carries the time when it came back.
  [[nodiscard]] std::vector<JournalEntry> restoredInto(const FileUrl& folder);

  // How many entries of a run have something to bring back. Of a run that was restored as far as it went, what is gone
  // for good does not count; what lies on a volume that is not there does.
  [[nodiscard]] std::int64_t remainingCount(const Uuid& runId);

  // The entries of a run whose items cannot come back: nothing is in their places any more, or another item. A volume
  // that is not there keeps its items.
  [[nodiscard]] std::vector<Uuid> lostEntries(const Uuid& runId);
  // The same of entries that may be of several runs.
  [[nodiscard]] std::vector<Uuid> lostEntries(std::span<const JournalEntry> entries);

  // Brings every item of a run back to where it was, under a new name where that place is taken. An item that cannot
  // come back becomes a warning. Throws UndoError when the run is unknown or the journal cannot be read.
  RestoreResult restoreRun(const Uuid& runId, const Progress& progress = {}, std::stop_token stop = {});
  // The same for some entries of a run, each only as the item that was approved; the run counts as restored once
  // nothing of it can come back any more. An item copied to another volume comes back together with its original.
  // Throws UndoError too when an entry is unknown.
  RestoreResult restoreEntries(const Uuid& runId, std::span<const RestoreRequest> requests,
                               const Progress& progress = {}, const std::stop_token& stop = {});
  // The same for one entry of a run. An item copied to another volume comes back together with its original.
  RestoreResult restoreEntry(const Uuid& runId, const Uuid& entryId);
  // A free place for a restore: `url` itself, else "name (restored 1).ext" and so on in the same folder.
  [[nodiscard]] static FileUrl resolveCollisionIfNeeded(const FileUrl& url);

  // False while the journal's file is there and cannot be read; what is listed then is not all.
  [[nodiscard]] bool isReadable();

  // The faults found in the journal or in runs that died, one line each, since the last call.
  [[nodiscard]] std::vector<std::string> takeNotices();

  // For CleanupRun: the log of a run that begins. Throws std::system_error when it cannot be made, or when the
  // journal cannot be read.
  [[nodiscard]] std::unique_ptr<RunLog> beginRun(const Uuid& runId);
  // Takes entries that the log holds durably. The journal file is rewritten at the end, and before once the log has
  // grown past a quarter of it; the log is emptied, and at the end removed, only after that.
  enum class Checkpoint : std::uint8_t { whenDue, atEnd };
  void recordLogged(std::span<const JournalEntry> entries, RunLog& log, Checkpoint checkpoint);
  // Takes entries whose log the disk refuses to complete: they show in the history, and the log stays for the next
  // start.
  void recordUnsettled(std::span<const JournalEntry> entries);
  // Takes folders that a run made, by their canonical paths: what is brought back takes those along that are empty
  // then.
  void recordMade(std::span<const std::string> folders);
  // Canonical folder of the journal, which no run may move.
  [[nodiscard]] const std::string& storageFolder() const noexcept;

 private:
  // Of a run's entries those that are chosen.
  RestoreResult restoreChosen(const Uuid& runId, std::span<const JournalEntry> run,
                              std::span<const JournalEntry> chosen, RunRestore::Expected expected,
                              const Progress& progress, const std::stop_token& stop);
  // Until its result ends, no other process restores. Throws UndoError when one does so for too long.
  [[nodiscard]] std::optional<FileLock> beginRestore(const std::stop_token& stop);
  // Throws UndoError when there is nothing of the run.
  [[nodiscard]] std::vector<JournalEntry> requireEntries(const Uuid& runId);
  // Records of items first, then the journal: an entry is never there without the record that it could have.
  bool save();
  // The records of the items of entries, as far as they can be read.
  [[nodiscard]] RunRestore::Records recordsOf(std::span<const JournalEntry> entries) const;
  // Of these entries those that lostEntries() means. Called under the lock.
  [[nodiscard]] std::vector<Uuid> lostAmong(std::span<const JournalEntry> entries) const;
  // How many entries have an item that can come back, whether or not it came back once. Called under the lock.
  [[nodiscard]] std::int64_t countThatCanComeBack(const Uuid& runId) const;
  // How many copies are still there though their originals are back. Called under the lock.
  [[nodiscard]] std::int64_t copiesLeft(const Uuid& runId) const;
  void settleDeadRuns();
  [[nodiscard]] SettledRun settle(const FoundLog& log, std::span<const FoundLog> dead,
                                  std::span<const FoundLog> living);
  void noteReturns(std::span<const FoundLog> logs);
  void settleDeadRun(const FoundLog& log, SettledRun settled);

  Trash& m_trash;
  FileMover& m_mover;
  const PathValidator& m_validator;
  std::mutex m_restoreMutex;  // taken before m_mutex
  std::mutex m_mutex;
  std::string m_storageFolder;
  JournalStore m_store;
  JournalModel m_model;
  ItemRecords m_records;
  MadeFolders m_madeFolders;
  std::vector<ItemRecord> m_unsavedRecords;
  std::vector<std::string> m_notices;
};

}  // namespace orvane
