#pragma once

#include "cli/frame/CommandSpec.h"
#include "cli/frame/Consent.h"
#include "cli/frame/ExitStatus.h"
#include "core/base/text/JsonFwd.h"
#include "core/tasks/CarryOut.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/TaskMonitor.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvane::cli {

class ProgressLine;

// Every command that proposes takes it.
inline constexpr OptionSpec saveOption{
    .name = "--save",
    .valueName = "FILE",
    .help = "Write the proposal to FILE, for 'orvanectl apply' later, and change nothing.",
    .kind = ValueKind::path};
inline constexpr OptionSpec rootOption{
    .name = "--root",
    .valueName = "FOLDER",
    .help = "Act only inside this folder instead of the granted ones; may be given several times.",
    .kind = ValueKind::folder,
    .repeat = OptionSpec::Repeat::any};

// From a proposal to its report, for every command that moves something.

// The monitor of a task that scans: it draws where the scan is, and stops when the user interrupts. The line must
// outlive it.
[[nodiscard]] TaskMonitor scanMonitor(Session& session, ProgressLine& line);

// Warns of what a cloud service would lose, on standard error.
void tellSynced(const Approval& approval);
// Warns of what a cloud service would lose, and asks whether to move what is approved. With --yes it only warns.
[[nodiscard]] Answer askToMove(Session& session, const Arguments& arguments, const Approval& approval);
// Draws how far a run of moves is. The line must outlive what is returned.
[[nodiscard]] RunProgress movingProgress(ProgressLine& line);
// Carries it out, showing progress; what was found wrong with the journal goes to standard error.
[[nodiscard]] RunReport moveApproved(Session& session, const Approval& approval);

// Names what was not moved, with its reason, on standard error: locked rows that were refused, and rows that failed.
// Says too that the run was interrupted, where it was.
[[nodiscard]] ExitStatus tellFailures(const Proposal& proposal, const RunReport& report);
// The same, each told by `tell`.
using TellFailure = std::function<void(const FileUrl& place, const std::string& reason)>;
[[nodiscard]] ExitStatus tellFailures(const Proposal& proposal, const RunReport& report, const TellFailure& tell);
// tellFailures(), and the summary with the command that undoes the run.
[[nodiscard]] ExitStatus printReport(Session& session, const Proposal& proposal, const RunReport& report);
// {"runId", "itemsProcessed", "bytesReclaimed", "failures"}
[[nodiscard]] Json reportJson(const Proposal& proposal, const RunReport& report);

// askToMove() and, on a yes, moveApproved() and printReport(); an empty report is printed on a no.
[[nodiscard]] ExitStatus askAndMove(Session& session, const Arguments& arguments, const Approval& approval);

// The user's answer about a proposal.
struct AskedRun {
  std::optional<RunReport> report = {};  // absent where nothing is selected, and where the answer was no
  ExitStatus status = ExitStatus::done;
};
// Asks whether to move what is proposed as selected, moves it on a yes, and says with text output what became of it.
// With --json the caller prints the report; failures are named on standard error all the same.
[[nodiscard]] AskedRun askAndRun(Session& session, const Arguments& arguments, const Proposal& proposal);

// Writes what is approved where --save names a file, which must be new, or - for the standard output.
[[nodiscard]] ExitStatus saveProposal(Session& session, const Arguments& arguments, const Approval& approval);
// The rows that would move, for people or as {"items", "totalBytes"}.
void printDryRun(Session& session, const Proposal& proposal);
// Says that nothing was changed.
[[nodiscard]] ExitStatus interruptedBeforeChange();

// Prints the notices beside the rows on standard error.
void tellNotices(const Notices& notices);
// The status; failed where all went well but for a folder that was asked for and not looked at.
[[nodiscard]] ExitStatus statusWith(const Notices& notices, ExitStatus status);
// One sentence for a folder that was left out.
[[nodiscard]] std::string textOf(const FolderLeftOut& leftOut);
// Prints the faults of the undo journal on standard error. For commands that use the journal, before they
// print.
void tellJournalNotices();

// "1 item" or "1,234 items".
[[nodiscard]] std::string itemCount(std::int64_t count);
// Of everything that is approved.
[[nodiscard]] RowSum sumOf(const Approval& approval);
// "12 items (3.4 GB)"
[[nodiscard]] std::string itemsText(const RowSum& rows);
// "3 items, 1.2 GB, are on the keep list", and how to see it.
[[nodiscard]] std::string keptText(const RowSum& rows);
// "2 leftovers (3 KB)"
[[nodiscard]] std::string leftoversText(const RowSum& rows);

}  // namespace orvane::cli
