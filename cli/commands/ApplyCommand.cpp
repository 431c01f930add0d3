#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/Folders.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/text/Table.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/PlanTask.h"
#include "core/tasks/SavedProposal.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

namespace orvane::cli {
namespace {

constexpr std::array applyOptions{
    rootOption,
    OptionSpec{.name = "--dry-run", .valueName = "", .help = "Show which rows would move and why others would not."},
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

// Throws std::runtime_error, which JsonError is too.
SavedProposal savedFrom(const std::string& argument) {
  std::string text;
  try {
    text = argument == "-" ? readAll(STDIN_FILENO, SavedProposal::maxBytes)
                           : readFile(placeFromArgument(argument).path(), SavedProposal::maxBytes);
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::file_too_large) {
      throw JsonError(fmt::format("it is longer than {}", formatByteCount(SavedProposal::maxBytes)));
    }
    throw std::runtime_error(fmt::format("{}: {}", escapedForDisplay(argument), error.code().message()));
  }
  return SavedProposal::decode(text);
}

bool isReady(const ProposedRow& row) {
  return row.choice == Choice::selected;
}

Json rowsJson(const Proposal& proposal, const RowSum& total) {
  Json json = Json::object();
  auto& items = json["items"] = Json::array();
  proposal.forEach([&](std::size_t, const ProposedRow& row) {
    if (!isReady(row) && row.lock == Lock::none) return;
    Json item = Json::object();
    item["url"] = jsonFromUrl(row.item.url());
    item["fileSize"] = row.item.fileSize();
    item["destinationFolder"] = row.destinationFolder() != nullptr ? jsonFromUrl(*row.destinationFolder()) : Json();
    item["state"] = isReady(row) ? "ready" : row.group->refusal;
    items.push_back(std::move(item));
  });
  json["totalBytes"] = total.bytes;
  return json;
}

void printApplyRows(Session& session, const Proposal& proposal) {
  Table table({{"Size", Alignment::right}, {"Item"}, {"To"}, {"State"}});
  proposal.forEach([&](std::size_t, const ProposedRow& row) {
    if (!isReady(row) && row.lock == Lock::none) return;
    table.addRow({{formatByteCount(row.item.fileSize())},
                  {shownPath(row.item.url())},
                  {row.destinationFolder() != nullptr ? shownPath(*row.destinationFolder()) : "Trash"},
                  {isReady(row) ? "ready" : escapedForDisplay(row.group->refusal)}});
  });
  if (!proposal.empty()) table.print(session);
}

ExitStatus runApply(Session& session, const Arguments& arguments) {
  const bool isDryRun = arguments.has("--dry-run");
  if (!isDryRun) requireConsentPossible(arguments);
  auto boundary = arguments.has("--root") ? boundaryFrom(arguments)
                                          : grantedBoundary("the folder that may be acted in with --root FOLDER");
  std::optional<Proposal> proposal;
  try {
    ProgressLine line(session);
    const auto saved = savedFrom(arguments.plain().front());
    if (saved.kind == TaskKind::plan && !arguments.has("--root")) boundary = planBoundary(TaskServices::shared());
    // A folder that is named is all that may be acted in, also where it is one of the granted ones.
    const auto knownPlaces = arguments.has("--root") ? KnownPlaces::leaveOut : KnownPlaces::include;
    proposal = proposeSaved(TaskServices::shared(), saved, boundary, scanMonitor(session, line), knownPlaces);
  } catch (const JsonError& error) {
    Session::report(fmt::format("{} cannot be applied: {}", escapedForDisplay(arguments.plain().front()),
                                escapedForDisplay(error.what())));
    return ExitStatus::failed;
  }
  if (!proposal) return interruptedBeforeChange();
  tellNotices(proposal->notices());
  const auto approval = proposal->approve();
  if (isDryRun) {
    const auto total = sumOf(approval);
    if (session.isJson()) {
      session.out().line(jsonText(rowsJson(*proposal, total)));
    } else {
      printApplyRows(session, *proposal);
      session.out().line(fmt::format("Would move {}.", itemsText(total)));
    }
    return ExitStatus::done;
  }
  if (approval.empty()) return printReport(session, *proposal, {});
  if (!arguments.has("--yes") && !session.isJson()) printApplyRows(session, *proposal);
  return askAndMove(session, arguments, approval);
}

}  // namespace

constexpr CommandSpec applyCommand{
    .name = "apply",
    .summary = "Carry out a saved proposal",
    .details =
        "Carries out what a command wrote with --save, or a copy with rows taken out by hand, as one run that "
        "'orvanectl restore' brings back. The file is not trusted: what it asks for is proposed again, inside the "
        "granted folders or those of --root alone, and only rows that are still proposed and still the same items "
        "move. Each other row is left, with the reason.",
    .arguments = {.name = "FILE",
                  .help = "The saved proposal; - for the standard input.",
                  .min = 1,
                  .max = 1,
                  .kind = ValueKind::savedProposal},
    .options = applyOptions,
    .run = runApply,
};

}  // namespace orvane::cli
