#include "core/safety/SecurityError.h"

namespace orvane {
namespace {

constexpr const char* prefix = "Operation denied: ";

struct Describe {
  std::string operator()(const SecurityError::ProtectedPath& e) const {
    return prefix + ("'" + e.path + "' is a protected system or personal identity path.");
  }
  std::string operator()(const SecurityError::PathTraversalAttempt& e) const {
    return prefix + ("Path traversal sequence detected in '" + e.path + "'.");
  }
  std::string operator()(const SecurityError::SymlinkEscapesAllowedBoundary& e) const {
    return prefix + ("Symlink '" + e.path + "' resolves to '" + e.target + "' outside allowed folders.");
  }
  std::string operator()(const SecurityError::EmptyPath&) const { return prefix + std::string("File path is empty."); }
  std::string operator()(const SecurityError::PermanentDeletionForbidden&) const {
    return prefix + std::string("Permanent file deletion is strictly forbidden; all deletions must use Trash.");
  }
};

}  // namespace

SecurityError::SecurityError(Case which)
    : std::runtime_error(std::visit(Describe{}, which)), m_which(std::move(which)) {}

}  // namespace orvane
