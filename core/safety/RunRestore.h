#pragma once

#include "core/safety/JournalEntry.h"
#include "core/safety/MoveBatch.h"

#include <cstdint>
#include <span>
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

// Brings the items of one run back, group by group.
class RunRestore {
 public:
  // `wasRestored` tells that the whole run was restored before: whatever did not come back then is gone.
  RunRestore(Trash& trash, FileMover& mover, const PathValidator& validator, bool wasRestored);

  // Restores a group of at most maximumBatchSize entries. False when the disk refused to make it durable; nothing more
  // may be restored under this log then.
  [[nodiscard]] bool carryOut(std::span<const JournalEntry> entries, RunLog& log, std::stop_token stop);
  // The new states of the entries that came back since the last call.
  [[nodiscard]] std::vector<JournalEntry> takeRestored();
  [[nodiscard]] const RestoreResult& result() const noexcept { return m_result; }
  // For when nothing can be restored at all.
  [[nodiscard]] RestoreResult failAll(std::span<const JournalEntry> entries, const std::string& reason) const;

 private:
  struct Attempt;
  Attempt plan(const JournalEntry& entry, std::vector<FileUrl>& promised);

  Trash& m_trash;
  FileMover& m_mover;
  const PathValidator& m_validator;
  bool m_wasRestored;
  RestoreResult m_result;
  std::vector<JournalEntry> m_restored;
};

}  // namespace orvane
