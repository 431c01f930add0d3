#include "core/plans/PlanValidationError.h"

#include <utility>

namespace orvane {
namespace {

struct Description {
  std::string operator()(const PlanValidationError::ProtectedTargetFolder& error) const {
    return "Target folder is protected and prohibited: " + error.folder;
  }
  std::string operator()(const PlanValidationError::EmptyGoal&) const { return "The plan user goal cannot be empty."; }
  std::string operator()(const PlanValidationError::EmptySteps&) const {
    return "The cleaning plan must contain at least one step.";
  }
  std::string operator()(const PlanValidationError::MissingTargetFolder&) const {
    return "Every plan step must declare a target folder.";
  }
  std::string operator()(const PlanValidationError::InvalidDestinationFolder&) const {
    return "Move actions must declare a valid non-empty destination folder.";
  }
  std::string operator()(const PlanValidationError::InvalidFilterCriteria&) const {
    return "Filter criteria must specify at least one filter attribute.";
  }
};

}  // namespace

PlanValidationError::PlanValidationError(Case which)
    : std::runtime_error(std::visit(Description{}, which)), m_which(std::move(which)) {}

}  // namespace orvane
