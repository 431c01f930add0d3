#include "core/plans/PlanExecutor.h"

#include "core/base/CanonicalPath.h"
#include "core/base/CheckedArithmetic.h"
#include "core/base/PathText.h"
#include "core/base/UnicodeText.h"
#include "core/organizer/OrganizerCategories.h"
#include "core/plans/CleaningPlan.h"
#include "core/plans/FilterMatcher.h"
#include "core/plans/FolderMembership.h"
#include "core/plans/PlanFolder.h"
#include "core/safety/PathValidator.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace orvane {
namespace {

// A step made ready to be held against many files.
class StepMatcher {
 public:
  StepMatcher(const CleaningPlanStep& step, Date now) : m_step(step), m_filter(step.filter, now) {
    if (step.action == PlannedAction::move) m_folder.emplace(planFolder(step.targetFolder).value_or(FileUrl()));
  }

  [[nodiscard]] const CleaningPlanStep& step() const noexcept { return m_step; }
  // The filter is asked first: only the folder costs a look at the disk.
  [[nodiscard]] bool accepts(const FileItem& file) {
    return m_filter.matches(file) && (!m_folder || m_folder->hasRegularFile(file.url()));
  }

 private:
  const CleaningPlanStep& m_step;
  FilterMatcher m_filter;
  std::optional<FolderMembership> m_folder;  // of a step that moves
};

PlanMatchResult proposal(const CleaningPlanStep& step, FileItem file) {
  const bool moves = step.action == PlannedAction::move;
  const bool canExecute = moves || file.riskLabel() != RiskLabel::manual;
  const bool isSelected = moves || (canExecute && file.riskLabel() == RiskLabel::safe);
  PlanMatchResult result(Uuid::random(), std::move(file), step.action, step.destinationFolder, step.explanation,
                         isSelected);
  result.canExecute = canExecute;
  return result;
}

bool isToBeCarriedOut(const PlanMatchResult& match) {
  if (!match.isSelected || !match.canExecute) return false;
  // Whoever set the flags: what is only to be looked at is never removed.
  return match.action == PlannedAction::move ||
         (match.action == PlannedAction::trash && match.item.riskLabel() != RiskLabel::manual);
}

// Where the files of one run may go, each folder judged once.
class Destinations {
 public:
  Destinations(const PathValidator& validator, const Boundary& roots) : m_validator(validator), m_roots(roots) {}

  // The folder that a file goes into; absent with `error` set when it may not, or without one when it is to stay.
  std::optional<FileUrl> folderFor(const PlanMatchResult& match, std::string& error) {
    if (!match.destinationFolder) return std::nullopt;
    auto folder = planFolder(*match.destinationFolder);
    if (!folder) {
      error = "The destination folder is not a path.";
      return std::nullopt;
    }
    const auto& file = match.item.url();
    const auto& own = canonical(parentPath(file.path()));
    if (canonical(folder->path()) == own) {
      const auto name = file.lastPathComponent();
      folder =
          FileUrl(joinPath(folder->path(), defaultCategoryNameForExtension(lowercased(file.pathExtension()), name)));
      if (canonical(folder->path()) == own) return std::nullopt;
    }
    error = refusalOf(*folder);
    if (!error.empty()) return std::nullopt;
    return folder;
  }

 private:
  const std::string& canonical(std::string_view folder) {
    const auto found = m_canonicalPaths.find(folder);
    if (found != m_canonicalPaths.end()) return found->second;
    return m_canonicalPaths.emplace(folder, canonicalPath(folder)).first->second;
  }

  // Empty when the folder may be moved into.
  const std::string& refusalOf(const FileUrl& folder) {
    const auto [found, isNew] = m_refusals.try_emplace(folder);
    if (isNew) found->second = m_validator.refusalText(folder, m_roots);
    return found->second;
  }

  const PathValidator& m_validator;
  const Boundary& m_roots;
  std::map<std::string, std::string, std::less<>> m_canonicalPaths;
  std::map<FileUrl, std::string> m_refusals;
};

// The requests of a run, and for each of them which outcome it settles.
struct Requests {
  std::vector<MoveRequest> requests;
  std::vector<std::size_t> outcomeIndexes;
};

Requests requestsFor(std::span<const PlanMatchResult> matches, Destinations& destinations,
                     std::vector<MoveOutcome>& outcomes) {
  Requests result;
  for (const auto& match : matches) {
    if (!isToBeCarriedOut(match)) continue;
    MoveRequest request;
    request.source = match.item.url();
    request.fileSize = match.item.fileSize();
    request.expectedIdentity = match.identity;
    std::string error;
    if (match.action == PlannedAction::move) {
      request.destinationFolder = destinations.folderFor(match, error);
      if (!request.destinationFolder && error.empty()) continue;
    }
    outcomes.push_back({request.source, MoveResult::refused, {}, request.fileSize, error});
    if (!error.empty()) continue;
    result.requests.push_back(std::move(request));
    result.outcomeIndexes.push_back(outcomes.size() - 1);
  }
  return result;
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
      results.push_back(proposal(matcher.step(), std::move(candidate)));
      break;
    }
  }
  return results;
}

PlanExecution PlanExecutor::execute(std::span<const PlanMatchResult> matches, UndoJournal& journal,
                                    const Boundary& allowedRoots, const CleanupRun::Progress& progress,
                                    std::stop_token stop) {
  CleanupRun run(m_mover, journal, allowedRoots);
  PlanExecution execution;
  execution.summary.batchId = run.id();

  Destinations destinations(m_validator, allowedRoots);
  const auto requests = requestsFor(matches, destinations, execution.outcomes);
  if (!requests.requests.empty()) {
    auto outcomes = run.carryOut(requests.requests, progress, std::move(stop));
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
      const auto& request = requests.requests[i];
      if (outcomes[i].result == MoveResult::moved) {
        execution.summary.itemsProcessed = checkedAdd<std::int64_t>(execution.summary.itemsProcessed, 1);
        if (!request.destinationFolder) {
          execution.summary.bytesReclaimed = checkedAdd(execution.summary.bytesReclaimed, request.fileSize);
        }
      }
      execution.outcomes[requests.outcomeIndexes[i]] = std::move(outcomes[i]);
    }
  }
  execution.summary.timestamp = ReferenceClock::now();
  return execution;
}

}  // namespace orvane
