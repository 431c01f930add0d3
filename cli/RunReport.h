#pragma once

#include "cli/ExitStatus.h"
#include "cli/ProposalRun.h"
#include "core/base/JsonFwd.h"
#include "core/base/Uuid.h"
#include "core/safety/CleanupRun.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::cli {

class ProgressLine;
class Session;

// What a run of moves to the Trash came to.
struct RunReport {
  struct Failure {
    FileUrl place;
    std::string error;
  };

  std::optional<Uuid> runId;  // absent when nothing was moved: there is nothing to restore then
  std::int64_t itemsProcessed = 0;
  std::int64_t bytesReclaimed = 0;
  std::vector<Failure> failures;
  bool isInterrupted = false;

  // The JSON document, or the summary for people with the command that undoes the run; failures go to standard error.
  ExitStatus print(Session& session) const;
  [[nodiscard]] Json toJson() const;
  // How the command ends; says that it was interrupted, where it was.
  [[nodiscard]] ExitStatus exitStatus() const;
};

// Moves the requests to the Trash as one run, showing progress. `failures` are those of items that were ruled out
// before.
RunReport moveToTrash(Session& session, const Boundary& roots, std::span<const MoveRequest> requests,
                      std::vector<RunReport::Failure> failures = {});

// The same for a run that somebody else carries out: `carryOut` is given what it has to report and to obey.
struct CarriedOut {
  Uuid runId;
  std::vector<MoveOutcome> outcomes;
};
using CarryOut = std::function<CarriedOut(const CleanupRun::Progress& progress, std::stop_token stop)>;
RunReport reportRun(Session& session, const CarryOut& carryOut, std::vector<RunReport::Failure> failures = {});

// "Moving to the Trash: 512 of 1,000 items"
[[nodiscard]] std::string movingText(std::size_t done, std::size_t total);
// "Move 12 items (3.4 GB) to the Trash?"
[[nodiscard]] std::string trashQuestion(std::int64_t count, std::int64_t bytes);

// Names what was not moved, with its reason, on standard error.
[[nodiscard]] ExitStatus reportOutcomes(std::span<const MoveOutcome> outcomes);

// What was found wrong with the undo journal goes to standard error. For commands that use the journal, before they
// print.
void reportJournalNotices();

}  // namespace orvane::cli
