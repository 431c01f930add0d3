#pragma once

#include "core/base/files/FileUrl.h"
#include "core/safety/journal/RunLog.h"
#include "core/safety/records/JournalEntry.h"

#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace orvane {

class FileMover;
class Trash;

// The verdict on a log, after looking where each item is now.
struct SettledRun {
  std::vector<JournalEntry> entries;  // of the items that are at their destination
  std::vector<ItemRecord> records;    // of those that moved away
  std::vector<std::string> notices;   // what could not be told, one line each
  // How the log goes on from here.
  enum class Log {
    finished,  // everything is settled
    pending,   // a volume is not there, or something could not be tidied away; look again at the next start
    unclear,   // an item is in neither place; kept for a person to read
  };
  Log log = Log::finished;
};

// The journal, as far as it tells of items that are away.
class RecordedItems {
 public:
  virtual ~RecordedItems() = default;
  // Where items of that place are by now.
  [[nodiscard]] virtual std::vector<FileUrl> placesOf(const FileUrl& source) const = 0;
  // Whether the item that is at a place is the one of an entry, and of another one than this.
  [[nodiscard]] virtual bool isOfAnother(const FileUrl& place, const Uuid& entry) const = 0;
  // Whether the item of the entry came back.
  [[nodiscard]] virtual bool isRestored(const Uuid& entry) const = 0;
};

// Where runs other than the one that is settled took, or are taking, their items.
class OtherRuns {
 public:
  // `recorded` must outlive this object.
  explicit OtherRuns(const RecordedItems& recorded) : m_recorded(recorded) {}

  enum class State { alive, dead };
  void add(std::span<const LoggedIntent> log, State state);

  // Whether the place belongs to another run than that of the entry: it announced that it will take it, or took it.
  [[nodiscard]] bool claims(const FileUrl& place, const Uuid& entry) const {
    return m_claimed.contains(place) || m_recorded.isOfAnother(place, entry);
  }
  // Whether a run that lives moves another item than that of the entry to the place, or is about to.
  [[nodiscard]] bool areMovingTo(const FileUrl& place, const Uuid& entry) const;
  [[nodiscard]] std::vector<FileUrl> placesOf(const FileUrl& source) const;
  [[nodiscard]] const RecordedItems& recorded() const noexcept { return m_recorded; }

 private:
  const RecordedItems& m_recorded;
  std::unordered_set<FileUrl> m_claimed;
  std::unordered_multimap<FileUrl, Uuid> m_arriving;  // the entries of living runs by their destinations
  std::unordered_multimap<FileUrl, FileUrl> m_places;
};

// Settles the log of a run that died. Moves nothing. Takes back what was written to the Trash, or copied, for items
// that never went there. No run may move anything meanwhile: RunLog::lockOutMoves().
[[nodiscard]] SettledRun settleRunLog(std::span<const LoggedIntent> log, const OtherRuns& others, Trash& trash,
                                      FileMover& mover);

}  // namespace orvane
