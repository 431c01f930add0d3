#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/RunReference.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/History.h"
#include "core/tasks/RestoreTask.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace orvane::cli {
namespace {

constexpr std::array options{
    OptionSpec{.name = "--last", .valueName = "", .help = "Bring back the newest run that has not been brought back."},
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

const CleanupRunSummary& newestToRestore(const std::vector<CleanupRunSummary>& runs) {
  const auto found = std::find_if(
      runs.begin(), runs.end(), [](const auto& run) { return remainingCount(TaskServices::shared(), run.runId) > 0; });
  if (found == runs.end()) throw std::runtime_error("there is no run left to restore");
  return *found;
}

RunReport restore(Session& session, const Approval& approval) {
  ProgressLine line(session);
  const auto progress = [&](std::size_t done, std::size_t total) {
    line.update([&] {
      return fmt::format("Bringing back: {} of {}", formatCount(static_cast<std::int64_t>(done)),
                         itemCount(static_cast<std::int64_t>(total)));
    });
  };
  return carryOut(TaskServices::shared(), approval, progress, session.stop());
}

ExitStatus print(Session& session, const RunReport& report, const std::vector<std::string>& warnings) {
  for (const auto& warning : warnings) Session::report(escapedForDisplay(warning));
  if (session.isJson()) {
    Json json = Json::object();
    json["restoredCount"] = report.moved();
    json["warnings"] = warnings;
    session.out().line(jsonText(json));
  } else {
    session.out().line(report.moved() == 0 ? "Nothing was brought back."
                                           : fmt::format("Brought back {}.", itemCount(report.moved())));
  }
  return warnings.empty() ? ExitStatus::done : ExitStatus::failed;
}

ExitStatus run(Session& session, const Arguments& arguments) {
  const bool wantsLast = arguments.has("--last");
  if (wantsLast != arguments.plain().empty()) throw UsageError("name one RUN, or --last");
  requireConsentPossible(arguments);
  const auto stop = session.stop();
  const auto runs = recordedRuns(TaskServices::shared());
  tellJournalNotices();
  const auto& meant = wantsLast ? newestToRestore(runs) : runMeantBy(arguments.plain().front(), runs);
  if (remainingCount(TaskServices::shared(), meant.runId) == 0) {
    if (session.isJson()) return print(session, RunReport(), {});
    session.out().line("Nothing of this run is left to bring back.");
    return ExitStatus::done;
  }
  const auto proposal = proposeRestore(TaskServices::shared(), {meant.runId});
  const auto approval = proposal.approve();
  RunReport report;
  if (!approval.empty()) {
    const bool isWhole = approval.toFolders().count == meant.itemCount;
    const auto question = fmt::format("Bring back the {} {} {}?", itemsText(approval.toFolders()),
                                      isWhole ? "of" : "left of", meant.formattedDate());
    switch (askConsent(session, arguments, question)) {
      case Answer::interrupted:
        return ExitStatus::interrupted;
      case Answer::no:
        return print(session, {}, {});
      case Answer::yes:
        break;
    }
    report = restore(session, approval);
  }
  tellJournalNotices();
  const auto status = print(session, report, restoreWarnings(proposal, report));
  if (stop.stop_requested()) {
    Session::report("interrupted; restore the run again to bring back the rest");
    return ExitStatus::interrupted;
  }
  return status;
}

}  // namespace

constexpr CommandSpec restoreCommand{
    .name = "restore",
    .summary = "Bring a run back to where it was",
    .details =
        "Moves every item of the run back from the Trash, or from where it was moved to. An item whose place is "
        "taken by now gets a new name; nothing is overwritten. What cannot come back is named on standard error.",
    .arguments = {.name = "RUN",
                  .help = "The run's identifier or the beginning of it, as 'orvanectl history' shows it.",
                  .least = 0,
                  .most = 1,
                  .kind = ValueKind::run},
    .options = options,
    .run = run,
};

}  // namespace orvane::cli
