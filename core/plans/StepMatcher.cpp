#include "core/plans/StepMatcher.h"

#include "core/plans/records/CleaningPlanStep.h"
#include "core/plans/records/PlanFolder.h"
#include "core/scanning/records/FileItem.h"

namespace orvane {

StepMatcher::StepMatcher(const CleaningPlanStep& step, Date now) : m_step(step), m_filter(step.filter, now) {
  if (step.action == PlannedAction::move) m_folder.emplace(planFolder(step.targetFolder).value_or(FileUrl()));
}

bool StepMatcher::accepts(const FileItem& file) {
  // The filter is asked first: only the folder costs a look at the disk.
  return m_filter.matches(file) && (!m_folder || m_folder->hasRegularFile(file.url()));
}

}  // namespace orvane
