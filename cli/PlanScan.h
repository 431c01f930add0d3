#pragma once

#include "core/base/Date.h"
#include "core/plans/CleaningPlan.h"
#include "core/plans/PlanMatchResult.h"
#include "core/scanning/FileItem.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace orvane::cli {

class Session;

// Which of a plan's target folders are scanned. One that is left out is named on standard error.
enum class PlanReach : std::uint8_t {
  everyFolder,  // all that may be looked at; one in which nothing may be changed is named too
  allowedRoots,
};

// What a plan would do with what is found in its target folders.
struct PlanPreview {
  std::vector<PlanMatchResult> matches;
  bool someFoldersAreLeftOut = false;
  bool isInterrupted = false;
};

// The folders in which plans may change files: the granted ones, and the logs folder where the caches folder beside it
// is granted.
[[nodiscard]] std::vector<FileUrl> planRoots();

// Scans the target folders of a validated plan and matches what is found. A step that trashes or lists is only held
// against what lies in its own folder.
[[nodiscard]] PlanPreview previewPlan(Session& session, const CleaningPlan& plan, PlanReach reach);

}  // namespace orvane::cli
