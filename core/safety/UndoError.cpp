#include "core/safety/UndoError.h"

namespace orvane {
namespace {

struct Describe {
  std::string operator()(const UndoError::RunNotFound& e) const {
    return "No recorded cleanup run found for ID: " + e.runId.toString();
  }
  std::string operator()(const UndoError::FileNoLongerInTrash& e) const {
    return "File is no longer in the Trash: '" + e.path + "'. It may have been permanently emptied by Finder.";
  }
  std::string operator()(const UndoError::RestorationFailed& e) const {
    return "Could not restore '" + e.path + "': " + e.reason;
  }
};

}  // namespace

UndoError::UndoError(Case which) : std::runtime_error(std::visit(Describe{}, which)), m_which(std::move(which)) {}

}  // namespace orvane
