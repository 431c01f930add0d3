#pragma once

#include "cli/frame/ExitStatus.h"
#include "core/tasks/AskTask.h"

#include <string>

namespace orvane::cli {

class Session;

// Shows what the answer's plan takes as a rule of this name, and stores it; where it can be no rule, says why and
// stores nothing. The caller has made sure that the plan is the one that was meant.
[[nodiscard]] ExitStatus saveAsRule(Session& session, const PlannedAnswer& answer, const std::string& name);

}  // namespace orvane::cli
