#pragma once

#include "core/assistant/LLMClient.h"
#include "core/plans/OfflineHeuristicParser.h"

#include <string>

namespace orvane {

// Plans by keywords, on this machine.
class HeuristicFallbackClient : public LLMClient {
 public:
  [[nodiscard]] AIProvider provider() const noexcept override { return AIProvider::heuristic; }
  [[nodiscard]] CleaningPlan generatePlan(const MetadataOnlyRequest& request,
                                          const std::stop_token& stop = {}) const override;
  // Also one that validation rejects. A request may be in any language of the interface.
  [[nodiscard]] CleaningPlan plan(const std::string& prompt) const;

 private:
  OfflineHeuristicParser m_parser;
};

}  // namespace orvane
