#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/plans/StepMatcher.h"

#include <cstddef>
#include <optional>
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

// Holds scanned items against the steps of a plan whose folder they lie in: a step is never held against what lies
// elsewhere. For one thread.
class PlanMatcher {
 public:
  // `plan` must outlive the matcher. Targets may overlap: an item counts once. Ages are counted to `now`.
  PlanMatcher(const CleaningPlan& plan, std::vector<PlanTarget> targets, Date now);

  // Index of the first step that accepts the item; absent where none does, and for an item that was seen before.
  [[nodiscard]] std::optional<std::size_t> stepFor(const FileItem& item);

 private:
  [[nodiscard]] std::string canonicalOf(std::string_view path) const;
  void enter(std::string_view folder);

  std::vector<PlanTarget> m_targets;
  std::vector<StepMatcher> m_steps;
  std::vector<std::string> m_stepFolders;  // canonical, one for each step
  bool m_targetsOverlap = false;

  std::string m_folder;                    // of the item before
  std::vector<std::size_t> m_folderSteps;  // whose folder it lies in
  std::unordered_set<std::string> m_seen;
};

// The folders in which plans may change files: the granted ones, and the logs folder where the caches folder beside it
// is granted.
[[nodiscard]] std::vector<FileUrl> planRoots(std::vector<FileUrl> grantedFolders, const std::string& homeFolder);

}  // namespace orvane
