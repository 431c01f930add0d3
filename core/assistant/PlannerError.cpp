#include "core/assistant/PlannerError.h"

#include <fmt/format.h>

namespace orvane {
namespace {

struct Describe {
  std::string operator()(const PlannerError::BadServerResponse& e) const {
    return fmt::format("The server answered with HTTP status {}.", e.status);
  }
  std::string operator()(const PlannerError::CannotParseResponse&) const {
    return "The server's reply has not the form that it should have.";
  }
};

}  // namespace

PlannerError::PlannerError(Case which) : std::runtime_error(std::visit(Describe{}, which)), m_which(which) {}

}  // namespace orvane
