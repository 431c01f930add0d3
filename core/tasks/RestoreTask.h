#pragma once

#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"
#include "core/safety/records/MoveOutcome.h"
#include "core/tasks/Proposal.h"

#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

struct TaskServices;
struct RunReport;

struct RestoreOptions {
  Uuid runId;
  std::vector<Uuid> entries = {};  // of the run; all where it is empty
  Date now = ReferenceClock::now();
};

// Proposes to bring back what of the run has not come back: items at their present places, under the identifiers of
// their entries, bound for the folders that they came from. One on a volume that is not there has no identity; one that
// is gone, or in whose place another item lies, is refused. An item copied to another volume is one row with its
// original. Items of a run that was restored already are refused. Throws UndoError when the run is unknown.
[[nodiscard]] Proposal proposeRestore(const TaskServices& services, const RestoreOptions& options);
// For carryOut(): has the journal bring the approved rows back, each only if it is the item that was approved. With
// none a run of which nothing can come back counts as restored.
[[nodiscard]] std::vector<MoveOutcome> bringBack(const TaskServices& services, const Approval& approval,
                                                 const RunProgress& progress, const std::stop_token& stop);

// One line for each item that did not come back, with the reason, in the order of the rows.
[[nodiscard]] std::vector<std::string> restoreWarnings(const Proposal& proposal, const RunReport& report);

// Where the item of a restore's row was, and returns to.
[[nodiscard]] FileUrl placeToReturnTo(const ProposedRow& row);

// An item that came back beside its place, in which something stands.
struct RenamedItem {
  FileUrl wanted;
  FileUrl place;
};
[[nodiscard]] std::vector<RenamedItem> renamedItems(const Proposal& proposal, const RunReport& report);

struct Restored {
  std::int64_t count = 0;
  std::vector<std::string> warnings;
  std::vector<RenamedItem> renamed;
  // Of what made room for the items, where places were swapped.
  std::optional<Uuid> replacedRun = {};
  RowSum replaced = {};
};
// Brings everything back at once, for a button that names what it brings back. An unknown run is a warning.
[[nodiscard]] Restored restoreNow(const TaskServices& services, const RestoreOptions& options,
                                  const RunProgress& progress = {}, const std::stop_token& stop = {});

}  // namespace orvane
