#include "core/tasks/RestoreSwap.h"

#include "core/base/files/FileStatus.h"
#include "core/tasks/CarryOut.h"
#include "core/tasks/History.h"
#include "core/tasks/RunReport.h"
#include "core/tasks/TrashTask.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace orvane {
namespace {

// Of the places that are to be cleared, why one was not; empty for those that were.
using Clearing = std::unordered_map<FileUrl, std::string>;

Clearing clear(const TaskServices& services, const Approval& room, Restored& result, const RunProgress& progress,
               const std::stop_token& stop) {
  Clearing places;
  room.proposal().forEach([&](std::size_t, const ProposedRow& row) {
    places.emplace(row.item.url(), row.lock == Lock::refused ? row.group->refusal : "it was not to be moved");
  });
  const auto report = carryOut(services, room, progress, stop);
  for (const auto& outcome : report.outcomes) {
    const bool isMoved = outcome.result == MoveResult::moved;
    places[outcome.source] = isMoved || !outcome.error.empty() ? outcome.error : "interrupted";
  }
  result.replacedRun = report.runId;
  result.replaced = report.toTrash;
  return places;
}

// The restore without the items whose places are still taken, which are warnings.
Approval restOf(const Approval& restore, const Clearing& places, std::vector<std::string>& warnings) {
  const auto& proposal = restore.proposal();
  auto selection = proposal.selection();
  selection.deselectAll();
  for (const auto index : restore.rows()) {
    const auto place = placeToReturnTo(proposal.row(index));
    const auto found = places.find(place);
    if (found == places.end() || found->second.empty()) {
      selection.set(index, Selection::Whether::selected);
    } else {
      warnings.push_back(fmt::format("Failed to restore {}: what stands in its place stays ({})",
                                     place.lastPathComponent(), found->second));
    }
  }
  return proposal.approve(selection);
}

// Brings back what stood in the places of items that did not come.
void returnReplaced(const TaskServices& services, const Proposal& proposal, const RunReport& report, Restored& result) {
  if (!result.replacedRun) return;
  std::unordered_set<FileUrl> leftEmpty;
  for (std::size_t at = 0; at < report.outcomes.size(); ++at) {
    if (report.outcomes[at].result == MoveResult::moved) continue;
    leftEmpty.insert(placeToReturnTo(proposal.row(report.rows[at])));
  }
  RestoreOptions options{*result.replacedRun};
  for (const auto& entry : recordedEntries(services, options.runId)) {
    if (leftEmpty.contains(entry.originalURL)) options.entries.push_back(entry.id);
  }
  if (options.entries.empty()) return;
  auto returned = restoreNow(services, options);
  result.replaced.count -= returned.count;
  std::ranges::move(returned.warnings, std::back_inserter(result.warnings));
  std::ranges::move(returned.renamed, std::back_inserter(result.renamed));
}

}  // namespace

Proposal proposeMakingRoom(const TaskServices& services, const Approval& restore) {
  std::vector<FileUrl> taken;
  std::vector<FileUrl> folders;
  for (const auto index : restore.rows()) {
    const auto row = restore.proposal().row(index);
    auto place = placeToReturnTo(row);
    // An item that is gone from the Trash would leave its place empty.
    if (!row.item.identity() || !itemExists(place.path().c_str())) continue;
    folders.push_back(place.deletingLastPathComponent());
    // Some places may go only where a boundary names them themselves.
    folders.push_back(place);
    taken.push_back(std::move(place));
  }
  return proposeTrash(services, taken, Boundary(std::move(folders)));
}

Restored swapPlaces(const TaskServices& services, const Approval& restore, const Approval& room,
                    const RunProgress& progress, const std::stop_token& stop) {
  Restored result;
  const auto places = clear(services, room, result, progress, stop);
  const auto rest = restOf(restore, places, result.warnings);
  const auto report = carryOut(services, rest, progress, stop);
  result.count = report.moved();
  std::ranges::move(restoreWarnings(rest.proposal(), report), std::back_inserter(result.warnings));
  result.renamed = renamedItems(rest.proposal(), report);
  returnReplaced(services, rest.proposal(), report, result);
  return result;
}

}  // namespace orvane
