#pragma once

#include "core/tasks/Proposal.h"
#include "core/tasks/RunOrigins.h"
#include "core/tasks/RunReport.h"

#include <stop_token>

namespace orvane {

struct TaskServices;

// Moves what was approved, as one run that can be undone: the one call by which anything moves. An item that is not the
// one that was proposed any more is left, and so is whatever lies outside the proposal's boundary. One that fails is
// reported and the rest go on. Throws nothing for what the disk does. `progress` is called on the calling thread. Who
// had it done is recorded before the first move, so that it is known of a run that dies as well.
[[nodiscard]] RunReport carryOut(const TaskServices& services, const Approval& approval,
                                 const RunProgress& progress = {}, const std::stop_token& stop = {},
                                 RunOrigin::Start start = RunOrigin::Start::byHand);

}  // namespace orvane
