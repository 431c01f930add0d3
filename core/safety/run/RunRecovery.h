#pragma once

#include "core/base/files/FileUrl.h"
#include "core/safety/journal/RunLog.h"
#include "core/safety/records/JournalEntry.h"

#include <functional>
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

// Where runs other than the one that is settled took, or are taking, their items.
class OtherRuns {
 public:
  // Of the journal: where an item of that place is by now. Asked only where the logs tell nothing.
  using RecordedPlaces = std::function<std::vector<FileUrl>(const FileUrl& source)>;
  explicit OtherRuns(RecordedPlaces recorded) : m_recorded(std::move(recorded)) {}

  enum class State { alive, dead };
  void add(std::span<const LoggedIntent> log, State state);

  // Whether the place belongs to another run: it announced that it will take it, or took it.
  [[nodiscard]] bool claims(const FileUrl& destination) const { return m_claimed.contains(destination); }
  [[nodiscard]] std::vector<FileUrl> placesOf(const FileUrl& source) const;

 private:
  RecordedPlaces m_recorded;
  std::unordered_set<FileUrl> m_claimed;
  std::unordered_multimap<FileUrl, FileUrl> m_places;
};

// Settles the log of a run that died. Moves nothing. Takes back what was written to the Trash, or copied, for items
// that never went there.
[[nodiscard]] SettledRun settleRunLog(std::span<const LoggedIntent> log, const OtherRuns& others, Trash& trash,
                                      FileMover& mover);

}  // namespace orvane
