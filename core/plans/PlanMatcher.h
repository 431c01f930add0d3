#pragma once

#include "core/base/Date.h"
#include "core/base/FileUrl.h"
#include "core/plans/PlanMatchResult.h"
#include "core/scanning/FileItem.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace orvane {

struct CleaningPlan;

// A folder that a plan addresses and that is scanned for it.
struct PlanTarget {
  FileUrl folder;
  std::string canonical;
};

// Holds scanned items against the steps of a plan whose folder they lie in, keeping their order: a step is never held
// against what lies elsewhere. For one thread.
class PlanMatcher {
 public:
  // `plan` must outlive the matcher. Targets may overlap: an item counts once.
  PlanMatcher(const CleaningPlan& plan, std::vector<PlanTarget> targets);

  void take(FileItem item);
  // What the plan proposes for everything that was taken.
  [[nodiscard]] std::vector<PlanMatchResult> finish();

 private:
  [[nodiscard]] std::string canonicalOf(std::string_view path) const;
  void enter(std::string_view folder);
  void flush();

  const CleaningPlan& m_plan;
  std::vector<PlanTarget> m_targets;
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

// The folders in which plans may change files: the granted ones, and the logs folder where the caches folder beside it
// is granted.
[[nodiscard]] std::vector<FileUrl> planRoots(std::vector<FileUrl> grantedFolders, const std::string& homeFolder);

}  // namespace orvane
