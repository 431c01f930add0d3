#pragma once

#include "core/assistant/records/AIProvider.h"
#include "core/plans/PromptReading.h"
#include "core/plans/glossary/TranslatedPrompt.h"
#include "core/plans/records/CleaningPlan.h"
#include "core/plans/records/Understanding.h"
#include "core/platform/HttpTransport.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace orvane {

// A plan, who really made it, and how the request was understood.
struct PlannedAnswer {
  static constexpr std::size_t noStep = SIZE_MAX;

  CleaningPlan plan;
  TranslatedPrompt words = {};  // those that the tables read of the request
  PromptReading reading = {};   // by the tables, whoever made the plan; spans are of the words
  Understanding understanding = {};
  std::size_t placesFrom = noStep;  // the first step over places that are taken whole; those after it are too
  std::size_t addedFrom = noStep;   // the first step that the user added
  AIProvider asked = AIProvider::heuristic;
  AIProvider provider = AIProvider::heuristic;
  // Why another provider than the one asked for made the plan, in one line for people; absent where none did. May quote
  // from a reply: escape it for display.
  std::optional<std::string> fallbackReason;
  // The request that was sent, but for the key, whatever came of it; absent where none was.
  std::optional<HttpRequest> sent;
};

}  // namespace orvane
