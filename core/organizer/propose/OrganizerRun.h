#pragma once

#include "core/organizer/records/OrganizationCategoryGroup.h"
#include "core/plans/PlanExecution.h"
#include "core/safety/records/Boundary.h"
#include "core/safety/run/CleanupRun.h"

#include <span>
#include <stop_token>

namespace orvane {

class PathValidator;
class TrashMover;
class UndoJournal;

// Moves what is selected in the groups as one run, in order; every entry of the journal carries the run's start. See
// FolderOrganizerEngine::carryOut().
[[nodiscard]] PlanExecution carryOutOrganizing(std::span<const OrganizationCategoryGroup> groups, TrashMover& mover,
                                               const PathValidator& validator, UndoJournal& journal,
                                               const Boundary& allowedRoots, const CleanupRun::Progress& progress,
                                               std::stop_token stop);

}  // namespace orvane
