#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/Folders.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Quantities.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "cli/text/TotalsTable.h"
#include "core/tasks/CleanTask.h"
#include "core/tasks/ScanTotals.h"
#include "core/tasks/TaskServices.h"

#include <array>
#include <optional>
#include <utility>

namespace orvane::cli {
namespace {

constexpr auto categoryNames = scanCategories.rawValues();

constexpr std::array cleanOptions{
    OptionSpec{.name = "--category",
               .valueName = "C",
               .help = "Take only items of this category; may be given several times.",
               .kind = ValueKind::choice,
               .choices = categoryNames,
               .repeat = OptionSpec::Repeat::any},
    OptionSpec{.name = "--include-review",
               .valueName = "",
               .help = "Take the items to review of the categories named with --category too."},
    OptionSpec{.name = "--developer-caches",
               .valueName = "",
               .help = "Scan the developer tools' caches too, each folder as one item."},
    noKnownPlacesOption,
    OptionSpec{.name = "--older-than",
               .valueName = "DAYS",
               .help = "Take only items that nothing changed for that many days."},
    OptionSpec{.name = "--larger-than",
               .valueName = "SIZE",
               .help =
                   "Take only items of that size or more: 200M, 1.5GB. K, M, G and T count in thousands, Ki, Mi, Gi "
                   "and Ti in 1024."},
    OptionSpec{.name = "--dry-run", .valueName = "", .help = "Show what would be moved, and stop."},
    saveOption,
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

CleanOptions cleanOptionsFrom(const Arguments& arguments) {
  CleanOptions options;
  for (const auto& name : arguments.values("--category")) {
    options.categories.push_back(scanCategoryFromRawValue(name).value());
  }
  if (arguments.has("--include-review")) {
    if (options.categories.empty()) throw UsageError("--include-review needs the categories meant: add --category C");
    options.reviewItems = ReviewItems::include;
  }
  if (arguments.has("--developer-caches")) options.developerCaches = DeveloperCaches::include;
  if (const auto days = arguments.value("--older-than")) options.minimumAgeDays = daysFrom(*days, "--older-than");
  if (const auto size = arguments.value("--larger-than")) options.minimumSizeBytes = bytesFrom(*size, "--larger-than");
  return options;
}

void printCleanTable(Session& session, const Proposal& proposal) {
  ScanTotals totals;
  proposal.forEach([&](std::size_t, const ProposedRow& row) { totals.add(row.item); });
  printTotals(session, totals);
}

ExitStatus runClean(Session& session, const Arguments& arguments) {
  auto options = cleanOptionsFrom(arguments);
  const bool isDryRun = arguments.has("--dry-run");
  const bool isToSave = arguments.has("--save");
  if (!isDryRun && !isToSave) requireConsentPossible(arguments);
  options.knownPlaces = knownPlacesFrom(arguments);
  auto chosen = chosenFolders(arguments.plain(), options.knownPlaces);
  options.folders = std::move(chosen.folders);
  if (options.folders.empty() && chosen.someAreUnusable) return ExitStatus::failed;
  std::optional<Proposal> proposal;
  {
    ProgressLine line(session);
    proposal = proposeClean(TaskServices::shared(), options, scanMonitor(session, line));
  }
  if (!proposal) return interruptedBeforeChange();
  tellNotices(proposal->notices());
  const auto approval = proposal->approve();
  auto status = ExitStatus::done;
  if (isDryRun) {
    printDryRun(session, *proposal);
  } else if (isToSave) {
    status = saveProposal(session, arguments, approval);
  } else if (approval.empty()) {
    status = printReport(session, *proposal, {});
  } else {
    if (!session.isJson()) printCleanTable(session, *proposal);
    status = askAndMove(session, arguments, approval);
  }
  return status == ExitStatus::done && chosen.someAreUnusable ? ExitStatus::failed : status;
}

}  // namespace

constexpr CommandSpec cleanCommand{
    .name = "clean",
    .summary = "Scan, and move what is recommended to the Trash",
    .details =
        "Scans the folders, and where none is named the caches and logs of programs too, selects the items that are "
        "safe to remove, shows them by category, asks, and moves them to "
        "the Trash as one run that 'orvanectl restore' brings back. Nothing is ever deleted: the space is free once "
        "the Trash is emptied.\n\n"
        "Items that are in a Trash already are left out. With --json, \"runId\" is null when nothing was moved.",
    .arguments = {.name = "FOLDER",
                  .help = "Folders to clean; the granted folders when none is named.",
                  .min = 0,
                  .max = anyNumber,
                  .kind = ValueKind::folder},
    .options = cleanOptions,
    .run = runClean,
};

}  // namespace orvane::cli
