#pragma once

#include "core/base/values/Date.h"
#include "core/plans/FilterMatcher.h"
#include "core/plans/FolderMembership.h"

#include <optional>

namespace orvane {

class FileItem;
struct CleaningPlanStep;

// A step of a plan made ready to be held against many files. For one thread.
class StepMatcher {
 public:
  // `step` must outlive the matcher. Ages are counted to `now`.
  StepMatcher(const CleaningPlanStep& step, Date now);

  [[nodiscard]] const CleaningPlanStep& step() const noexcept { return m_step; }
  // A step that moves takes regular files directly in its folder only; any other trusts that the file is one of its
  // folder's.
  [[nodiscard]] bool accepts(const FileItem& file);

 private:
  const CleaningPlanStep& m_step;
  FilterMatcher m_filter;
  std::optional<FolderMembership> m_folder;  // of a step that moves
};

}  // namespace orvane
