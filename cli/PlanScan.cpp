#include "cli/PlanScan.h"

#include "cli/FileArguments.h"
#include "cli/Folders.h"
#include "cli/ScanRun.h"
#include "cli/Session.h"
#include "core/base/CanonicalPath.h"
#include "core/base/HomeFolder.h"
#include "core/base/PathText.h"
#include "core/plans/PlanExecutor.h"
#include "core/plans/PlanFolder.h"
#include "core/safety/AllowedRoots.h"
#include "core/safety/ManagedFolderType.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <variant>

namespace orvane::cli {
namespace {

constexpr std::string_view logsFolder = "~/Library/Logs";

// A target folder that is scanned.
struct Target {
  FileUrl folder;
  std::string canonical;
};

bool isInsideOneOf(const std::vector<std::string>& roots, std::string_view path) {
  return std::ranges::any_of(roots, [&](const std::string& root) { return isSameOrInside(path, root); });
}

// Matches scanned items against the steps whose folder they lie in, keeping their order.
class Matcher {
 public:
  Matcher(const CleaningPlan& plan, std::vector<Target> targets) : m_plan(plan), m_targets(std::move(targets)) {
    for (const auto& step : plan.steps) {
      const auto folder = planFolder(step.targetFolder);
      m_stepFolders.push_back(folder ? canonicalPath(folder->path()) : std::string());
    }
    for (const auto& target : m_targets) {
      m_targetsOverlap = m_targetsOverlap || std::ranges::any_of(m_targets, [&](const Target& other) {
                           return &other != &target && isSameOrInside(target.canonical, other.canonical);
                         });
    }
  }

  void take(FileItem item) {
    const auto folder = parentPath(item.url().path());
    if (folder != m_folder) enter(folder);
    if (m_targetsOverlap && !m_seen.insert(canonicalOf(item.url().path())).second) return;
    if (m_steps != m_pendingSteps) {
      flush();
      m_pendingSteps = m_steps;
    }
    m_pending.push_back(std::move(item));
  }

  [[nodiscard]] std::vector<PlanMatchResult> finish() {
    flush();
    return std::move(m_matches);
  }

 private:
  // Nothing that a scan finds lies behind a link inside the target folder.
  [[nodiscard]] std::string canonicalOf(std::string_view path) const {
    for (const auto& target : m_targets) {
      if (!isSameOrInside(path, target.folder.path())) continue;
      const auto rest = path.substr(target.folder.path().size());
      return rest.empty() ? target.canonical : joinPath(target.canonical, rest.substr(1));
    }
    return canonicalPath(path);
  }

  void enter(std::string_view folder) {
    m_folder = folder;
    const std::string canonical = canonicalOf(folder);
    m_steps.clear();
    for (std::size_t i = 0; i < m_stepFolders.size(); ++i) {
      if (isSameOrInside(canonical, m_stepFolders[i])) m_steps.push_back(i);
    }
  }

  void flush() {
    if (m_pending.empty()) return;
    CleaningPlan part = m_plan;
    part.steps.clear();
    for (const auto index : m_pendingSteps) part.steps.push_back(m_plan.steps[index]);
    auto found = PlanExecutor::dryRun(part, std::move(m_pending), m_now);
    m_pending.clear();
    std::ranges::move(found, std::back_inserter(m_matches));
  }

  const CleaningPlan& m_plan;
  std::vector<Target> m_targets;
  std::vector<std::string> m_stepFolders;  // canonical, one for each step
  bool m_targetsOverlap = false;
  Date m_now = ReferenceClock::now();

  std::string m_folder;  // of the item before
  std::vector<std::size_t> m_steps;
  std::vector<FileItem> m_pending;  // items of the same steps
  std::vector<std::size_t> m_pendingSteps;
  std::unordered_set<std::string> m_seen;
  std::vector<PlanMatchResult> m_matches;
};

// The folders to scan, each once. What is left out is said.
std::vector<Target> targetsOf(const CleaningPlan& plan, PlanReach reach, bool& someAreLeftOut) {
  const AllowedRoots roots(planRoots());
  std::vector<Target> result;
  std::unordered_set<std::string> looked;
  for (const auto& step : plan.steps) {
    const auto folder = planFolder(step.targetFolder);
    if (!folder) continue;
    Target target{*folder, canonicalPath(folder->path())};
    if (!looked.insert(target.canonical).second) continue;
    const bool isAllowed = isInsideOneOf(roots.canonicalPaths(), target.canonical);
    if (const auto refusal = refusalOf(*folder)) {
      Session::report(*refusal);
    } else if (!isAllowed && reach == PlanReach::allowedRoots) {
      Session::report(fmt::format("{}: left alone, it is in none of the granted folders", shownPath(*folder)));
    } else {
      if (!isAllowed) {
        Session::report(
            fmt::format("{}: in none of the granted folders; a run would leave it alone", shownPath(*folder)));
      }
      result.push_back(std::move(target));
      continue;
    }
    someAreLeftOut = true;
  }
  return result;
}

bool wantsDeveloperCaches(const CleaningPlan& plan) {
  return std::ranges::any_of(plan.steps, [](const CleaningPlanStep& step) {
    const auto& categories = step.filter.categories;
    return categories && std::ranges::find(*categories, ScanCategory::developerCaches) != categories->end();
  });
}

}  // namespace

std::vector<FileUrl> planRoots() {
  auto roots = grantedFolders();
  const auto caches = canonicalPath(defaultURL(ManagedFolderType::caches, homeFolder()).path());
  const bool hasCaches =
      std::ranges::any_of(roots, [&](const FileUrl& root) { return canonicalPath(root.path()) == caches; });
  if (hasCaches) roots.emplace_back(expandedHome(logsFolder));
  return roots;
}

PlanPreview previewPlan(Session& session, const CleaningPlan& plan, PlanReach reach) {
  PlanPreview preview;
  auto targets = targetsOf(plan, reach, preview.someFoldersAreLeftOut);
  if (targets.empty()) return preview;
  std::vector<FileUrl> folders;
  folders.reserve(targets.size());
  for (const auto& target : targets) folders.push_back(target.folder);

  Matcher matcher(plan, std::move(targets));
  const auto developerCaches = wantsDeveloperCaches(plan) ? DeveloperCaches::include : DeveloperCaches::leaveOut;
  const auto end = runScan(session, std::move(folders), developerCaches, [&](std::vector<ScanEvent>& batch) {
    for (auto& event : batch) {
      if (auto* item = std::get_if<FileItem>(&event)) matcher.take(std::move(*item));
    }
  });
  preview.isInterrupted = end == ScanEnd::cancelled;
  if (!preview.isInterrupted) preview.matches = matcher.finish();
  return preview;
}

}  // namespace orvane::cli
