#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/RunReference.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/CarryOut.h"
#include "core/tasks/History.h"
#include "core/tasks/RestoreSwap.h"
#include "core/tasks/RestoreTask.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace orvane::cli {
namespace {

constexpr std::array restoreOptions{
    OptionSpec{.name = "--last", .valueName = "", .help = "Bring back the newest run that has not been brought back."},
    OptionSpec{.name = "--swap",
               .valueName = "",
               .help = "Move what stands in an item's place to the Trash, as a run of its own."},
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

const CleanupRunSummary& newestToRestore(const std::vector<CleanupRunSummary>& runs) {
  const auto found = std::find_if(
      runs.begin(), runs.end(), [](const auto& run) { return remainingCount(TaskServices::shared(), run.runId) > 0; });
  if (found == runs.end()) throw std::runtime_error("there is no run left to restore");
  return *found;
}

// A restore that was proposed, and what makes room for it where places are swapped.
struct Intended {
  Proposal proposal;
  Approval restore;
  Approval room;
  bool isSwap;
};

Intended intend(const Uuid& runId, bool isSwap) {
  auto proposal = proposeRestore(TaskServices::shared(), {runId});
  auto restore = proposal.approve();
  auto room = proposeMakingRoom(TaskServices::shared(), restore).approve();
  return {std::move(proposal), std::move(restore), std::move(room), isSwap};
}

std::string placesText(std::int64_t count) {
  return fmt::format("{} {}", formatCount(count), count == 1 ? "place is" : "places are");
}

// Says before the question what stands in the way.
void tellTakenPlaces(const Approval& room, bool isSwap) {
  if (room.empty()) return;
  for (const auto index : room.rows()) {
    const auto& item = room.proposal().row(index).item;
    Session::tell(fmt::format("{} ({}) stands in the place of what comes back", shownPath(item.url()),
                              formatByteCount(item.fileSize())));
  }
  if (isSwap) return;
  const auto count = room.toTrash().count;
  Session::tell(
      fmt::format("{} taken: what comes back there gets another name. --swap gives it its place again, and "
                  "moves what stands there to the Trash.",
                  placesText(count)));
}

void tellBefore(const Intended& intended) {
  for (const auto& refusal : restoreWarnings(intended.proposal, {})) Session::tell(escapedForDisplay(refusal));
  tellTakenPlaces(intended.room, intended.isSwap);
}

std::string questionFor(const Intended& intended, const CleanupRunSummary& run) {
  const auto& items = intended.restore.toFolders();
  const bool isWhole = items.count == run.itemCount;
  auto question =
      fmt::format("Bring back the {} {} {}", itemsText(items), isWhole ? "of" : "left of", run.formattedDate());
  if (intended.isSwap && !intended.room.empty()) {
    question += fmt::format(", and move {} from their places to the Trash", itemsText(intended.room.toTrash()));
  }
  return question + "?";
}

Restored carryOutAsked(Session& session, const Intended& intended) {
  ProgressLine line(session);
  const auto progress = [&](std::size_t done, std::size_t total) {
    line.update([&] {
      return fmt::format("Bringing back: {} of {}", formatCount(static_cast<std::int64_t>(done)),
                         itemCount(static_cast<std::int64_t>(total)));
    });
  };
  const auto& services = TaskServices::shared();
  if (intended.isSwap) return swapPlaces(services, intended.restore, intended.room, progress, session.stop());
  const auto report = carryOut(services, intended.restore, progress, session.stop());
  return {report.moved(), restoreWarnings(intended.proposal, report), renamedItems(intended.proposal, report)};
}

void tellRenamed(const std::vector<RenamedItem>& renamed) {
  for (const auto& [wanted, place] : renamed) {
    Session::tell(fmt::format("{} came back as {}: something stands in its place",
                              escapedForDisplay(wanted.lastPathComponent()),
                              escapedForDisplay(place.lastPathComponent())));
  }
}

ExitStatus printRestored(Session& session, const Restored& restored) {
  for (const auto& warning : restored.warnings) Session::report(escapedForDisplay(warning));
  tellRenamed(restored.renamed);
  if (session.isJson()) {
    Json json = Json::object();
    json["restoredCount"] = restored.count;
    json["warnings"] = restored.warnings;
    session.out().line(jsonText(json));
  } else {
    session.out().line(restored.count == 0 ? "Nothing was brought back."
                                           : fmt::format("Brought back {}.", itemCount(restored.count)));
    if (restored.replaced.count > 0) {
      session.out().line(
          fmt::format("Moved {} from their places to the Trash. To bring that back: orvanectl restore {}",
                      itemsText(restored.replaced), restored.replacedRun->toString()));
    }
  }
  return restored.warnings.empty() ? ExitStatus::done : ExitStatus::failed;
}

ExitStatus runRestore(Session& session, const Arguments& arguments) {
  const bool wantsLast = arguments.has("--last");
  if (wantsLast != arguments.plain().empty()) throw UsageError("name one RUN, or --last");
  requireConsentPossible(arguments);
  const auto stop = session.stop();
  const auto runs = recordedRuns(TaskServices::shared());
  tellJournalNotices();
  const auto& meant = wantsLast ? newestToRestore(runs) : runMeantBy(arguments.plain().front(), runs);
  if (remainingCount(TaskServices::shared(), meant.runId) == 0) {
    if (session.isJson()) return printRestored(session, {});
    session.out().line("Nothing of this run is left to bring back.");
    return ExitStatus::done;
  }
  const auto intended = intend(meant.runId, arguments.has("--swap"));
  // Where nothing can come back there is nothing to ask.
  if (!intended.restore.empty()) {
    if (!arguments.has("--yes")) tellBefore(intended);
    switch (askConsent(session, arguments, questionFor(intended, meant))) {
      case Answer::interrupted:
        return ExitStatus::interrupted;
      case Answer::no:
        return printRestored(session, {});
      case Answer::yes:
        break;
    }
  }
  const auto restored = carryOutAsked(session, intended);
  tellJournalNotices();
  const auto status = printRestored(session, restored);
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
        "taken by now gets a new name, which is told on standard error, unless --swap makes room for it; nothing is "
        "overwritten. Items that cannot come back are named there too.\n\n"
        "Items that --swap moves to the Trash are a run of their own, which 'orvanectl restore' brings back like any "
        "other.",
    .arguments = {.name = "RUN",
                  .help = "The run's identifier or the beginning of it, as 'orvanectl history' shows it.",
                  .min = 0,
                  .max = 1,
                  .kind = ValueKind::run},
    .options = restoreOptions,
    .run = runRestore,
};

}  // namespace orvane::cli
