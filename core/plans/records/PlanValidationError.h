#pragma once

#include "core/base/values/VariantError.h"

#include <string>
#include <variant>

namespace orvane {

struct PlanValidationErrorCases {
  // `folder` is the target folder as the plan names it, trimmed.
  struct ProtectedTargetFolder {
    std::string folder;
    [[nodiscard]] std::string description() const { return "Target folder is protected and prohibited: " + folder; }
    bool operator==(const ProtectedTargetFolder&) const = default;
  };
  struct EmptyGoal {
    static std::string description() { return "The plan user goal cannot be empty."; }
    bool operator==(const EmptyGoal&) const = default;
  };
  struct EmptySteps {
    static std::string description() { return "The cleaning plan must contain at least one step."; }
    bool operator==(const EmptySteps&) const = default;
  };
  struct MissingTargetFolder {
    static std::string description() { return "Every plan step must declare a target folder."; }
    bool operator==(const MissingTargetFolder&) const = default;
  };
  struct InvalidDestinationFolder {
    static std::string description() { return "Move actions must declare a valid non-empty destination folder."; }
    bool operator==(const InvalidDestinationFolder&) const = default;
  };
  struct InvalidFilterCriteria {
    static std::string description() { return "Filter criteria must specify at least one filter attribute."; }
    bool operator==(const InvalidFilterCriteria&) const = default;
  };
  using Case = std::variant<ProtectedTargetFolder, EmptyGoal, EmptySteps, MissingTargetFolder, InvalidDestinationFolder,
                            InvalidFilterCriteria>;
};

// A plan is not acceptable. what() is the description for the user.
using PlanValidationError = VariantError<PlanValidationErrorCases>;

}  // namespace orvane
