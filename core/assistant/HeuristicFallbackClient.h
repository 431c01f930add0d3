#pragma once

#include "core/assistant/LLMClient.h"
#include "core/plans/OfflineHeuristicParser.h"
#include "core/plans/glossary/TranslatedPrompt.h"

#include <string>

namespace orvane {

// Plans by keywords, on this machine.
class HeuristicFallbackClient : public LLMClient {
 public:
  [[nodiscard]] AIProvider provider() const noexcept override { return AIProvider::heuristic; }
  [[nodiscard]] CleaningPlan generatePlan(const MetadataOnlyRequest& request,
                                          const std::stop_token& stop = {}) const override;
  [[nodiscard]] const OfflineHeuristicParser& parser() const noexcept { return m_parser; }
  // The words that the parser reads of a request, which may be in any language of the interface.
  [[nodiscard]] static TranslatedPrompt wordsOf(const std::string& prompt);

 private:
  OfflineHeuristicParser m_parser;
};

}  // namespace orvane
