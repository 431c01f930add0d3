#pragma once

#include "core/safety/JournalEntry.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

class FileMover;
class Trash;

// What the log of a run that died comes to, after looking where each item is now.
struct SettledRun {
  std::vector<JournalEntry> entries;  // of the items that are at their destination
  std::vector<std::string> notices;   // what could not be told, one line each
  // How the log goes on from here.
  enum class Log {
    finished,  // everything is settled
    pending,   // a volume is not there; look again at the next start
    unclear,   // an item is in neither place; kept for a person to read
  };
  Log log = Log::finished;
};

// Moves nothing. Takes back what was written to the Trash, or copied, for items that never went there.
[[nodiscard]] SettledRun settleRunLog(std::string_view logText, Trash& trash, FileMover& mover);

}  // namespace orvane
