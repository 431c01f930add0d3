#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/Folders.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/ScanRun.h"
#include "cli/frame/Session.h"
#include "cli/text/Table.h"
#include "cli/text/TotalsTable.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/text/ByteCount.h"
#include "core/platform/Volume.h"
#include "core/scanning/records/ScanEventText.h"
#include "core/tasks/LargestFolders.h"
#include "core/tasks/ScanTotals.h"
#include "platform/SystemServices.h"

#include <fmt/format.h>

#include <array>
#include <string>
#include <vector>

namespace orvane::cli {
namespace {

constexpr std::array scanOptions{
    OptionSpec{.name = "--developer-caches",
               .valueName = "",
               .help = "Include the developer tools' caches, each folder as one item."},
    noKnownPlacesOption,
};

ScanEnd printEvents(Session& session, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                    KnownPlaces knownPlaces) {
  return runScan(
      session, std::move(folders), developerCaches,
      [&](std::vector<ScanEvent>& batch) {
        for (const auto& event : batch) {
          appendScanEvent(session.out().buffer(), event);
          session.out().settle();
        }
        // A reader at the other end of a pipe sees the events so far.
        session.out().flush();
      },
      knownPlaces);
}

void printDisk(Session& session) {
  const auto disk = systemVolume().capacity(FileUrl(homeFolder()));
  if (!disk) return;
  const auto used = disk->totalBytes - disk->availableBytes;
  const auto percent =
      disk->totalBytes > 0 ? 100.0 * static_cast<double>(used) / static_cast<double>(disk->totalBytes) : 0.0;
  session.out().line(fmt::format("Disk: {} of {} used ({:.0f}%), {} available", formatByteCount(used),
                                 formatByteCount(disk->totalBytes), percent, formatByteCount(disk->availableBytes)));
}

ScanEnd printScanTable(Session& session, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                       KnownPlaces knownPlaces) {
  ScanTotals totals;
  const auto end = runScan(session, std::move(folders), developerCaches, totals, knownPlaces);
  printTotals(session, totals);
  session.out().line("");
  printDisk(session);
  session.out().line(fmt::format("Found {} ({}), of which {} ({}) can go without a second look: orvanectl clean",
                                 itemCount(totals.all().count), formatByteCount(totals.all().bytes),
                                 formatCount(totals.recommended().count), formatByteCount(totals.recommended().bytes)));
  return end;
}

// Of an account that has none of the folders that are looked after by default, such as a server's.
void printLargestFolders(Session& session, KnownPlaces knownPlaces) {
  constexpr std::size_t maxFolders = 10;
  const auto folders = largestFolders(FileUrl(homeFolder()), maxFolders, session.stop());
  session.out().line("");
  if (!folders.empty()) {
    Table table({{"Size", Alignment::right}, {"Largest folders of the home"}});
    for (const auto& [folder, bytes] : folders) table.addRow({{formatByteCount(bytes)}, {shownPath(folder)}});
    table.print(session);
  }
  session.out().line(
      fmt::format("None of the folders that are looked after is here: {} scanned.",
                  knownPlaces == KnownPlaces::include ? "only the caches and logs of programs were" : "nothing was"));
  session.out().line("Look after one: orvanectl folders add FOLDER. Clean one now: orvanectl clean FOLDER");
}

ExitStatus runScanCommand(Session& session, const Arguments& arguments) {
  const bool isBare = arguments.plain().empty() && grantedFolders().empty();
  const auto chosen = isBare ? ChosenFolders() : chosenFolders(arguments.plain());
  const auto developerCaches =
      arguments.has("--developer-caches") ? DeveloperCaches::include : DeveloperCaches::leaveOut;
  const auto knownPlaces = knownPlacesFrom(arguments);
  const auto end = session.isJson() ? printEvents(session, chosen.folders, developerCaches, knownPlaces)
                                    : printScanTable(session, chosen.folders, developerCaches, knownPlaces);
  if (end == ScanEnd::cancelled) {
    Session::report("interrupted; these are the items found so far");
    return ExitStatus::interrupted;
  }
  if (isBare && !session.isJson()) printLargestFolders(session, knownPlaces);
  return chosen.someAreUnusable ? ExitStatus::failed : ExitStatus::done;
}

}  // namespace

constexpr CommandSpec scanCommand{
    .name = "scan",
    .summary = "Show what could be reclaimed, by category",
    .details =
        "Walks the folders and sorts what is in them into categories. Only reads. Where no folder is named, the caches "
        "and logs of programs are looked through too, wherever the system keeps them, each as one item; see "
        "'orvanectl folders known'. Where none is named and none that is looked after is there, walks the home folder "
        "and shows its largest folders.\n\n"
        "Risk: \"safe\" items are cleaned unless you say otherwise, \"review\" items only when you ask for them "
        "by category, \"manual\" items never.\n\n"
        "With --json, prints one object a line: \"progress\" and \"itemDiscovered\" events, and \"completed\" or "
        "\"cancelled\" at the end.",
    .arguments = {.name = "FOLDER",
                  .help = "Folders to walk; the granted folders when none is named.",
                  .min = 0,
                  .max = anyNumber,
                  .kind = ValueKind::folder},
    .options = scanOptions,
    .run = runScanCommand,
};

}  // namespace orvane::cli
