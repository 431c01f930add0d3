#include "core/assistant/HeuristicFallbackClient.h"

#include "core/localization/ThreadSafeLanguageStore.h"
#include "core/plans/CleaningPlanSchema.h"
#include "core/plans/PromptReading.h"

namespace orvane {

TranslatedPrompt HeuristicFallbackClient::wordsOf(const std::string& prompt) {
  return TranslatedPrompt::of(prompt, ThreadSafeLanguageStore::shared().currentLanguage());
}

CleaningPlan HeuristicFallbackClient::generatePlan(const MetadataOnlyRequest& request,
                                                   const std::stop_token& /*stop*/) const {
  auto plan = m_parser.parse(request.userPrompt, PromptReading::of(wordsOf(request.userPrompt).text()));
  CleaningPlanSchema::validate(plan);
  return plan;
}

}  // namespace orvane
