#pragma once

#include "core/base/files/FileLock.h"
#include "core/safety/journal/RunLog.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orvane {

// A run's log as it was found beside the journal. Its run is dead when nobody held the lock, which is held here then,
// so that two starting processes do not both settle it.
struct FoundLog {
  std::string path;
  std::optional<FileLock> lock;
  std::vector<LoggedIntent> intents;
};

// Whether there is any log but those of runs that live: one of a dead run, or one that cannot be read. Who settles one
// at this moment may take it for that of a living run, and leaves it to the caller.
[[nodiscard]] bool hasLogsToSettle(const std::string& folder);
// The logs of dead runs in the journal's folder, in a steady order. Unreadable ones are left alone and told in
// `notices`.
[[nodiscard]] std::vector<FoundLog> findLogsToSettle(const std::string& folder, std::vector<std::string>& notices);
// All other logs that are there now, without a lock those of runs that live. Absent where one cannot be read.
[[nodiscard]] std::optional<std::vector<FoundLog>> findOtherLogs(const std::string& folder,
                                                                 std::span<const FoundLog> settled,
                                                                 std::vector<std::string>& notices);

}  // namespace orvane
