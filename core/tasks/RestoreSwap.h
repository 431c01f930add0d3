#pragma once

#include "core/tasks/Proposal.h"
#include "core/tasks/RestoreTask.h"

#include <stop_token>

namespace orvane {

struct TaskServices;

// Proposes to move to the Trash what stands in the places of the items that a restore would bring back, so that they
// can take these places again. Of no row where every place is free. An item that may not be moved is a refused row.
[[nodiscard]] Proposal proposeMakingRoom(const TaskServices& services, const Approval& restore);

// Moves what stands in the places to the Trash, as a run of its own, and then brings the items back. An item whose
// place was not cleared stays where it is; where one cannot come back, what stood in its place returns. Both halves are
// journalled: after a kill in between, one run or the other brings either item back.
[[nodiscard]] Restored swapPlaces(const TaskServices& services, const Approval& restore, const Approval& room,
                                  const RunProgress& progress = {}, const std::stop_token& stop = {});

}  // namespace orvane
