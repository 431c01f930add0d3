#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/Folders.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/text/Table.h"
#include "core/base/text/ByteCount.h"
#include "core/tasks/TaskServices.h"
#include "core/tasks/TrashTask.h"

#include <array>

namespace orvane::cli {
namespace {

constexpr std::array trashOptions{
    rootOption,
    OptionSpec{.name = "--dry-run", .valueName = "", .help = "Show what would be moved, and stop."},
    saveOption,
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

void printTrashRows(Session& session, const Proposal& proposal) {
  Table table({{"Size", Alignment::right}, {"Item"}});
  proposal.forEach([&](std::size_t, const ProposedRow& row) {
    if (row.lock == Lock::none) table.addRow({{formatByteCount(row.item.fileSize())}, {shownPath(row.item.url())}});
  });
  table.print(session);
}

ExitStatus runTrash(Session& session, const Arguments& arguments) {
  const bool isDryRun = arguments.has("--dry-run");
  const bool isToSave = arguments.has("--save");
  if (!isDryRun && !isToSave) requireConsentPossible(arguments);
  const auto boundary = boundaryFrom(arguments);
  const auto proposal = proposeTrash(TaskServices::shared(), placesFromArguments(arguments.plain()), boundary);
  const auto approval = proposal.approve();
  if (isDryRun) {
    printDryRun(session, proposal);
    return tellFailures(proposal, {});
  }
  if (isToSave) {
    const auto status = saveProposal(session, arguments, approval);
    return status == ExitStatus::done ? tellFailures(proposal, {}) : status;
  }
  if (approval.empty()) return printReport(session, proposal, {});
  if (!arguments.has("--yes") && !session.isJson()) printTrashRows(session, proposal);
  return askAndMove(session, arguments, approval);
}

}  // namespace

constexpr CommandSpec trashCommand{
    .name = "trash",
    .summary = "Move the named items to the Trash",
    .details =
        "Moves files and folders to the Trash as one run that 'orvanectl restore' brings back. A symbolic link is "
        "moved as a link.\n\n"
        "Only items inside the allowed folders are moved: those of --root, else the granted folders. With "
        "--json, \"runId\" is null when nothing was moved.",
    .arguments = {.name = "PATH", .help = "Items to move.", .min = 1, .max = anyNumber, .kind = ValueKind::path},
    .options = trashOptions,
    .run = runTrash,
};

}  // namespace orvane::cli
