#include "core/assistant/HeuristicFallbackClient.h"

#include "core/localization/ThreadSafeLanguageStore.h"
#include "core/plans/CleaningPlanSchema.h"
#include "core/plans/PromptReading.h"
#include "core/plans/glossary/TranslatedPrompt.h"

namespace orvane {

CleaningPlan HeuristicFallbackClient::plan(const std::string& prompt) const {
  const auto words = TranslatedPrompt::of(prompt, ThreadSafeLanguageStore::shared().currentLanguage());
  return m_parser.parse(prompt, PromptReading::of(words.text()));
}

CleaningPlan HeuristicFallbackClient::generatePlan(const MetadataOnlyRequest& request,
                                                   const std::stop_token& /*stop*/) const {
  auto plan = this->plan(request.userPrompt);
  CleaningPlanSchema::validate(plan);
  return plan;
}

}  // namespace orvane
