#include "cli/frame/ProposalRun.h"

#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/NewFile.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "cli/text/Table.h"
#include "core/assistant/records/AIProvider.h"
#include "core/base/files/AtomicFile.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PlaceText.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/tasks/History.h"
#include "core/tasks/SavedProposal.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <stop_token>
#include <system_error>
#include <variant>

namespace orvane::cli {
namespace {

std::string questionFor(const Approval& approval) {
  const auto& toTrash = approval.toTrash();
  const auto& toFolders = approval.toFolders();
  if (toFolders.count == 0) return fmt::format("Move {} to the Trash?", itemsText(toTrash));
  if (toTrash.count == 0) return fmt::format("Move {} into other folders?", itemCount(toFolders.count));
  return fmt::format("Move {} to the Trash and {} into other folders?", itemsText(toTrash), itemCount(toFolders.count));
}

std::string summaryText(const RunReport& report) {
  if (report.moved() == 0) return "Nothing was moved.";
  if (report.toFolders.count == 0) {
    return fmt::format("Moved {} to the Trash. The space is free once the Trash is emptied.",
                       itemsText(report.toTrash));
  }
  if (report.toTrash.count == 0) return fmt::format("Moved {} into other folders.", itemCount(report.toFolders.count));
  return fmt::format(
      "Moved {} to the Trash and {} into other folders. What is in the Trash is free once it is emptied.",
      itemsText(report.toTrash), itemCount(report.toFolders.count));
}

// Calls `tell(place, reason)` for each row that was refused and each that failed.
template <typename Tell>
void forEachFailure(const Proposal& proposal, const RunReport& report, Tell tell) {
  proposal.forEach([&](std::size_t, const ProposedRow& row) {
    if (row.lock == Lock::refused) tell(row.item.url(), row.group->refusal);
  });
  for (const auto& outcome : report.outcomes) {
    if (outcome.result != MoveResult::moved && outcome.result != MoveResult::cancelled) {
      tell(outcome.source, outcome.error);
    }
  }
}

struct NoticeText {
  std::string operator()(const FolderLeftOut& leftOut) const { return textOf(leftOut); }
  std::string operator()(const RowsKeptByLabel& kept) const {
    return fmt::format("{}{} would have matched but for the label 'manual', which no rule ever touches",
                       prefix(kept.rule), itemCount(kept.rows.count));
  }
  std::string operator()(const RowsKept& kept) const { return keptText(kept.rows); }
  std::string operator()(const RowsInPlace& inPlace) const {
    return fmt::format("{}left out: {} in place already", prefix(inPlace.rule), itemsText(inPlace.rows));
  }
  std::string operator()(const RowsNotProposed& left) const {
    if (left.why == RowsNotProposed::Why::unfinished) {
      return fmt::format("left out: {} still being written or open in another program", itemsText(left.rows));
    }
    return fmt::format("left out: {} that may not be moved ({})", itemsText(left.rows), escapedForDisplay(left.detail));
  }
  std::string operator()(const RowsReturned& returned) const {
    return fmt::format("left alone: {} brought back before and not changed since; --returned takes them too",
                       itemsText(returned.rows));
  }
  std::string operator()(const ProjectTakenApart& project) const {
    return fmt::format("{} is a software project, which this takes apart", shownPath(project.folder));
  }
  std::string operator()(const LinksToRows& links) const {
    return fmt::format("{} to what moves will point nowhere",
                       links.count == 1 ? "1 symbolic link" : formatCount(links.count) + " symbolic links");
  }
  std::string operator()(const RowsInTrash& inTrash) const {
    return fmt::format("left out: {} in a Trash already; emptying the Trash frees the space", itemsText(inTrash.rows));
  }
  // Only a preview of rules has room for these.
  std::string operator()(const RowsNotTaken&) const { return {}; }
  std::string operator()(const RuleRefused& refused) const {
    return fmt::format("rule '{}' is left out: {}", escapedForDisplay(refused.rule), refused.reason);
  }
  std::string operator()(const RowsLeftAside& aside) const {
    return fmt::format("{} stay; --all-leftovers takes them too", leftoversText(aside.rows));
  }
  std::string operator()(const PlanRefused& refused) const {
    return fmt::format("the plan cannot be used: {}{}", escapedForDisplay(refused.fault),
                       refused.sortsWholeFolder ? "; 'orvanectl organize FOLDER' sorts a whole folder" : "");
  }
  std::string operator()(const PlannerFailed& failed) const {
    return fmt::format("planned offline, not by {}: {}", displayName(failed.asked), escapedForDisplay(failed.reason));
  }

