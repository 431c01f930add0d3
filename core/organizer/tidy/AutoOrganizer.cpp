#include "core/organizer/tidy/AutoOrganizer.h"

#include "core/base/values/CheckedArithmetic.h"
#include "core/organizer/propose/TidyFolder.h"
#include "core/platform/FileStatusReader.h"

#include <fcntl.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane {
namespace {

// Adds up what moved, by where it went.
void addUp(AutoOrganizeResult& result, const FileUrl& folder, const AutoOrganizeReport::Run& run) {
  const auto recents = folder.appendingPathComponent(recentsFolderName);
  const auto& report = run.report;
  for (std::size_t at = 0; at < report.outcomes.size(); ++at) {
    if (report.outcomes[at].result != MoveResult::moved) continue;
    const bool isRecent = *run.proposal.row(report.rows[at]).destinationFolder() == recents;
    auto& count = isRecent ? result.movedToRecents : result.sorted;
    count = checkedAdd<std::int64_t>(count, 1);
  }
  if (report.runId) result.batchIDs.push_back(*report.runId);
}

}  // namespace

TidyLook AutoOrganizer::look(const AutoOrganizeRequest& request, const std::stop_token& stop) const {
  return lookForTidying(m_services, request.options, request.now, {.stop = stop});
}

AutoOrganizeReport AutoOrganizer::run(const AutoOrganizeRequest& request, const std::stop_token& stop) {
  AutoOrganizeReport report;
  const auto pass = TidyPass::begin(m_services);
  if (!pass) {
    report.end = AutoOrganizeReport::End::busy;
    return report;
  }
  const auto found = request.shown ? *request.shown : look(request, stop);
  report.notices = found.notices;
  const auto& proposals = found.proposals;
  const bool hasRows =
      std::ranges::any_of(proposals, [](const TidyProposal& tidying) { return !tidying.proposal.approve().empty(); });
  if (hasRows && request.approve && !request.approve(proposals)) {
    report.end = AutoOrganizeReport::End::declined;
    return report;
  }
  for (const auto& [folder, proposal] : proposals) {
    if (stop.stop_requested()) break;
    report.runs.push_back({proposal, pass->carryOut(proposal.approve(), request.progress, stop)});
    addUp(report.result, folder, report.runs.back());
  }
  return report;
}

double AutoOrganizer::age(const FileUrl& item, Date now) const {
  const auto status = m_services.statusReader.read(AT_FDCWD, item.path().c_str());
  return status ? itemAge(*status, now) : 0;
}

Restored AutoOrganizer::undo(std::span<const Uuid> runs) const {
  Restored all;
  for (const auto& run : runs) {
    auto restored = restoreNow(m_services, {run});
    all.count += restored.count;
    std::move(restored.renamed.begin(), restored.renamed.end(), std::back_inserter(all.renamed));
    std::move(restored.warnings.begin(), restored.warnings.end(), std::back_inserter(all.warnings));
  }
  return all;
}

}  // namespace orvane
