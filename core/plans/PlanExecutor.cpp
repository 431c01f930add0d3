#include "core/plans/PlanExecutor.h"

#include "core/base/values/CheckedArithmetic.h"
#include "core/plans/PlanDestinations.h"
#include "core/plans/StepMatcher.h"
#include "core/plans/records/CleaningPlan.h"
#include "core/safety/run/CleanupRun.h"

#include <optional>
#include <utility>

namespace orvane {
namespace {

bool isToBeCarriedOut(const PlanMatchResult& match) {
  if (!match.isSelected || !match.canExecute) return false;
  // A step that only reviews never removes anything, whatever the flags say.
  return match.action != PlannedAction::review && matchStanding(match.action, match.item.riskLabel()).canExecute;
}

// Absent for a file that stays where it is.
std::optional<MoveRequest> requestFor(const PlanMatchResult& match, PlanDestinations& destinations) {
  MoveRequest request;
  request.source = match.item.url();
  request.fileSize = match.item.fileSize();
  request.expectedIdentity = match.item.identity();
  if (match.action == PlannedAction::move) {
    if (!match.destinationFolder) return std::nullopt;
    auto place = destinations.destinationFor(match.item.url(), *match.destinationFolder);
    if (!place.folder || !place.refusal.empty()) return std::nullopt;
    request.destinationFolder = *std::move(place.folder);
  }
  return request;
}

}  // namespace

PlanExecutor::PlanExecutor(TrashMover& mover, const PathValidator& validator)
    : m_mover(mover), m_validator(validator) {}

std::vector<PlanMatchResult> PlanExecutor::dryRun(const CleaningPlan& plan, std::vector<FileItem> candidates,
                                                  Date now) {
  std::vector<StepMatcher> steps;
  steps.reserve(plan.steps.size());
  for (const auto& step : plan.steps) steps.emplace_back(step, now);

  std::vector<PlanMatchResult> results;
  for (auto& candidate : candidates) {
    for (auto& matcher : steps) {
      if (!matcher.accepts(candidate)) continue;
      results.emplace_back(matcher.step(), std::move(candidate));
      break;
    }
  }
  return results;
}

PlanExecutionSummary PlanExecutor::execute(std::span<const PlanMatchResult> matches, UndoJournal& journal,
                                           const Boundary& allowedRoots) {
  PlanDestinations destinations(m_validator, allowedRoots);
  std::vector<MoveRequest> requests;
  for (const auto& match : matches) {
    if (!isToBeCarriedOut(match)) continue;
    if (auto request = requestFor(match, destinations)) requests.push_back(*std::move(request));
  }
  CleanupRun run(m_mover, journal, allowedRoots);
  PlanExecutionSummary summary{.batchId = run.id()};
  if (!requests.empty()) {
    const auto outcomes = run.carryOut(requests);
    for (std::size_t at = 0; at < outcomes.size(); ++at) {
      if (outcomes[at].result != MoveResult::moved) continue;
      summary.itemsProcessed = checkedAdd<std::int64_t>(summary.itemsProcessed, 1);
      if (!requests[at].destinationFolder) {
        summary.bytesReclaimed = checkedAdd(summary.bytesReclaimed, requests[at].fileSize);
      }
    }
  }
  summary.timestamp = ReferenceClock::now();
  return summary;
}

}  // namespace orvane