 private:
  static std::string prefix(const std::string& rule) {
    return rule.empty() ? std::string() : fmt::format("{}: ", escapedForDisplay(rule));
  }
};

}  // namespace

std::string itemCount(std::int64_t count) {
  return fmt::format("{} {}", formatCount(count), count == 1 ? "item" : "items");
}

std::string itemsText(const RowSum& rows) {
  return fmt::format("{} ({})", itemCount(rows.count), formatByteCount(rows.bytes));
}

std::string keptText(const RowSum& rows) {
  return fmt::format("{}, {}, {} on the keep list; 'orvanectl keep list' shows it", itemCount(rows.count),
                     formatByteCount(rows.bytes), rows.count == 1 ? "is" : "are");
}

std::string leftoversText(const RowSum& rows) {
  return fmt::format("{} {} ({})", formatCount(rows.count), rows.count == 1 ? "leftover" : "leftovers",
                     formatByteCount(rows.bytes));
}

void tellSynced(const Approval& approval) {
  for (const auto& synced : syncedRows(approval)) Session::tell(escapedForDisplay(syncWarning(synced)));
}

TaskMonitor scanMonitor(Session& session, ProgressLine& line) {
  TaskMonitor monitor;
  monitor.stop = session.stop();
  monitor.scanning = [&line](const ScanProgress& progress) {
    line.update([&] {
      return fmt::format("Scanning ({} entries, {} found): {}", formatCount(progress.itemsScanned),
                         formatByteCount(progress.bytesFound), escapedForDisplay(progress.currentPath));
    });
  };
  return monitor;
}

Answer askToMove(Session& session, const Arguments& arguments, const Approval& approval) {
  tellSynced(approval);
  return askConsent(session, arguments, questionFor(approval));
}

RunProgress movingProgress(ProgressLine& line) {
  return [&line](std::size_t done, std::size_t total) {
    line.update([&] {
      return fmt::format("Moving: {} of {}", formatCount(static_cast<std::int64_t>(done)),
                         itemCount(static_cast<std::int64_t>(total)));
    });
  };
}

RunReport moveApproved(Session& session, const Approval& approval) {
  tellJournalNotices();
  RunReport report;
  {
    ProgressLine line(session);
    report = carryOut(TaskServices::shared(), approval, movingProgress(line), session.stop());
  }
  tellJournalNotices();
  return report;
}

ExitStatus tellFailures(const Proposal& proposal, const RunReport& report) {
  return tellFailures(proposal, report, [](const FileUrl& place, const std::string& reason) {
    Session::report(fmt::format("{}: {}", shownPath(place), escapedForDisplay(reason)));
  });
}

ExitStatus tellFailures(const Proposal& proposal, const RunReport& report, const TellFailure& tell) {
  auto status = ExitStatus::done;
  forEachFailure(proposal, report, [&](const FileUrl& place, const std::string& reason) {
    tell(place, reason);
    status = ExitStatus::failed;
  });
  if (report.left == 0) return status;
  Session::report("interrupted; what was not moved yet is where it was");
  return ExitStatus::interrupted;
}

ExitStatus printReport(Session& session, const Proposal& proposal, const RunReport& report) {
  const auto status = tellFailures(proposal, report);
  if (session.isJson()) {
    session.out().line(jsonText(reportJson(proposal, report)));
    return status;
  }
  session.out().line(summaryText(report));
  if (report.runId) {
    session.out().line(fmt::format("To bring everything back: orvanectl restore {}", report.runId->toString()));
  }
  return status;
}

Json reportJson(const Proposal& proposal, const RunReport& report) {
  Json json = Json::object();
  json["runId"] = report.runId ? jsonFromUuid(*report.runId) : Json();
  json["itemsProcessed"] = report.moved();
  json["bytesReclaimed"] = report.toTrash.bytes;
  auto& failures = json["failures"] = Json::array();
  forEachFailure(proposal, report, [&](const FileUrl& place, const std::string& reason) {
    Json entry = Json::object();
    entry["path"] = pathOrUrl(place);
    entry["error"] = reason;
    failures.push_back(std::move(entry));
  });
  return json;
}

ExitStatus askAndMove(Session& session, const Arguments& arguments, const Approval& approval) {
  switch (askToMove(session, arguments, approval)) {
    case Answer::interrupted:
      return ExitStatus::interrupted;
    case Answer::no:
      return printReport(session, approval.proposal(), {});
    case Answer::yes:
      break;
  }
  return printReport(session, approval.proposal(), moveApproved(session, approval));
}

AskedRun askAndRun(Session& session, const Arguments& arguments, const Proposal& proposal) {
  const auto say = [&](std::string_view text) {
    if (!session.isJson()) session.out().line(text);
  };
  const auto approval = proposal.approve();
  if (approval.empty()) {
    say("Nothing is selected, so nothing was moved.");
    return {.status = tellFailures(proposal, {})};
  }
  switch (askToMove(session, arguments, approval)) {
    case Answer::interrupted:
      return {.status = ExitStatus::interrupted};
    case Answer::no:
      say("Nothing was moved.");
      return {};
    case Answer::yes:
      break;
  }
  AskedRun run{.report = moveApproved(session, approval)};
  run.status = session.isJson() ? tellFailures(proposal, *run.report) : printReport(session, proposal, *run.report);
  return run;
}

RowSum sumOf(const Approval& approval) {
  return {approval.toTrash().count + approval.toFolders().count,
          checkedAdd(approval.toTrash().bytes, approval.toFolders().bytes)};
}

ExitStatus saveProposal(Session& session, const Arguments& arguments, const Approval& approval) {
  const auto place = writeNewFile(session, "--save", arguments.value("--save").value_or("-"),
                                  [&](const WriteText& write) { writeProposal(approval, write); });
  if (place) {
    Session::tell(
        fmt::format("Saved {}. To move them: orvanectl apply {}", itemsText(sumOf(approval)), shownPath(*place)));
  }
  return ExitStatus::done;
}

void printDryRun(Session& session, const Proposal& proposal) {
  const auto approval = proposal.approve();
  const auto total = sumOf(approval);
  if (session.isJson()) {
    Json json = Json::object();
    auto& items = json["items"] = Json::array();
    for (const auto index : approval.rows()) items.push_back(proposal.row(index).item.toJson());
    json["totalBytes"] = total.bytes;
    session.out().line(jsonText(json));
    return;
  }
  Table table({{"Size", Alignment::right}, {"Category"}, {"Item"}});
  for (const auto index : approval.rows()) {
    const auto& item = proposal.row(index).item;
    table.addRow(
        {{formatByteCount(item.fileSize())}, {std::string(displayName(item.category()))}, {shownPath(item.url())}});
  }
  if (!approval.empty()) table.print(session);
  session.out().line(fmt::format("Would move {} to the Trash.", itemsText(total)));
}

ExitStatus interruptedBeforeChange() {
  Session::report("interrupted; nothing was changed");
  return ExitStatus::interrupted;
}

void tellNotices(const Notices& notices) {
  for (const auto& notice : notices) {
    if (const auto text = std::visit(NoticeText{}, notice); !text.empty()) Session::report(text);
  }
}

ExitStatus statusWith(const Notices& notices, ExitStatus status) {
  if (status != ExitStatus::done) return status;
  const bool someAreLeftOut = std::ranges::any_of(notices, [](const Notice& notice) {
    const auto* leftOut = std::get_if<FolderLeftOut>(&notice);
    return leftOut != nullptr && leftOut->why != FolderLeftOut::Why::listedOnly;
  });
  return someAreLeftOut ? ExitStatus::failed : ExitStatus::done;
}

std::string textOf(const FolderLeftOut& leftOut) {
  switch (leftOut.why) {
    case FolderLeftOut::Why::missing:
      return fmt::format("{}: {}", shownPath(leftOut.folder), leftOut.detail);
    case FolderLeftOut::Why::refused:
      return escapedForDisplay(leftOut.detail);
    case FolderLeftOut::Why::notGranted:
      return fmt::format("{}: left alone, it is in none of the granted folders", shownPath(leftOut.folder));
    case FolderLeftOut::Why::listedOnly:
      return fmt::format("{}: in none of the granted folders; a run would leave it alone", shownPath(leftOut.folder));
  }
  return {};
}

void tellJournalNotices() {
  for (const auto& notice : takeJournalNotices(TaskServices::shared())) Session::report(notice);
}

}  // namespace orvane::cli
