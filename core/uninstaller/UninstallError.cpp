#include "core/uninstaller/UninstallError.h"

namespace orvane {
namespace {

struct Describe {
  std::string operator()(const UninstallError::ProtectedApplication& e) const {
    return "'" + e.name + "' is part of the system and cannot be uninstalled.";
  }
  std::string operator()(const UninstallError::NotAnApplication& e) const {
    return "There is no application at '" + e.url.path() + "'.";
  }
};

}  // namespace

UninstallError::UninstallError(Case which)
    : std::runtime_error(std::visit(Describe{}, which)), m_which(std::move(which)) {}

}  // namespace orvane
