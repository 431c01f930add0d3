// Any text is a log of some intents, each of an entry of its own, with absolute places.

#include "core/safety/journal/RunLog.h"
#include "tests/fuzz/FuzzCheck.h"

#include <string_view>
#include <unordered_set>

namespace orvane::fuzz {

void run(std::string_view input) {
  std::unordered_set<Uuid> entries;
  for (const auto& [intent, done] : readRunLog(input)) {
    check(entries.insert(intent.entry.id).second, "an entry has one intent");
    check(intent.source.path().starts_with('/') && intent.destination.path().starts_with('/'), "places are absolute");
    static_cast<void>(intent.record());
  }
  // A log that is cut short tells no more than the whole.
  check(readRunLog(input.substr(0, input.size() / 2)).size() <= entries.size(), "half a log tells no more");
}

}  // namespace orvane::fuzz
