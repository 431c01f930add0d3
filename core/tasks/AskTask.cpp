#include "core/tasks/AskTask.h"

#include "core/assistant/AgentCoordinator.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <utility>

namespace orvane {

PlannedAnswer askPlanner(const TaskServices& services, const std::string& prompt, AIProvider provider,
                         const std::stop_token& stop) {
  return services.agent.requestAnswer(prompt, provider, {}, stop);
}

std::optional<Proposal> proposeAnswer(const TaskServices& services, const PlannedAnswer& answer, PlanReach reach,
                                      Date now, const TaskMonitor& monitor) {
  Notices said;
  if (answer.fallbackReason) said.emplace_back(PlannerFailed{answer.asked, *answer.fallbackReason});
  return proposePlan(services, answer.plan, reach, now, monitor, std::move(said));
}

bool hasKey(const TaskServices& services, AIProvider provider) {
  return services.agent.hasKey(provider);
}

std::optional<HttpRequest> requestToSend(const TaskServices& services, const std::string& prompt, AIProvider provider) {
  return services.agent.keylessRequest(prompt, provider, {});
}

std::string requestText(const HttpRequest& request) {
  auto text = fmt::format("POST {}\nContent-Type: application/json\n", escapedForDisplay(request.url));
  for (const auto& header : request.headers) text += fmt::format("{}: {}\n", header.name, header.value);
  return text + "\n" + request.body;
}

}  // namespace orvane
