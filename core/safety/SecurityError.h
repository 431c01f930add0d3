#pragma once

#include <stdexcept>
#include <string>
#include <variant>

namespace orvane {

// A safety check refused an operation. Shared by every component that checks paths.
class SecurityError : public std::runtime_error {
 public:
  // `path` is canonical.
  struct ProtectedPath {
    std::string path;
    bool operator==(const ProtectedPath&) const = default;
  };
  // `path` is as given.
  struct PathTraversalAttempt {
    std::string path;
    bool operator==(const PathTraversalAttempt&) const = default;
  };
  // `path` is as given, `target` canonical.
  struct SymlinkEscapesAllowedBoundary {
    std::string path;
    std::string target;
    bool operator==(const SymlinkEscapesAllowedBoundary&) const = default;
  };
  struct EmptyPath {
    bool operator==(const EmptyPath&) const = default;
  };
  struct PermanentDeletionForbidden {
    bool operator==(const PermanentDeletionForbidden&) const = default;
  };
  using Case = std::variant<ProtectedPath, PathTraversalAttempt, SymlinkEscapesAllowedBoundary, EmptyPath,
                            PermanentDeletionForbidden>;

  explicit SecurityError(Case which);
  [[nodiscard]] const Case& which() const noexcept { return m_which; }
  bool operator==(const SecurityError& other) const { return m_which == other.m_which; }

 private:
  Case m_which;
};

}  // namespace orvane
