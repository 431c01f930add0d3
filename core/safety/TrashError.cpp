#include "core/safety/TrashError.h"

namespace orvane {
namespace {

struct Describe {
  std::string operator()(const TrashError::FileNotFound& e) const { return "File not found at path: " + e.path; }
  std::string operator()(const TrashError::PathValidationFailed& e) const {
    return "Safety validation failed: " + e.message;
  }
  std::string operator()(const TrashError::TrashedUrlMissing& e) const {
    return "Item was moved to Trash but macOS did not return a valid resulting URL for '" + e.path + "'.";
  }
  std::string operator()(const TrashError::UnderlyingError& e) const { return "Trash operation failed: " + e.message; }
};

}  // namespace

TrashError::TrashError(Case which) : std::runtime_error(std::visit(Describe{}, which)), m_which(std::move(which)) {}

}  // namespace orvane
