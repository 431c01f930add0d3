#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"
#include "core/plans/records/CleaningPlanStep.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The assistant's proposal for the user's files. Checked by CleaningPlanSchema::validate() before anything
// else looks at it.
struct CleaningPlan {
  Uuid id = Uuid::random();
  std::string userGoal;                 // the request in the user's words
  std::vector<CleaningPlanStep> steps;  // order is kept through matching and display
  std::string summary;                  // one paragraph on the whole plan
  bool isDryRun = true;                 // true while it is only a proposal
  Date createdAt = ReferenceClock::now();

  bool operator==(const CleaningPlan&) const = default;

  // Keys in field order.
  [[nodiscard]] Json toJson() const;
  // Every key is required. Throws JsonError.
  static CleaningPlan fromJson(const Json& json);

  // Reads a plan document, which may come from anywhere: in bounded time and memory, refusing what no plan needs.
  // Throws JsonError.
  static CleaningPlan decode(std::string_view text);
  // The longest document that decode() reads.
  static constexpr std::size_t maxDocumentBytes = std::size_t{4} * 1024 * 1024;
};

}  // namespace orvane
