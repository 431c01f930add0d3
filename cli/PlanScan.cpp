#include "cli/PlanScan.h"

#include "cli/FileArguments.h"
#include "cli/Folders.h"
#include "cli/ScanRun.h"
#include "cli/Session.h"
#include "core/base/CanonicalPath.h"
#include "core/base/HomeFolder.h"
#include "core/base/PathText.h"
#include "core/plans/PlanFolder.h"
#include "core/plans/PlanMatcher.h"
#include "core/safety/Boundary.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <variant>

namespace orvane::cli {
namespace {

// The folders to scan, each once. What is left out is said.
std::vector<PlanTarget> targetsOf(const CleaningPlan& plan, PlanReach reach, bool& someAreLeftOut) {
  const Boundary roots(planRoots());
  std::vector<PlanTarget> result;
  std::unordered_set<std::string> looked;
  for (const auto& step : plan.steps) {
    const auto folder = planFolder(step.targetFolder);
    if (!folder) continue;
    PlanTarget target{*folder, canonicalPath(folder->path())};
    if (!looked.insert(target.canonical).second) continue;
    const bool isAllowed = roots.contains(target.canonical);
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
  return orvane::planRoots(grantedFolders(), homeFolder());
}

PlanPreview previewPlan(Session& session, const CleaningPlan& plan, PlanReach reach) {
  PlanPreview preview;
  auto targets = targetsOf(plan, reach, preview.someFoldersAreLeftOut);
  if (targets.empty()) return preview;
  std::vector<FileUrl> folders;
  folders.reserve(targets.size());
  for (const auto& target : targets) folders.push_back(target.folder);

  PlanMatcher matcher(plan, std::move(targets));
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
