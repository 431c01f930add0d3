#pragma once

#include "core/assistant/records/AIProvider.h"
#include "core/assistant/records/MetadataOnlyRequest.h"
#include "core/plans/records/CleaningPlan.h"

#include <stop_token>

namespace orvane {

// One planner. Usable from any thread.
class LLMClient {
 public:
  virtual ~LLMClient() = default;

  [[nodiscard]] virtual AIProvider provider() const noexcept = 0;
  // Returns a plan that validation accepts; throws HttpError, PlannerError, JsonError or PlanValidationError.
  [[nodiscard]] virtual CleaningPlan generatePlan(const MetadataOnlyRequest& request,
                                                  const std::stop_token& stop = {}) const = 0;
};

}  // namespace orvane
