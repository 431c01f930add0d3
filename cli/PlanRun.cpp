#include "cli/PlanRun.h"

#include "cli/CleanSelection.h"
#include "cli/Consent.h"
#include "cli/FileArguments.h"
#include "cli/PlanScan.h"
#include "cli/ProgressLine.h"
#include "cli/RunReport.h"
#include "cli/Session.h"
#include "core/base/ByteCount.h"
#include "core/base/CheckedArithmetic.h"
#include "core/base/UnicodeText.h"
#include "core/plans/PlanExecutor.h"
#include "core/safety/UndoJournal.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>

namespace orvane::cli {
namespace {

// What is going to be done, as far as it is known before.
struct Outlook {
  std::int64_t trashed = 0;
  std::int64_t trashedBytes = 0;
  std::int64_t moved = 0;
  std::vector<MoveRequest> requests;
};

Outlook outlookFor(std::vector<PlanMatchResult>& matches) {
  Outlook outlook;
  for (auto& match : matches) {
    if (!match.isSelected || !match.canExecute || match.action == PlannedAction::review) continue;
    if (auto request = moveRequestFor(match.item.url(), match.item.fileSize())) {
      match.identity = request->expectedIdentity;
      outlook.requests.push_back(*std::move(request));
    }
    if (match.action == PlannedAction::move) {
      ++outlook.moved;
    } else {
      ++outlook.trashed;
      outlook.trashedBytes = checkedAdd(outlook.trashedBytes, match.item.fileSize());
    }
  }
  return outlook;
}

std::string questionFor(const Outlook& outlook) {
  if (outlook.moved == 0) return trashQuestion(outlook.trashed, outlook.trashedBytes);
  if (outlook.trashed == 0) return fmt::format("Move {} into other folders?", itemCount(outlook.moved));
  return fmt::format("Move {} ({}) to the Trash and {} into other folders?", itemCount(outlook.trashed),
                     formatByteCount(outlook.trashedBytes), itemCount(outlook.moved));
}

PlanExecution execute(Session& session, const std::vector<PlanMatchResult>& matches, const Boundary& roots) {
  const auto stop = session.stop();
  ProgressLine line(session);
  return PlanExecutor::shared().execute(matches, UndoJournal::shared(), roots, movingProgress(line), stop);
}

std::string summaryText(const PlanExecutionSummary& summary, const Outlook& outlook) {
  const auto items = itemCount(summary.itemsProcessed);
  const auto bytes = formatByteCount(summary.bytesReclaimed);
  if (outlook.moved == 0) {
    return fmt::format("Moved {} ({}) to the Trash. The space is free once the Trash is emptied.", items, bytes);
  }
  if (outlook.trashed == 0) return fmt::format("Moved {} into other folders.", items);
  return fmt::format("Moved {}; what is in the Trash ({}) is free once the Trash is emptied.", items, bytes);
}

void printSummary(Session& session, const PlanExecutionSummary& summary, const Outlook& outlook) {
  if (summary.itemsProcessed == 0) {
    session.out().line("Nothing was moved.");
    return;
  }
  session.out().line(summaryText(summary, outlook));
  session.out().line(fmt::format("To bring everything back: orvanectl restore {}", summary.batchId.toString()));
}

}  // namespace

PlanRun runPlan(Session& session, const Arguments& arguments, std::vector<PlanMatchResult>& matches) {
  PlanRun run;
  const auto outlook = outlookFor(matches);
  if (outlook.trashed + outlook.moved == 0) {
    if (!session.isJson()) session.out().line("Nothing is selected, so nothing was moved.");
    return run;
  }
  for (const auto& warning : cloudWarnings(outlook.requests)) Session::tell(escapedForDisplay(warning));
  switch (askConsent(session, arguments, questionFor(outlook))) {
    case Answer::interrupted:
      run.status = ExitStatus::interrupted;
      return run;
    case Answer::no:
      if (!session.isJson()) session.out().line("Nothing was moved.");
      return run;
    case Answer::yes:
      break;
  }
  const Boundary roots(planRoots());
  // Without a folder there would be no boundary either.
  if (roots.allowsNothing()) {
    Session::report("none of the granted folders exists any more; nothing was changed");
    run.status = ExitStatus::failed;
    return run;
  }
  reportJournalNotices();
  const auto execution = execute(session, matches, roots);
  reportJournalNotices();
  run.summary = execution.summary;
  run.status = reportOutcomes(execution.outcomes);
  if (!session.isJson()) printSummary(session, execution.summary, outlook);
  return run;
}

}  // namespace orvane::cli
