#include "cli/Arguments.h"
#include "cli/Consent.h"
#include "cli/ProgressLine.h"
#include "cli/RunReference.h"
#include "cli/RunReport.h"
#include "cli/Session.h"
#include "cli/UsageError.h"
#include "cli/commands/Commands.h"
#include "core/base/ByteCount.h"
#include "core/base/Json.h"
#include "core/base/UnicodeText.h"
#include "core/safety/UndoJournal.h"

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
  const auto found = std::find_if(runs.begin(), runs.end(),
                                  [](const auto& run) { return UndoJournal::shared().remainingCount(run.runId) > 0; });
  if (found == runs.end()) throw std::runtime_error("there is no run left to restore");
  return *found;
}

RestoreResult restore(Session& session, const Uuid& runId) {
  ProgressLine line(session);
  return UndoJournal::shared().restoreRun(
      runId,
      [&](std::size_t done, std::size_t total) {
        line.update([&] {
          return fmt::format("Bringing back: {} of {}", formatCount(static_cast<std::int64_t>(done)),
                             itemCount(static_cast<std::int64_t>(total)));
        });
      },
      session.stop());
}

ExitStatus print(Session& session, const RestoreResult& result) {
  for (const auto& warning : result.warnings) Session::report(escapedForDisplay(warning));
  if (session.isJson()) {
    Json json = Json::object();
    json["restoredCount"] = result.restoredCount;
    json["warnings"] = result.warnings;
    session.out().line(jsonText(json));
  } else {
    session.out().line(result.restoredCount == 0 ? "Nothing was brought back."
                                                 : fmt::format("Brought back {}.", itemCount(result.restoredCount)));
  }
  return result.warnings.empty() ? ExitStatus::done : ExitStatus::failed;
}

ExitStatus run(Session& session, const Arguments& arguments) {
  const bool wantsLast = arguments.has("--last");
  if (wantsLast != arguments.plain().empty()) throw UsageError("name one RUN, or --last");
  requireConsentPossible(arguments);
  const auto stop = session.stop();
  const auto runs = UndoJournal::shared().getRuns();
  reportJournalNotices();
  const auto& meant = wantsLast ? newestToRestore(runs) : runMeantBy(arguments.plain().front(), runs);
  const auto remaining = UndoJournal::shared().remainingCount(meant.runId);
  if (remaining == 0) {
    if (session.isJson()) return print(session, {});
    session.out().line("Nothing of this run is left to bring back.");
    return ExitStatus::done;
  }
  const auto question = remaining == meant.itemCount
                            ? fmt::format("Bring back the {} ({}) of {}?", itemCount(meant.itemCount),
                                          formatByteCount(meant.totalBytes), meant.formattedDate())
                            : fmt::format("Bring back the {} left of {}?", itemCount(remaining), meant.formattedDate());
  switch (askConsent(session, arguments, question)) {
    case Answer::interrupted:
      return ExitStatus::interrupted;
    case Answer::no:
      return print(session, {});
    case Answer::yes:
      break;
  }
  const auto result = restore(session, meant.runId);
  reportJournalNotices();
  const auto status = print(session, result);
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
                  .most = 1},
    .options = options,
    .run = run,
};

}  // namespace orvane::cli
