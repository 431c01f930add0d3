#pragma once

#include "core/assistant/PlannedAnswer.h"
#include "core/tasks/PlanTask.h"

#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

// From a request in plain words to a proposal, in two steps: a planner makes a plan, and the plan is held against what
// is there.

// Asks the planner, or the one on this machine where it cannot be used: there is always a plan, though validation may
// refuse it. The planner gets the request and learns nothing of any file.
[[nodiscard]] PlannedAnswer askPlanner(const TaskServices& services, const std::string& prompt, AIProvider provider,
                                       const std::stop_token& stop = {});
// The fate of rows of a plan that may not be the one that was meant.
enum class WhenUnsure : std::uint8_t {
  unselected,  // but for the steps that the user added
  asPlanned,   // the user takes the plan as it is
};
// The proposal of the answer's plan, made by proposePlan(). A notice says when another planner made it.
[[nodiscard]] std::optional<Proposal> proposeAnswer(const TaskServices& services, const PlannedAnswer& answer,
                                                    PlanReach reach, Date now, const TaskMonitor& monitor = {},
                                                    WhenUnsure whenUnsure = WhenUnsure::unselected);

// Known places of a category that the request could mean as well, and its plan does not take.
struct PlacesBeside {
  ScanCategory category = ScanCategory::caches;
  RowSum rows = {};
};
[[nodiscard]] std::vector<PlacesBeside> placesBeside(const TaskServices& services, const PlannedAnswer& answer,
                                                     const TaskMonitor& monitor = {});
// The answer with a step over all known places of a category.
[[nodiscard]] PlannedAnswer withPlaces(const TaskServices& services, PlannedAnswer answer, ScanCategory category);

// Whether a key is stored for the provider. Asks the key ring.
[[nodiscard]] bool hasKey(const TaskServices& services, AIProvider provider);
// Why the model on this machine cannot be asked, in one line for people; empty where it can. May wait for its server.
[[nodiscard]] std::string localModelProblem(const TaskServices& services);
// Exactly what askPlanner() would send, but for the key; absent for a provider that sends nothing.
[[nodiscard]] std::optional<HttpRequest> requestToSend(const TaskServices& services, const std::string& prompt,
                                                       AIProvider provider);
// Exactly what askPlanner() would tell and ask the model on this machine, whether there is one or not.
struct LocalPrompt {
  std::string instructions;
  std::string message;
};
[[nodiscard]] LocalPrompt localPrompt(const std::string& prompt);
// A request as people read it, every line of it.
[[nodiscard]] std::string requestText(const HttpRequest& request);

}  // namespace orvane
