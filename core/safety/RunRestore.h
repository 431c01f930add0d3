#pragma once

#include "core/safety/JournalEntry.h"
#include "core/safety/MoveBatch.h"

#include <cstdint>
#include <span>
#include <stop_token>
#include <string>
#include <unordered_map>
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

// Brings the items of one run back, group by group.
class RunRestore {
 public:
  enum class Before : std::uint8_t { notRestored, restored };
  // `entries` is the whole run. `before` tells whether it was restored already: whatever did not come back then is
  // gone.
  RunRestore(Trash& trash, FileMover& mover, const PathValidator& validator, std::span<const JournalEntry> entries,
             Before before);

  // Restores a group of at most maximumBatchSize entries. False when the disk refused to make it durable; nothing more
  // may be restored under this log then.
  [[nodiscard]] bool carryOut(std::span<const JournalEntry> entries, RunLog& log, std::stop_token stop);
  // What the journal is to record since the last call: new states of the entries that came back, and copies set aside.
  [[nodiscard]] std::vector<JournalEntry> takeRestored();
  [[nodiscard]] const RestoreResult& result() const noexcept { return m_result; }
  // For when nothing can be restored at all.
  [[nodiscard]] RestoreResult failAll(std::span<const JournalEntry> entries, const std::string& reason) const;

 private:
  struct Attempt;
  Attempt plan(const JournalEntry& entry, std::vector<FileUrl>& promised);
  Attempt planReturn(const JournalEntry& entry, std::vector<FileUrl>& promised);
  Attempt planSettingAside(const JournalEntry& entry);
  void noteMoved(const JournalEntry& entry, JournalEntry recorded);

  Trash& m_trash;
  FileMover& m_mover;
  const PathValidator& m_validator;
  Before m_before;
  // Items that went to another volume: they were copied there, and the original went to the Trash. Where each original
  // came from, with its place in the Trash.
  std::unordered_map<FileUrl, FileUrl> m_originals;
  // Run of the copies that are set aside when their originals come back.
  Uuid m_asideRun = Uuid::random();
  RestoreResult m_result;
  std::vector<JournalEntry> m_restored;
};

}  // namespace orvane
