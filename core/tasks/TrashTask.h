#pragma once

#include "core/base/FileUrl.h"
#include "core/tasks/Proposal.h"

#include <span>

namespace orvane {

struct TaskServices;

// Proposes to move the places to the Trash, each with everything inside it; one that lies in another goes with it.
// Those that are missing or refused are locked rows.
[[nodiscard]] Proposal proposeTrash(const TaskServices& services, std::span<const FileUrl> places,
                                    const Boundary& boundary);

}  // namespace orvane
