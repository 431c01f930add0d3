#pragma once

#include "core/assistant/LLMClient.h"
#include "core/plans/OfflineHeuristicParser.h"

namespace orvane {

// Plans by keywords, on this machine.
class HeuristicFallbackClient : public LLMClient {
 public:
  [[nodiscard]] AIProvider provider() const noexcept override { return AIProvider::heuristic; }
  [[nodiscard]] CleaningPlan generatePlan(const MetadataOnlyRequest& request,
                                          const std::stop_token& stop = {}) const override;
  [[nodiscard]] const OfflineHeuristicParser& parser() const noexcept { return m_parser; }

 private:
  OfflineHeuristicParser m_parser;
};

}  // namespace orvane
