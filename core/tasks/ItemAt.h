#pragma once

#include "core/base/files/FileUrl.h"
#include "core/scanning/records/FileItem.h"

#include <cstdint>
#include <optional>

namespace orvane {

struct TaskServices;

enum class WholeFolder : std::uint8_t { unmeasured, measured };

// The item at a place, with its identity, classified and labelled as a scan does it. A folder's size is that of all
// files inside it, hidden ones included, or 0 where it is not measured. Absent, with errno set, where nothing stands
// there.
[[nodiscard]] std::optional<FileItem> itemAt(const TaskServices& services, const FileUrl& place, WholeFolder size);

}  // namespace orvane
