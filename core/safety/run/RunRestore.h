#pragma once

#include "core/base/files/FileStatus.h"
#include "core/safety/journal/ItemRecords.h"
#include "core/safety/records/JournalEntry.h"
#include "core/safety/run/MoveBatch.h"

#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orvane {

class FileMover;
class PathValidator;
class RunLog;
class Trash;

// One entry that is to come back.
struct RestoreRequest {
  Uuid entry;
  // Of the item that was approved, which alone may come back; absent where any may.
  std::optional<ItemIdentity> expectedIdentity;
};

struct RestoreResult {
  std::int64_t restoredCount = 0;
  std::vector<std::string> warnings;         // one for each item that did not come back
  std::vector<Uuid> failed;                  // the entries of the warnings
  std::unordered_map<Uuid, FileUrl> places;  // where the others are now; those that were not tried are missing
};

// Brings the items of one run back, group by group.
class RunRestore {
 public:
  using Records = std::unordered_map<Uuid, ItemRecord>;
  using Expected = std::unordered_map<Uuid, ItemIdentity>;
  // `entries` is the whole run; `records` tells of those of its entries that have one; `expected` has the items of
  // entries for which no other item may come back.
  RunRestore(Trash& trash, FileMover& mover, const PathValidator& validator, std::span<const JournalEntry> entries,
             Records records, Expected expected = {});

  // The warning of an item that is nowhere to be found.
  [[nodiscard]] static std::string goneWarning(std::string_view name);

  // Whether the entry tells of a copy on another volume whose original went to the Trash. Such entries are restored in
  // a group after that of their originals: a copy is set aside only when its original is back.
  [[nodiscard]] bool isCopy(const JournalEntry& entry) const;
  // Restores a group of at most maxBatchSize entries. False when the disk refused to make it durable; nothing more
  // may be restored under this log then.
  [[nodiscard]] bool carryOut(std::span<const JournalEntry> entries, RunLog& log, std::stop_token stop);
  // For what is left when carryOut() says so.
  void noteNotTried(std::span<const JournalEntry> entries);
  // The records for the journal since the last call: new states of the entries that came back, and copies set aside.
  [[nodiscard]] std::vector<JournalEntry> takeRestored();
  [[nodiscard]] const RestoreResult& result() const noexcept { return m_result; }
  // For when nothing can be restored at all.
  [[nodiscard]] RestoreResult failAll(std::span<const JournalEntry> entries, const std::string& reason) const;

 private:
  // Of an item that was copied to another volume.
  struct Original {
    JournalEntry entry;
    bool isBack = false;
  };
  struct Attempt;
  Attempt plan(const JournalEntry& entry, std::vector<FileUrl>& promised);
  Attempt planReturn(const JournalEntry& entry, std::vector<FileUrl>& promised);
  Attempt planSettingAside(const JournalEntry& entry);
  [[nodiscard]] FileUrl placeOf(const JournalEntry& entry) const;
  [[nodiscard]] FileUrl wantedPlace(const JournalEntry& entry, const FileUrl& place) const;
  void requireAllowed(const FileUrl& place) const;
  [[nodiscard]] std::unique_ptr<HeldItem> held(const FileUrl& place) const;
  [[nodiscard]] bool isThere(const JournalEntry& entry) const;
  [[nodiscard]] bool neverLeft(const JournalEntry& entry) const;
  void requireExpected(const JournalEntry& entry, const PendingMove& move) const;
  void noteMoved(const JournalEntry& entry, BatchItem& item);

  Trash& m_trash;
  FileMover& m_mover;
  const PathValidator& m_validator;
  Records m_records;
  Expected m_expected;
  // By where they came from.
  std::unordered_map<FileUrl, Original> m_originals;
  // Run of the copies that are set aside when their originals come back.
  Uuid m_asideRun = Uuid::random();
  RestoreResult m_result;
  std::vector<JournalEntry> m_restored;
};

}  // namespace orvane
