#include "cli/Arguments.h"
#include "cli/CleanSelection.h"
#include "cli/Consent.h"
#include "cli/DuplicateText.h"
#include "cli/FileArguments.h"
#include "cli/Folders.h"
#include "cli/ProgressLine.h"
#include "cli/RunReport.h"
#include "cli/Session.h"
#include "cli/commands/Commands.h"
#include "core/base/ByteCount.h"
#include "core/base/Json.h"
#include "core/base/UnicodeText.h"
#include "core/duplicates/DuplicateCleaner.h"
#include "core/duplicates/DuplicateFinderEngine.h"

#include <fmt/format.h>

#include <array>

namespace orvane::cli {
namespace {

constexpr std::array<std::string_view, 2> strategyNames{"oldest", "shortest-path"};

constexpr std::array options{
    OptionSpec{.name = "--keep",
               .valueName = "WHICH",
               .help = "Which copy stays: the one created first (the default), or the one with the shortest path.",
               .kind = ValueKind::choice,
               .choices = strategyNames},
    OptionSpec{.name = "--clean", .valueName = "", .help = "Move the copies that do not stay to the Trash."},
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

DuplicateKeepStrategy strategyFrom(const Arguments& arguments) {
  return arguments.value("--keep") == strategyNames[1] ? DuplicateKeepStrategy::keepShortestPath
                                                       : DuplicateKeepStrategy::keepOldest;
}

std::vector<DuplicateGroup> find(Session& session, const Arguments& arguments, const std::vector<FileUrl>& folders) {
  ProgressLine line(session);
  return DuplicateFinderEngine::shared().findDuplicates(
      folders, strategyFrom(arguments), session.stop(),
      [&](const DuplicateProgress& progress) { line.update([&] { return duplicateProgressText(progress); }); });
}

void tellCloudWarnings(std::span<const DuplicateGroup> groups) {
  std::vector<MoveRequest> requests;
  for (const auto& group : groups) {
    for (const auto& item : group.items) {
      if (item.isSelected()) requests.emplace_back().source = item.url();
    }
  }
  for (const auto& warning : cloudWarnings(requests)) Session::tell(escapedForDisplay(warning));
}

RunReport reportOf(const DuplicateCleanup& cleanup) {
  RunReport report;
  report.itemsProcessed = cleanup.filesMoved;
  report.bytesReclaimed = cleanup.bytesFreed;
  if (cleanup.filesMoved > 0) report.runId = cleanup.runId;
  for (const auto& outcome : cleanup.outcomes) {
    if (outcome.result == MoveResult::cancelled) {
      report.isInterrupted = true;
    } else if (outcome.result != MoveResult::moved) {
      report.failures.push_back({outcome.source, outcome.error});
      Session::tell(escapedForDisplay(DuplicateCleanup::failureLine(outcome)));
    }
  }
  return report;
}

ExitStatus printCleanup(Session& session, const DuplicateCleanup& cleanup) {
  const auto report = reportOf(cleanup);
  if (session.isJson()) {
    session.out().line(jsonText(report.toJson()));
  } else {
    session.out().line(DuplicateCleanup::title);
    session.out().line(cleanup.closingText());
    if (report.runId) {
      session.out().line("The space is free once the Trash is emptied.");
      session.out().line(fmt::format("To bring everything back: orvanectl restore {}", report.runId->toString()));
    }
  }
  return report.exitStatus();
}

ExitStatus cleanUp(Session& session, const Arguments& arguments, const std::vector<FileUrl>& folders,
                   std::span<const DuplicateGroup> groups) {
  const auto totals = totalsOf(groups);
  if (totals.selected == 0) {
    if (session.isJson()) return printCleanup(session, {});
    printDuplicateGroups(session, groups);
    return ExitStatus::done;
  }
  if (!arguments.has("--yes") && !session.isJson()) printDuplicateGroups(session, groups);
  tellCloudWarnings(groups);
  switch (askConsent(session, arguments, trashQuestion(totals.selected, totals.selectedBytes))) {
    case Answer::interrupted:
      return ExitStatus::interrupted;
    case Answer::no:
      return RunReport{}.print(session);
    case Answer::yes:
      break;
  }
  reportJournalNotices();
  DuplicateCleanup cleanup;
  {
    ProgressLine line(session);
    cleanup = DuplicateCleaner::shared().clean(
        groups, Boundary(folders),
        [&](std::size_t done, std::size_t total) { line.update([&] { return movingText(done, total); }); },
        session.stop());
  }
  reportJournalNotices();
  return printCleanup(session, cleanup);
}

ExitStatus show(Session& session, std::span<const DuplicateGroup> groups) {
  if (session.isJson()) {
    writeDuplicateGroups(session, groups);
  } else {
    printDuplicateGroups(session, groups);
  }
  return ExitStatus::done;
}

ExitStatus run(Session& session, const Arguments& arguments) {
  const bool cleans = arguments.has("--clean");
  if (cleans) requireConsentPossible(arguments);
  const auto chosen = chosenFolders(arguments.plain());
  // Without a folder there would be no boundary either.
  if (chosen.folders.empty()) return ExitStatus::failed;
  const auto groups = find(session, arguments, chosen.folders);
  if (session.stop().stop_requested()) {
    Session::report("interrupted; nothing was changed");
    return ExitStatus::interrupted;
  }
  const auto status = cleans ? cleanUp(session, arguments, chosen.folders, groups) : show(session, groups);
  return status == ExitStatus::done && chosen.someAreUnusable ? ExitStatus::failed : status;
}

}  // namespace

constexpr CommandSpec duplicatesCommand{
    .name = "duplicates",
    .summary = "Find identical files, and move the copies to the Trash",
    .details =
        "Shows groups of files with the same content, the copy that stays first. With --clean it asks, and moves the "
        "other copies to the Trash as one run that 'orvanectl restore' brings back. Nothing is ever deleted: the space "
        "is free once the Trash is emptied.\n\n"
        "Right before a copy is moved it is compared byte by byte with one that stays. A copy that has changed since "
        "it "
        "was found is left alone, and so is the last one of its group.\n\n"
        "Several names of one file (hard links, folders that overlap, a folder mounted in two places) are one file, "
        "listed by the name found first: removing one of them would free nothing. Hidden files and folders, links, "
        "empty files, bundles, photo libraries, build products and version control are left out, and so are the "
        "Library's Caches and Developer folders when they are named.",
    .arguments = {.name = "FOLDER",
                  .help = "Folders to search; the granted folders when none is named.",
                  .least = 0,
                  .most = anyNumber,
                  .kind = ValueKind::folder},
    .options = options,
    .run = run,
};

}  // namespace orvane::cli
