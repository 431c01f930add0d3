#pragma once

#include "core/assistant/records/AIProvider.h"
#include "core/plans/records/CleaningPlan.h"
#include "core/platform/HttpTransport.h"

#include <optional>
#include <string>

namespace orvane {

// A plan, and who really made it.
struct PlannedAnswer {
  CleaningPlan plan;
  AIProvider asked = AIProvider::heuristic;
  AIProvider provider = AIProvider::heuristic;
  // Why another provider than the one asked for made the plan, in one line for people; absent where none did. May quote
  // from a reply: escape it for display.
  std::optional<std::string> fallbackReason;
  // The request that was sent, but for the key, whatever came of it; absent where none was.
  std::optional<HttpRequest> sent;
};

}  // namespace orvane
