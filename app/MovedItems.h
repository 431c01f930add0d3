#pragma once

#include "app/ScannedItems.h"
#include "core/base/Date.h"

#include <cstdint>
#include <vector>

namespace orvane {

class UndoJournal;

// Indexes of scanned items that are no longer, or are again, where they were found.
struct MovedItems {
  std::vector<std::uint32_t> gone;
  std::vector<std::uint32_t> back;
};

// What runs recorded since `since` moved, or brought back, of the scanned items, by whichever section or process.
[[nodiscard]] MovedItems movedSince(UndoJournal& journal, const ScannedItems::Snapshot& scanned, Date since);

}  // namespace orvane
