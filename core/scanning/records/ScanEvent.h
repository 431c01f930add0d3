#pragma once

#include "core/scanning/records/FileItem.h"

#include <cstdint>
#include <string>
#include <variant>

namespace orvane {

// Heartbeat of a scan, every 100 examined entries.
struct ScanProgress {
  std::int64_t itemsScanned = 0;  // entries examined, folders counted
  std::int64_t bytesFound = 0;
  std::string currentPath;  // last path component of the entry being examined
  bool operator==(const ScanProgress&) const = default;
};

// The walk ended normally; totals over all discovered items.
struct ScanCompleted {
  std::int64_t totalItems = 0;
  std::int64_t totalBytes = 0;
  bool operator==(const ScanCompleted&) const = default;
};

// The walk was stopped.
struct ScanCancelled {
  bool operator==(const ScanCancelled&) const = default;
};

// In the order of the walk; a discovered item is the FileItem itself. Exactly one completed or cancelled comes last.
using ScanEvent = std::variant<ScanProgress, FileItem, ScanCompleted, ScanCancelled>;

}  // namespace orvane
