#pragma once

#include "core/assistant/PlannedAnswer.h"
#include "core/tasks/PlanTask.h"

#include <optional>
#include <stop_token>
#include <string>

namespace orvane {

// From a request in plain words to a proposal, in two steps: a planner makes a plan, and the plan is held against what
// is there.

// Asks the planner, or the one on this machine where it cannot be used: there is always a plan, though validation may
// refuse it. The planner is told the request and nothing of any file.
[[nodiscard]] PlannedAnswer askPlanner(const TaskServices& services, const std::string& prompt, AIProvider provider,
                                       const std::stop_token& stop = {});
// The proposal of the answer's plan, made by proposePlan(). A notice says when another planner made it.
[[nodiscard]] std::optional<Proposal> proposeAnswer(const TaskServices& services, const PlannedAnswer& answer,
                                                    PlanReach reach, Date now, const TaskMonitor& monitor = {});

// Whether a key is stored for the provider. Asks the key ring.
[[nodiscard]] bool hasKey(const TaskServices& services, AIProvider provider);
// Exactly what askPlanner() would send, but for the key; absent for a provider that sends nothing.
[[nodiscard]] std::optional<HttpRequest> requestToSend(const TaskServices& services, const std::string& prompt,
                                                       AIProvider provider);
// A request as people read it, every line of it.
[[nodiscard]] std::string requestText(const HttpRequest& request);

}  // namespace orvane
