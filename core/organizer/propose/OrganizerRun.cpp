#include "core/organizer/propose/OrganizerRun.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathText.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/safety/rules/PathValidator.h"

#include <map>
#include <string>
#include <utility>

namespace orvane {
namespace {

// The requests of a run, and for each of them which outcome it settles.
class Requests {
 public:
  Requests(const PathValidator& validator, const Boundary& roots, Date start)
      : m_validator(validator), m_roots(roots), m_start(start) {}

  void add(const OrganizationCategoryGroup& group) {
    const auto refusal = m_validator.refusalText(group.destinationFolder, m_roots);
    const auto destination = canonicalPath(group.destinationFolder.path());
    for (const auto& move : group.moves) {
      if (!move.isSelected) continue;
      // An item of the proposal may have moved since.
      if (canonicalFolderOf(move.originalURL) == destination) continue;
      outcomes.push_back({move.originalURL, MoveResult::refused, {}, move.fileSize, refusal});
      if (!refusal.empty()) continue;
      auto& request = requests.emplace_back();
      request.source = move.originalURL;
      request.fileSize = move.fileSize;
      request.destinationFolder = group.destinationFolder;
      request.expectedIdentity = move.identity;
      request.timestamp = m_start;
      outcomeIndexes.push_back(outcomes.size() - 1);
    }
  }

  std::vector<MoveRequest> requests;
  std::vector<std::size_t> outcomeIndexes;
  std::vector<MoveOutcome> outcomes;

 private:
  const std::string& canonicalFolderOf(const FileUrl& item) {
    const auto folder = parentPath(item.path());
    const auto found = m_canonicalPaths.find(folder);
    if (found != m_canonicalPaths.end()) return found->second;
    return m_canonicalPaths.emplace(folder, canonicalPath(folder)).first->second;
  }

  const PathValidator& m_validator;
  const Boundary& m_roots;
  Date m_start;
  std::map<std::string, std::string, std::less<>> m_canonicalPaths;
};

}  // namespace

PlanExecution carryOutOrganizing(std::span<const OrganizationCategoryGroup> groups, TrashMover& mover,
                                 const PathValidator& validator, UndoJournal& journal, const Boundary& allowedRoots,
                                 const CleanupRun::Progress& progress, std::stop_token stop) {
  CleanupRun run(mover, journal, allowedRoots);
  PlanExecution execution;
  execution.summary.batchId = run.id();

  Requests requests(validator, allowedRoots, execution.summary.timestamp);
  for (const auto& group : groups) requests.add(group);
  execution.outcomes = std::move(requests.outcomes);
  if (requests.requests.empty()) return execution;

  auto outcomes = run.carryOut(requests.requests, progress, std::move(stop));
  for (std::size_t i = 0; i < outcomes.size(); ++i) {
    if (outcomes[i].result == MoveResult::moved) {
      execution.summary.itemsProcessed = checkedAdd<std::int64_t>(execution.summary.itemsProcessed, 1);
    }
    execution.outcomes[requests.outcomeIndexes[i]] = std::move(outcomes[i]);
  }
  return execution;
}

}  // namespace orvane
