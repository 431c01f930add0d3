#pragma once

#include "core/safety/CleanupRun.h"
#include "core/scanning/FileItem.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

namespace orvane::cli {

// The request to move what stands at a place. A folder is only told by its name: what is inside it may change at any
// time. Absent when nothing stands there.
[[nodiscard]] std::optional<MoveRequest> moveRequestFor(const FileUrl& place, std::int64_t folderSize);
// What to tell the user before places in synced folders leave them: a line for each cloud service.
[[nodiscard]] std::vector<std::string> cloudWarnings(std::span<const MoveRequest> requests);

}  // namespace orvane::cli
