#include "core/tasks/CarryOut.h"

#include "core/base/files/PathAccess.h"
#include "core/duplicates/DuplicateGuard.h"
#include "core/safety/access/KeepList.h"
#include "core/safety/journal/UndoJournal.h"
#include "core/safety/records/TrashError.h"
#include "core/safety/run/CleanupRun.h"
#include "core/tasks/KeptRows.h"
#include "core/tasks/RestoreTask.h"
#include "core/tasks/TaskServices.h"
#include "core/uninstaller/AppUninstallerEngine.h"

#include <fmt/format.h>

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_map>
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

// The list may be longer by now than when the proposal was made.
std::function<void()> refusal(std::string why) {
  return [why = std::move(why)] { throw std::runtime_error(why); };
}

std::vector<MoveRequest> requestsFor(const TaskServices& services, const Approval& approval, Date start) {
  const auto& proposal = approval.proposal();
  auto kept = services.keepList.places();
  // The journal is to show that what is organized in one go happened at one moment.
  const bool isOrganizing = proposal.kind() == TaskKind::organize || proposal.kind() == TaskKind::tidy;
  std::vector<MoveRequest> requests;
  requests.reserve(approval.rows().size());
  for (const auto index : approval.rows()) {
    const auto row = proposal.row(index);
    auto request = requestFor(row);
    if (isOrganizing) request.timestamp = start;
    if (proposal.kind() == TaskKind::tidy && row.item.isFolder()) request.lastCheck = checkUntouched(row.item);
    if (auto why = keptReason(kept, request.source); !why.empty()) request.lastCheck = refusal(std::move(why));
    requests.push_back(std::move(request));
  }
  return requests;
}

std::vector<MoveOutcome> leftAll(std::span<const MoveRequest> requests, MoveResult result, std::string_view why) {
  std::vector<MoveOutcome> outcomes;
  outcomes.reserve(requests.size());
  for (const auto& request : requests) {
    outcomes.push_back({request.source, result, {}, request.fileSize, std::string(why)});
  }
  return outcomes;
}

// The collaborators that move a run's requests.
struct Moving {
  const TaskServices& services;
  const Approval& approval;
  CleanupRun& run;
  const RunProgress& progress;
  const std::stop_token& stop;
};

// --- duplicates

using StayingByGroup = std::unordered_map<const RowGroup*, std::shared_ptr<DuplicateGuard::Staying>>;

// Of the groups that lose a row, the rows that were not approved.
StayingByGroup stayingCopies(const Approval& approval) {
  const auto& proposal = approval.proposal();
  StayingByGroup result;
  for (const auto index : approval.rows()) {
    auto& staying = result[proposal.row(index).group];
    if (!staying) staying = std::make_shared<DuplicateGuard::Staying>();
  }
  auto approved = approval.rows().begin();
  proposal.forEach([&](std::size_t index, const ProposedRow& row) {
    if (approved != approval.rows().end() && *approved == index) {
      ++approved;
    } else if (const auto found = result.find(row.group); found != result.end()) {
      found->second->push_back(row.item.url());
    }
  });
  return result;
}

std::vector<MoveOutcome> moveCopies(const Moving& moving, std::vector<MoveRequest> requests) {
  const auto& folder = moving.services.journal().storageFolder();
  std::optional<FileLock> turn;
  try {
    turn = DuplicateGuard::takeTurn(folder, moving.stop);
  } catch (const std::system_error& error) {
    const auto why = fmt::format("Orvane's folder '{}' cannot be written ({})", folder, error.code().message());
    return leftAll(requests, MoveResult::failed, TrashError(TrashError::UnderlyingError{why}).what());
  }
  if (!turn) return leftAll(requests, MoveResult::cancelled, {});
  const DuplicateGuard guard(*std::move(turn), moving.services.mover, moving.stop);
  const auto staying = stayingCopies(moving.approval);
  for (std::size_t at = 0; at < requests.size(); ++at) {
    if (requests[at].lastCheck) continue;
    const auto row = moving.approval.proposal().row(moving.approval.rows()[at]);
    requests[at].lastCheck = guard.check(row.item, staying.at(row.group));
  }
  return moving.run.carryOut(requests, moving.progress, moving.stop);
}

// --- applications

std::vector<MoveOutcome> moveApplication(const Moving& moving, const std::vector<MoveRequest>& requests) {
  const auto row = moving.approval.proposal().row(moving.approval.rows().front());
  if (row.group == nullptr) return leftAll(requests, MoveResult::failed, AppUninstallerEngine::leftWithApplication);
  InstalledApp app;
  app.name = row.group->name;
  app.url = row.item.url();
  try {
    moving.services.uninstaller.requireUninstallable(app);
  } catch (const UninstallError& error) {
    auto outcomes = leftAll(requests, MoveResult::failed, AppUninstallerEngine::leftWithApplication);
    outcomes.front().result = MoveResult::refused;
    outcomes.front().error = error.what();
    return outcomes;
  }
  return AppUninstallerEngine::moveWithLeftovers(moving.run, requests, moving.progress, moving.stop);
}

std::vector<MoveOutcome> moveAll(const Moving& moving, std::vector<MoveRequest> requests) {
  switch (moving.approval.proposal().kind()) {
    case TaskKind::duplicates:
      return moveCopies(moving, std::move(requests));
    case TaskKind::uninstall:
      return moveApplication(moving, requests);
    default:
      return moving.run.carryOut(requests, moving.progress, moving.stop);
  }
}

// The journal tells what moved; not to know on whose behalf is no reason to move nothing.
void noteOrigin(const TaskServices& services, const Uuid& runId, const RunOrigin& origin) {
  try {
    recordOrigin(services, runId, origin);
  } catch (const std::system_error&) {
    return;
  }
}

}  // namespace

RunReport carryOut(const TaskServices& services, const Approval& approval, const RunProgress& progress,
                   const std::stop_token& stop, RunOrigin::Start start) {
  RunReport report;
  const auto& proposal = approval.proposal();
  const bool restores = proposal.kind() == TaskKind::restore;
  // Of a run that is to be restored nothing may be left that could come back, and the journal has to learn it.
  if (approval.empty() && !restores) return report;
  CleanupRun run(services.mover, services.journal(), proposal.boundary());
  // A restored item is recorded in the run that moved it.
  if (!restores) noteOrigin(services, run.id(), originOf(approval, start));
  auto outcomes =
      restores ? bringBack(services, approval, progress, stop)
               : moveAll({services, approval, run, progress, stop}, requestsFor(services, approval, report.started));
  for (std::size_t at = 0; at < outcomes.size(); ++at) {
    const auto row = approval.rows()[at];
    report.note(std::move(outcomes[at]), row, proposal.row(row).destinationFolder() == nullptr);
  }
  if (report.moved() > 0 && !restores) report.runId = run.id();
  report.finished = ReferenceClock::now();
  return report;
}

}  // namespace orvane
