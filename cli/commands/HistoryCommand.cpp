#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/RunReference.h"
#include "cli/frame/Session.h"
#include "cli/text/Table.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/History.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

namespace orvane::cli {
namespace {

template <typename Records>
void printJson(Session& session, const Records& records) {
  Json json = Json::array();
  for (const auto& record : records) json.push_back(record.toJson());
  session.out().line(jsonText(json));
}

std::string stateOf(const CleanupRunSummary& run) {
  const auto remaining = remainingCount(TaskServices::shared(), run.runId);
  if (remaining == 0) return "restored";
  return run.isRestored ? fmt::format("{} can still be restored", formatCount(remaining)) : "can be restored";
}

void printRuns(Session& session, const std::vector<CleanupRunSummary>& runs) {
  const auto length = distinctPrefixLength(runs);
  Table table({{"Run"}, {"When"}, {"Items", Alignment::right}, {"Size", Alignment::right}, {"State"}});
  for (const auto& run : runs) {
    table.addRow({{run.runId.toString().substr(0, length)},
                  {run.formattedDate()},
                  {formatCount(run.itemCount)},
                  {run.formattedSize()},
                  {stateOf(run)}});
  }
  if (!runs.empty()) table.print(session);
  const auto count = formatCount(static_cast<std::int64_t>(runs.size()));
  if (runs.empty()) {
    session.out().line(fmt::format("{} runs recorded.", count));
    return;
  }
  const auto totals = historyTotals(TaskServices::shared());
  session.out().line(fmt::format("{} {} recorded: {} moved, {} brought back, {} still in the Trash.{}", count,
                                 runs.size() == 1 ? "run" : "runs", formatByteCount(totals.moved.bytes),
                                 formatByteCount(totals.restored.bytes), formatByteCount(totals.inTrash.bytes),
                                 " To bring one back: orvanectl restore RUN"));
  for (const auto& [place, rows] : totals.away) {
    session.out().line(fmt::format("Not there now: {}, with {}.", shownPath(place), itemsText(rows)));
  }
}

ExitStatus runHistory(Session& session, const Arguments&) {
  const auto runs = recordedRuns(TaskServices::shared());
  tellJournalNotices();
  if (session.isJson()) {
    printJson(session, runs);
  } else {
    printRuns(session, runs);
  }
  return isHistoryReadable(TaskServices::shared()) ? ExitStatus::done : ExitStatus::failed;
}

void printEntries(Session& session, const CleanupRunSummary& run, const std::vector<JournalEntry>& entries) {
  Table table({{"State"}, {"Size", Alignment::right}, {"Item"}, {"Went to"}});
  for (const auto& entry : entries) {
    table.addRow({{std::string(rawValue(entry.action))},
                  {entry.formattedSize()},
                  {shownPath(entry.originalURL)},
                  {shownPath(entry.trashedURL)}});
  }
  table.print(session);
  session.out().line(fmt::format("Run {} of {}: {}, {}, {}", run.runId.toString(), run.formattedDate(),
                                 itemCount(run.itemCount), run.formattedSize(), stateOf(run)));
}

ExitStatus runHistoryShow(Session& session, const Arguments& arguments) {
  const auto runs = recordedRuns(TaskServices::shared());
  tellJournalNotices();
  const auto& run = runMeantBy(arguments.plain().front(), runs);
  const auto entries = recordedEntries(TaskServices::shared(), run.runId);
  if (session.isJson()) {
    printJson(session, entries);
  } else {
    printEntries(session, run, entries);
  }
  return ExitStatus::done;
}

}  // namespace

constexpr CommandSpec historyCommand{
    .name = "history",
    .summary = "List the recorded runs, newest first",
    .details = "Every command that moves files records what it moved as one run.",
    .arguments = {},
    .options = {},
    .run = runHistory,
};

constexpr CommandSpec historyShowCommand{
    .name = "history show",
    .summary = "Show what one run moved, and where it is",
    .details = "The state of an item is \"trashed\", \"moved\" (to another folder) or \"restored\".",
    .arguments = {.name = "RUN",
                  .help = "The run's identifier or the beginning of it, as 'orvanectl history' shows it.",
                  .min = 1,
                  .max = 1,
                  .kind = ValueKind::run},
    .options = {},
    .run = runHistoryShow,
};

}  // namespace orvane::cli
