#pragma once

#include "app/ScannedItems.h"
#include "core/base/Uuid.h"
#include "core/safety/CleanupRun.h"

#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

class TrashMover;
class UndoJournal;

// Why an item was not moved.
struct CleanupFailure {
  enum class Reason : std::uint8_t { refused, changed, gone };
  std::string name;
  Reason reason = Reason::refused;
  std::string error;  // for `refused`
};

// What became of a cleanup.
struct CleanupReport {
  std::optional<Uuid> runId;  // absent when nothing was moved
  std::vector<std::uint32_t> moved;
  std::int64_t movedBytes = 0;
  std::int64_t left = 0;  // not tried, as the run was stopped
  std::vector<CleanupFailure> failures;
};

// Moves the chosen items to the Trash as one run, inside the scanned folders only. A file that is another one by now,
// or has been written to since the scan, is left alone: what was approved is what moves.
[[nodiscard]] CleanupReport cleanItems(TrashMover& mover, UndoJournal& journal, const ScannedItems::Snapshot& scanned,
                                       const std::vector<std::uint32_t>& chosen, const CleanupRun::Progress& progress,
                                       const std::stop_token& stop);

}  // namespace orvane
