#pragma once

#include "core/base/values/Date.h"
#include "core/plans/records/PlanExecutionSummary.h"
#include "core/plans/records/PlanMatchResult.h"
#include "core/safety/records/Boundary.h"

#include <span>
#include <vector>

namespace orvane {

class PathValidator;
class TrashMover;
class UndoJournal;
struct CleaningPlan;

// Turns a plan into proposals, one for each file, and carries out those that the user kept.
class PlanExecutor {
 public:
  PlanExecutor(TrashMover& mover, const PathValidator& validator);
  static PlanExecutor& shared();

  // The proposals for a validated plan, in the order of the candidates: each file goes to the first step that accepts
  // it, and to none where none does. The candidates come from the plan's folders. Changes nothing on the disk. Ages are
  // counted to `now`.
  [[nodiscard]] static std::vector<PlanMatchResult> dryRun(const CleaningPlan& plan, std::vector<FileItem> candidates,
                                                           Date now = ReferenceClock::now());

  // Carries out, in order, the results that are selected and may be carried out, as one run that can be undone. Nothing
  // outside the allowed roots is touched, a move's destination included. A file that fails is left where it is and the
  // others go on, and so is one that is not the file that was found; a journal that cannot be written lets nothing
  // move.
  PlanExecutionSummary execute(std::span<const PlanMatchResult> matches, UndoJournal& journal,
                               const Boundary& allowedRoots);

 private:
  TrashMover& m_mover;
  const PathValidator& m_validator;
};

}  // namespace orvane
