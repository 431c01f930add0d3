#include "cli/Arguments.h"
#include "cli/CleanSelection.h"
#include "cli/Consent.h"
#include "cli/FileArguments.h"
#include "cli/Folders.h"
#include "cli/RunReport.h"
#include "cli/ScanRun.h"
#include "cli/Session.h"
#include "cli/Table.h"
#include "cli/UsageError.h"
#include "cli/commands/Commands.h"
#include "core/base/ByteCount.h"
#include "core/base/Json.h"
#include "core/base/UnicodeText.h"

#include <fmt/format.h>

#include <array>

namespace orvane::cli {
namespace {

constexpr std::array<std::string_view, allScanCategories.size()> categoryNames{
    "caches",     "logs",         "developerCaches", "oldDownloads",   "screenshots",   "largeFiles",
    "duplicates", "appLeftovers", "trash",           "messagingMedia", "browserCaches", "manualReview",
};

constexpr std::array options{
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
    OptionSpec{.name = "--dry-run", .valueName = "", .help = "Show what would be moved, and stop."},
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

CleanWish wishFrom(const Arguments& arguments) {
  CleanWish wish;
  for (const auto& name : arguments.values("--category")) {
    wish.categories.push_back(scanCategoryFromRawValue(name).value());
  }
  if (arguments.has("--include-review")) {
    if (wish.categories.empty()) throw UsageError("--include-review needs the categories meant: add --category C");
    wish.reviewItems = ReviewItems::include;
  }
  return wish;
}

void tellWhatIsLeftOut(const CleanSelection& selection) {
  if (selection.inTrash().count == 0) return;
  Session::report(fmt::format("left out: {} ({}) in a Trash already; emptying the Trash frees the space",
                              itemCount(selection.inTrash().count), formatByteCount(selection.inTrash().bytes)));
}

ExitStatus printDryRun(Session& session, const CleanSelection& selection) {
  if (session.isJson()) {
    Json json = Json::object();
    json["items"] = Json::array();
    for (const auto& item : selection.items()) json["items"].push_back(item.toJson());
    json["totalBytes"] = selection.totals().all().bytes;
    session.out().line(jsonText(json));
    return ExitStatus::done;
  }
  Table table({{"Size", Alignment::right}, {"Category"}, {"Item"}});
  for (const auto& item : selection.items()) {
    table.addRow(
        {{formatByteCount(item.fileSize())}, {std::string(displayName(item.category()))}, {shownPath(item.url())}});
  }
  if (!selection.items().empty()) table.print(session);
  session.out().line(fmt::format("Would move {} ({}) to the Trash.", itemCount(selection.totals().all().count),
                                 formatByteCount(selection.totals().all().bytes)));
  return ExitStatus::done;
}

ExitStatus cleanUp(Session& session, const Arguments& arguments, const std::vector<FileUrl>& folders,
                   const CleanSelection& selection) {
  const auto& chosen = selection.totals().all();
  if (chosen.count == 0) return RunReport{}.print(session);
  if (!session.isJson()) selection.totals().printTable(session);
  for (const auto& warning : selection.cloudWarnings()) Session::tell(escapedForDisplay(warning));
  switch (askConsent(session, arguments, trashQuestion(chosen.count, chosen.bytes))) {
    case Answer::interrupted:
      return ExitStatus::interrupted;
    case Answer::no:
      return RunReport{}.print(session);
    case Answer::yes:
      break;
  }
  reportJournalNotices();
  return moveToTrash(session, AllowedRoots(folders), selection.requests()).print(session);
}

ExitStatus run(Session& session, const Arguments& arguments) {
  const auto wish = wishFrom(arguments);
  const bool isDryRun = arguments.has("--dry-run");
  if (!isDryRun) requireConsentPossible(arguments);
  const auto chosen = chosenFolders(arguments.plain());
  // Without a folder there would be no boundary either.
  if (chosen.folders.empty()) return ExitStatus::failed;

  CleanSelection selection(wish);
  const auto developerCaches =
      arguments.has("--developer-caches") ? DeveloperCaches::include : DeveloperCaches::leaveOut;
  const auto end = runScan(session, chosen.folders, developerCaches, [&](std::vector<ScanEvent>& batch) {
    for (const auto& event : batch) {
      if (const auto* item = std::get_if<FileItem>(&event)) selection.consider(*item);
    }
  });
  if (end == ScanEnd::cancelled) {
    Session::report("interrupted; nothing was changed");
    return ExitStatus::interrupted;
  }
  tellWhatIsLeftOut(selection);
  const auto status =
      isDryRun ? printDryRun(session, selection) : cleanUp(session, arguments, chosen.folders, selection);
  return status == ExitStatus::done && chosen.someAreUnusable ? ExitStatus::failed : status;
}

}  // namespace

constexpr CommandSpec cleanCommand{
    .name = "clean",
    .summary = "Scan, and move what is recommended to the Trash",
    .details =
        "Scans the folders, selects the items that are safe to remove, shows them by category, asks, and moves them to "
        "the Trash as one run that 'orvanectl restore' brings back. Nothing is ever deleted: the space is free once "
        "the Trash is emptied.\n\n"
        "Items that are in a Trash already are left out. With --json, \"runId\" is null when nothing was moved.",
    .arguments = {.name = "FOLDER",
                  .help = "Folders to clean; the granted folders when none is named.",
                  .least = 0,
                  .most = anyNumber,
                  .kind = ValueKind::folder},
    .options = options,
    .run = run,
};

}  // namespace orvane::cli
