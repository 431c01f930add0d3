#include "cli/RunReport.h"

#include "cli/FileArguments.h"
#include "cli/ProgressLine.h"
#include "cli/Session.h"
#include "core/base/ByteCount.h"
#include "core/base/CheckedArithmetic.h"
#include "core/base/Json.h"
#include "core/base/UnicodeText.h"
#include "core/safety/TrashMover.h"
#include "core/safety/UndoJournal.h"

#include <fmt/format.h>

#include <utility>

namespace orvane::cli {

std::string movingText(std::size_t done, std::size_t total) {
  return fmt::format("Moving to the Trash: {} of {}", formatCount(static_cast<std::int64_t>(done)),
                     itemCount(static_cast<std::int64_t>(total)));
}

std::string trashQuestion(std::int64_t count, std::int64_t bytes) {
  return fmt::format("Move {} ({}) to the Trash?", itemCount(count), formatByteCount(bytes));
}

ExitStatus reportOutcomes(std::span<const MoveOutcome> outcomes) {
  bool someFailed = false;
  bool someWereNotTried = false;
  for (const auto& outcome : outcomes) {
    if (outcome.result == MoveResult::moved) continue;
    if (outcome.result == MoveResult::cancelled) {
      someWereNotTried = true;
      continue;
    }
    someFailed = true;
    Session::report(fmt::format("{}: {}", shownPath(outcome.source), escapedForDisplay(outcome.error)));
  }
  if (someWereNotTried) {
    Session::report("interrupted; what was not moved yet is where it was");
    return ExitStatus::interrupted;
  }
  return someFailed ? ExitStatus::failed : ExitStatus::done;
}

void reportJournalNotices() {
  tellJournalNotices();
}

RunReport moveToTrash(Session& session, const Boundary& roots, std::span<const MoveRequest> requests,
                      std::vector<RunReport::Failure> failures) {
  const auto carryOut = [&](const CleanupRun::Progress& progress, std::stop_token stop) -> CarriedOut {
    CleanupRun run(TrashMover::shared(), UndoJournal::shared(), roots);
    return {run.id(), run.carryOut(requests, progress, std::move(stop))};
  };
  return reportRun(session, carryOut, std::move(failures));
}

RunReport reportRun(Session& session, const CarryOut& carryOut, std::vector<RunReport::Failure> failures) {
  RunReport report;
  report.failures = std::move(failures);
  CarriedOut run;
  {
    const auto stop = session.stop();
    ProgressLine line(session);
    run = carryOut([&](std::size_t done, std::size_t total) { line.update([&] { return movingText(done, total); }); },
                   stop);
  }
  reportJournalNotices();
  for (auto& outcome : run.outcomes) {
    if (outcome.result == MoveResult::moved) {
      ++report.itemsProcessed;
      report.bytesReclaimed = checkedAdd(report.bytesReclaimed, outcome.fileSize);
    } else if (outcome.result == MoveResult::cancelled) {
      report.isInterrupted = true;
    } else {
      report.failures.push_back({std::move(outcome.source), std::move(outcome.error)});
    }
  }
  if (report.itemsProcessed > 0) report.runId = run.runId;
  return report;
}

Json RunReport::toJson() const {
  Json json = Json::object();
  json["runId"] = runId ? jsonFromUuid(*runId) : Json();
  json["itemsProcessed"] = itemsProcessed;
  json["bytesReclaimed"] = bytesReclaimed;
  json["failures"] = Json::array();
  for (const auto& failure : failures) {
    Json entry = Json::object();
    entry["path"] = pathForJson(failure.place);
    entry["error"] = failure.error;
    json["failures"].push_back(std::move(entry));
  }
  return json;
}

ExitStatus RunReport::print(Session& session) const {
  for (const auto& failure : failures) {
    Session::report(fmt::format("{}: {}", shownPath(failure.place), escapedForDisplay(failure.error)));
  }
  if (session.isJson()) {
    session.out().line(jsonText(toJson()));
  } else if (runId) {
    session.out().line(fmt::format("Moved {} ({}) to the Trash. The space is free once the Trash is emptied.",
                                   itemCount(itemsProcessed), formatByteCount(bytesReclaimed)));
    session.out().line(fmt::format("To bring everything back: orvanectl restore {}", runId->toString()));
  } else {
    session.out().line("Nothing was moved.");
  }
  return exitStatus();
}

ExitStatus RunReport::exitStatus() const {
  if (isInterrupted) {
    Session::report("interrupted; what was not moved yet is where it was");
    return ExitStatus::interrupted;
  }
  return failures.empty() ? ExitStatus::done : ExitStatus::failed;
}

}  // namespace orvane::cli
