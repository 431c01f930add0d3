#include "core/plans/PlanMatcher.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathText.h"
#include "core/plans/records/CleaningPlan.h"
#include "core/plans/records/PlanFolder.h"
#include "core/safety/records/ManagedFolderType.h"
#include "core/scanning/records/FileItem.h"

#include <algorithm>
#include <utility>

namespace orvane {

PlanMatcher::PlanMatcher(const CleaningPlan& plan, std::vector<PlanTarget> targets, Date now)
    : m_targets(std::move(targets)) {
  m_steps.reserve(plan.steps.size());
  for (const auto& step : plan.steps) {
    const auto folder = planFolder(step.targetFolder);
    m_stepFolders.push_back(folder ? canonicalPath(folder->path()) : std::string());
    m_steps.emplace_back(step, now);
  }
  for (const auto& target : m_targets) {
    m_targetsOverlap = m_targetsOverlap || std::ranges::any_of(m_targets, [&](const PlanTarget& other) {
                         return &other != &target && isSameOrInside(target.canonical, other.canonical);
                       });
  }
}

std::optional<std::size_t> PlanMatcher::stepFor(const FileItem& item) {
  const auto folder = parentPath(item.url().path());
  if (folder != m_folder) enter(folder);
  if (m_targetsOverlap && !m_seen.insert(canonicalOf(item.url().path())).second) return std::nullopt;
  const auto found = std::ranges::find_if(m_folderSteps, [&](std::size_t step) { return m_steps[step].accepts(item); });
  return found == m_folderSteps.end() ? std::nullopt : std::optional(*found);
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
  m_folderSteps.clear();
  for (std::size_t i = 0; i < m_stepFolders.size(); ++i) {
    if (isSameOrInside(canonical, m_stepFolders[i])) m_folderSteps.push_back(i);
  }
}

std::vector<FileUrl> planRoots(std::vector<FileUrl> grantedFolders, const std::string& homeFolder) {
  const auto caches = canonicalPath(defaultURL(ManagedFolderType::caches, homeFolder).path());
  const bool hasCaches =
      std::ranges::any_of(grantedFolders, [&](const FileUrl& root) { return canonicalPath(root.path()) == caches; });
  if (hasCaches) grantedFolders.emplace_back(homeFolder + "/Library/Logs");
  return grantedFolders;
}

}  // namespace orvane
