#include "core/assistant/HeuristicFallbackClient.h"

#include "core/plans/CleaningPlanSchema.h"

namespace orvane {

CleaningPlan HeuristicFallbackClient::generatePlan(const MetadataOnlyRequest& request,
                                                   const std::stop_token& /*stop*/) const {
  auto plan = m_parser.parse(request.userPrompt);
  CleaningPlanSchema::validate(plan);
  return plan;
}

}  // namespace orvane
