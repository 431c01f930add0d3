#include "core/plans/PlanMatcher.h"

#include "core/base/CanonicalPath.h"
#include "core/base/PathText.h"
#include "core/plans/CleaningPlan.h"
#include "core/plans/PlanExecutor.h"
#include "core/plans/PlanFolder.h"
#include "core/safety/ManagedFolderType.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane {

PlanMatcher::PlanMatcher(const CleaningPlan& plan, std::vector<PlanTarget> targets)
    : m_plan(plan), m_targets(std::move(targets)) {
  for (const auto& step : plan.steps) {
    const auto folder = planFolder(step.targetFolder);
    m_stepFolders.push_back(folder ? canonicalPath(folder->path()) : std::string());
  }
  for (const auto& target : m_targets) {
    m_targetsOverlap = m_targetsOverlap || std::ranges::any_of(m_targets, [&](const PlanTarget& other) {
                         return &other != &target && isSameOrInside(target.canonical, other.canonical);
                       });
  }
}

void PlanMatcher::take(FileItem item) {
  const auto folder = parentPath(item.url().path());
  if (folder != m_folder) enter(folder);
  if (m_targetsOverlap && !m_seen.insert(canonicalOf(item.url().path())).second) return;
  if (m_steps != m_pendingSteps) {
    flush();
    m_pendingSteps = m_steps;
  }
  m_pending.push_back(std::move(item));
}

std::vector<PlanMatchResult> PlanMatcher::finish() {
  flush();
  return std::move(m_matches);
}

// Nothing that a scan finds lies behind a link inside the target folder.
std::string PlanMatcher::canonicalOf(std::string_view path) const {
  for (const auto& target : m_targets) {
    if (!isSameOrInside(path, target.folder.path())) continue;
    const auto rest = path.substr(target.folder.path().size());
    return rest.empty() ? target.canonical : joinPath(target.canonical, rest.substr(1));
  }
  return canonicalPath(path);
}

void PlanMatcher::enter(std::string_view folder) {
  m_folder = folder;
  const std::string canonical = canonicalOf(folder);
  m_steps.clear();
  for (std::size_t i = 0; i < m_stepFolders.size(); ++i) {
    if (isSameOrInside(canonical, m_stepFolders[i])) m_steps.push_back(i);
  }
}

void PlanMatcher::flush() {
  if (m_pending.empty()) return;
  CleaningPlan part = m_plan;
  part.steps.clear();
  for (const auto index : m_pendingSteps) part.steps.push_back(m_plan.steps[index]);
  auto found = PlanExecutor::dryRun(part, std::move(m_pending), m_now);
  m_pending.clear();
  std::ranges::move(found, std::back_inserter(m_matches));
}

std::vector<FileUrl> planRoots(std::vector<FileUrl> grantedFolders, const std::string& homeFolder) {
  const auto caches = canonicalPath(defaultURL(ManagedFolderType::caches, homeFolder).path());
  const bool hasCaches =
      std::ranges::any_of(grantedFolders, [&](const FileUrl& root) { return canonicalPath(root.path()) == caches; });
  if (hasCaches) grantedFolders.emplace_back(homeFolder + "/Library/Logs");
  return grantedFolders;
}

}  // namespace orvane
