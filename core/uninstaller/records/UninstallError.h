#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/VariantError.h"

#include <string>
#include <variant>

namespace orvane {

struct UninstallErrorCases {
  // Part of the system.
  struct ProtectedApplication {
    std::string name;
    FileUrl url;
    [[nodiscard]] std::string description() const {
      return "'" + name + "' is part of the system and cannot be uninstalled.";
    }
    bool operator==(const ProtectedApplication&) const = default;
  };
  // The package manager's, which alone removes it.
  struct ManagedApplication {
    std::string name;
    std::string command;
    [[nodiscard]] std::string description() const {
      return "'" + name + "' belongs to a package manager, which removes it: " + command;
    }
    bool operator==(const ManagedApplication&) const = default;
  };
  // Nothing there, or no application.
  struct NotAnApplication {
    FileUrl url;
    [[nodiscard]] std::string description() const { return "There is no application at '" + url.path() + "'."; }
    bool operator==(const NotAnApplication&) const = default;
  };
  using Case = std::variant<ProtectedApplication, ManagedApplication, NotAnApplication>;
};

// An application is not uninstalled. Nothing has moved.
using UninstallError = VariantError<UninstallErrorCases>;

}  // namespace orvane
