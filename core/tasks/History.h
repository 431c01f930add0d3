#pragma once

#include <string>
#include <vector>

namespace orvane {

struct TaskServices;

// What was found wrong with the journal or with runs that died, one line each, since the last call.
[[nodiscard]] std::vector<std::string> takeJournalNotices(const TaskServices& services);

}  // namespace orvane
