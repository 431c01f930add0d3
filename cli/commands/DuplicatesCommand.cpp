#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/Folders.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "cli/text/DuplicateText.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/DuplicatesTask.h"
#include "core/tasks/TaskServices.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <array>
#include <cerrno>

namespace orvane::cli {
namespace {

constexpr std::array<std::string_view, 2> duplicatesStrategyNames{"oldest", "shortest-path"};

constexpr std::array duplicatesOptions{
    OptionSpec{.name = "--keep",
               .valueName = "WHICH",
               .help = "Which copy stays: the one created first (the default), or the one with the shortest path.",
               .kind = ValueKind::choice,
               .choices = duplicatesStrategyNames},
    OptionSpec{.name = "--reference",
               .valueName = "FOLDER",
               .help = "Search this folder too and never touch it: a copy in it is the one that stays. May be given "
                       "several times.",
               .kind = ValueKind::folder,
               .repeat = OptionSpec::Repeat::any},
    OptionSpec{.name = "--clean", .valueName = "", .help = "Move the copies that do not stay to the Trash."},
    saveOption,
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

DuplicateKeepStrategy duplicatesStrategyFrom(const Arguments& arguments) {
  return arguments.value("--keep") == duplicatesStrategyNames[1] ? DuplicateKeepStrategy::keepShortestPath
                                                                 : DuplicateKeepStrategy::keepOldest;
}

std::optional<Proposal> find(Session& session, const Arguments& arguments, const std::vector<FileUrl>& folders,
                             const std::vector<FileUrl>& references) {
  ProgressLine line(session);
  TaskMonitor monitor{.stop = session.stop()};
  monitor.comparing = [&](const DuplicateProgress& progress) {
    line.update([&] { return duplicateProgressText(progress); });
  };
  return proposeDuplicates(TaskServices::shared(),
                           {.folders = folders, .keep = duplicatesStrategyFrom(arguments), .references = references},
                           monitor);
}

ExitStatus printCleanup(Session& session, const Proposal& proposal, const RunReport& report) {
  const auto status = tellFailures(proposal, report, [](const FileUrl& copy, const std::string& reason) {
    Session::tell(escapedForDisplay(duplicateFailureLine(copy, reason)));
  });
  if (session.isJson()) {
    session.out().line(jsonText(reportJson(proposal, report)));
    return status;
  }
  session.out().line(duplicateCleanupTitle);
  session.out().line(duplicateCleanupText(report));
  if (report.runId) {
    session.out().line("The space is free once the Trash is emptied.");
    session.out().line(fmt::format("To bring everything back: orvanectl restore {}", report.runId->toString()));
  }
  return status;
}

ExitStatus cleanUp(Session& session, const Arguments& arguments, const Proposal& proposal) {
  const auto approval = proposal.approve();
  if (!session.isJson() && (approval.empty() || !arguments.has("--yes"))) printDuplicateGroups(session, proposal);
  if (approval.empty()) return session.isJson() ? printCleanup(session, proposal, {}) : ExitStatus::done;
  switch (askToMove(session, arguments, approval)) {
    case Answer::interrupted:
      return ExitStatus::interrupted;
    case Answer::no:
      return printReport(session, proposal, {});
    case Answer::yes:
      break;
  }
  return printCleanup(session, proposal, moveApproved(session, approval));
}

ExitStatus show(Session& session, const Proposal& proposal) {
  if (session.isJson()) {
    writeDuplicateGroups(session, proposal);
  } else {
    printDuplicateGroups(session, proposal);
  }
  return ExitStatus::done;
}

// A folder that cannot be read must not count as empty: its copies would not stay.
std::vector<FileUrl> referencesFrom(const Arguments& arguments) {
  auto references = placesFromArguments(arguments.values("--reference"));
  for (const auto& folder : references) {
    if (!DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow)) {
      throw UsageError(fmt::format("--reference {}: {}", shownPath(folder), errorText(errno)));
    }
  }
  return references;
}

ExitStatus runDuplicates(Session& session, const Arguments& arguments) {
  const bool isToSave = arguments.has("--save");
  const bool cleans = arguments.has("--clean") && !isToSave;
  if (cleans) requireConsentPossible(arguments);
  const auto chosen = chosenFolders(arguments.plain());
  if (chosen.folders.empty()) return ExitStatus::failed;
  const auto proposal = find(session, arguments, chosen.folders, referencesFrom(arguments));
  if (!proposal) return interruptedBeforeChange();
  tellNotices(proposal->notices());
  auto status = ExitStatus::done;
  if (isToSave) {
    status = saveProposal(session, arguments, proposal->approve());
  } else {
    status = cleans ? cleanUp(session, arguments, *proposal) : show(session, *proposal);
  }
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
                  .min = 0,
                  .max = anyNumber,
                  .kind = ValueKind::folder},
    .options = duplicatesOptions,
    .run = runDuplicates,
};

}  // namespace orvane::cli
