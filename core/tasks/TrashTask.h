#pragma once

#include "core/base/files/FileUrl.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/TaskMonitor.h"

#include <optional>
#include <span>

namespace orvane {

struct TaskServices;

// Proposes to move the places to the Trash, each with everything inside it; one that lies in another goes with it.
// Those that are missing or refused are locked rows.
[[nodiscard]] Proposal proposeTrash(const TaskServices& services, std::span<const FileUrl> places,
                                    const Boundary& boundary);

// The same for the places that the subject of an earlier proposal names. Throws JsonError for a subject that is none.
[[nodiscard]] std::optional<Proposal> reproposeTrash(const TaskServices& services, const Json& subject,
                                                     const Boundary& boundary, Date countedTo,
                                                     const TaskMonitor& monitor = {});

}  // namespace orvane
