#include "core/tasks/CarryOut.h"

#include "core/base/PathAccess.h"
#include "core/safety/CleanupRun.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <functional>
#include <span>
#include <stdexcept>
#include <utility>

namespace orvane {
namespace {

MoveRequest requestFor(const ProposedRow& row) {
  MoveRequest request;
  request.source = row.item.url();
  request.fileSize = row.item.fileSize();
  // An item that nobody looked at has no identity that anything on the disk could match.
  request.expectedIdentity = row.item.identity().value_or(ItemIdentity{});
  if (const auto* folder = row.destinationFolder()) request.destinationFolder = *folder;
  if (row.group != nullptr && !row.group->checksum.empty()) request.checksum = row.group->checksum;
  return request;
}

// A folder stays the same while things are put into it. One that somebody works with is not tidied away.
std::function<void()> checkUntouched(const FileItem& folder) {
  return [place = folder.url(), identity = folder.identity()] {
    const auto status = readPathStatus(place.path());
    if (status && identity && status->modified == identity->modified) return;
    throw std::runtime_error(fmt::format("'{}' has changed since it was looked at.", place.path()));
  };
}

std::vector<MoveRequest> requestsFor(const Approval& approval, Date start) {
  const auto& proposal = approval.proposal();
  // The journal is to show that what is organized in one go happened at one moment.
  const bool isOrganizing = proposal.kind() == TaskKind::organize || proposal.kind() == TaskKind::tidy;
  std::vector<MoveRequest> requests;
  requests.reserve(approval.rows().size());
  for (const auto index : approval.rows()) {
    const auto row = proposal.row(index);
    auto request = requestFor(row);
    if (isOrganizing) request.timestamp = start;
    if (proposal.kind() == TaskKind::tidy && row.item.isFolder()) request.lastCheck = checkUntouched(row.item);
    requests.push_back(std::move(request));
  }
  return requests;
}

}  // namespace

RunReport carryOut(const TaskServices& services, const Approval& approval, const RunProgress& progress,
                   const std::stop_token& stop) {
  RunReport report;
  if (approval.empty()) return report;
  auto requests = requestsFor(approval, report.started);
  CleanupRun run(services.mover, services.journal(), approval.proposal().boundary());
  auto outcomes = run.carryOut(requests, progress, stop);
  for (std::size_t at = 0; at < outcomes.size(); ++at) {
    report.note(std::move(outcomes[at]), approval.rows()[at], !requests[at].destinationFolder);
  }
  if (report.moved() > 0) report.runId = run.id();
  report.finished = ReferenceClock::now();
  return report;
}

}  // namespace orvane
