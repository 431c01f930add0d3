#pragma once

#include <stdexcept>
#include <string>
#include <variant>

namespace orvane {

// A plan is not acceptable. what() is the description for the user.
class PlanValidationError : public std::runtime_error {
 public:
  // `folder` is the target folder as the plan names it, trimmed.
  struct ProtectedTargetFolder {
    std::string folder;
    bool operator==(const ProtectedTargetFolder&) const = default;
  };
  struct EmptyGoal {
    bool operator==(const EmptyGoal&) const = default;
  };
  struct EmptySteps {
    bool operator==(const EmptySteps&) const = default;
  };
  struct MissingTargetFolder {
    bool operator==(const MissingTargetFolder&) const = default;
  };
  struct InvalidDestinationFolder {
    bool operator==(const InvalidDestinationFolder&) const = default;
  };
  struct InvalidFilterCriteria {
    bool operator==(const InvalidFilterCriteria&) const = default;
  };
  using Case = std::variant<ProtectedTargetFolder, EmptyGoal, EmptySteps, MissingTargetFolder, InvalidDestinationFolder,
                            InvalidFilterCriteria>;

  explicit PlanValidationError(Case which);
  [[nodiscard]] const Case& which() const noexcept { return m_which; }
  bool operator==(const PlanValidationError& other) const { return m_which == other.m_which; }

 private:
  Case m_which;
};

}  // namespace orvane
