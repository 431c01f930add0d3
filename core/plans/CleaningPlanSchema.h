#pragma once

#include "core/plans/records/PlanValidationError.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

struct CleaningPlan;

// The form of a plan: the checks that every plan must pass, and the text that language models are given.
class CleaningPlanSchema {
 public:
  CleaningPlanSchema() = delete;

  using ValidationError = PlanValidationError;

  // Throws the first fault found, as a ValidationError. Repairs nothing.
  static void validate(const CleaningPlan& plan);
  // The non-throwing twin; absent when the plan is acceptable.
  [[nodiscard]] static std::optional<ValidationError> firstFault(const CleaningPlan& plan);

  // The shape of a plan for a language model, 19 lines. It names neither the plan's identity, its dry-run flag nor its
  // date.
  [[nodiscard]] static std::string_view promptBlock() noexcept;
  // The same with the keys that a plan must have and the block does not name, each with a value to copy.
  [[nodiscard]] static std::string completePromptBlock();
};

}  // namespace orvane
