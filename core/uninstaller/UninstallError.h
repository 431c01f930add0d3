#pragma once

#include "core/base/FileUrl.h"

#include <stdexcept>
#include <string>
#include <variant>

namespace orvane {

// An application is not uninstalled. Nothing has moved.
class UninstallError : public std::runtime_error {
 public:
  // Part of the system.
  struct ProtectedApplication {
    std::string name;
    FileUrl url;
    bool operator==(const ProtectedApplication&) const = default;
  };
  // Nothing there, or no ".app" bundle.
  struct NotAnApplication {
    FileUrl url;
    bool operator==(const NotAnApplication&) const = default;
  };
  using Case = std::variant<ProtectedApplication, NotAnApplication>;

  explicit UninstallError(Case which);
  [[nodiscard]] const Case& which() const noexcept { return m_which; }
  bool operator==(const UninstallError& other) const { return m_which == other.m_which; }

 private:
  Case m_which;
};

}  // namespace orvane
