#pragma once

#include "core/base/FileUrl.h"
#include "core/base/Uuid.h"
#include "core/safety/JournalEntry.h"
#include "core/safety/UndoError.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

class FileMover;
class PathValidator;
class RunLog;
class Trash;

struct RestoreResult {
  std::int64_t restoredCount = 0;
  std::vector<std::string> warnings;  // one for each item that did not come back, in the order of the entries
};

// The record of every move, by run, in one file that several processes share. What another process recorded shows at
// the next call.
class UndoJournal {
 public:
  using Progress = std::function<void(std::size_t done, std::size_t total)>;

  // Loads `storageDirectory`/undo_journal.json, creating the folder, and settles what runs that died left behind.
  // Never throws for what is on the disk: a file that does not decode is set aside and the journal starts empty.
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

  // Brings every item of a run back to where it was, under a new name where that place is taken. An item that cannot
  // come back becomes a warning. Throws UndoError when the run is unknown.
  RestoreResult restoreRun(const Uuid& runId, const Progress& progress = {}, std::stop_token stop = {});
  // A free place for a restore: `url` itself, else "name (restored 1).ext" and so on in the same folder.
  [[nodiscard]] static FileUrl resolveCollisionIfNeeded(const FileUrl& url);

  // What was found wrong with the journal or with runs that died, one line each, since the last call.
  [[nodiscard]] std::vector<std::string> takeNotices();

  // For CleanupRun: the log of a run that begins. Throws std::system_error when it cannot be made.
  [[nodiscard]] std::unique_ptr<RunLog> beginRun(const Uuid& runId);
  // Takes entries that the log holds durably. The journal file is rewritten once the log has grown past a quarter of
  // it, and whenever `atEnd`; the log is emptied (and at the end removed) only after that.
  void recordLogged(std::vector<JournalEntry> entries, RunLog& log, bool atEnd);

 private:
  class State;
  std::mutex m_mutex;
  std::unique_ptr<State> m_state;
};

}  // namespace orvane
