#pragma once

#include "core/base/values/VariantError.h"

#include <string>
#include <variant>

namespace orvane {

struct SecurityErrorCases {
  // `path` is canonical.
  struct ProtectedPath {
    std::string path;
    [[nodiscard]] std::string description() const {
      return "Operation denied: '" + path + "' is a protected system or personal identity path.";
    }
    bool operator==(const ProtectedPath&) const = default;
  };
  // `path` is as given.
  struct PathTraversalAttempt {
    std::string path;
    [[nodiscard]] std::string description() const {
      return "Operation denied: Path traversal sequence detected in '" + path + "'.";
    }
    bool operator==(const PathTraversalAttempt&) const = default;
  };
  // `path` is as given, `target` canonical.
  struct SymlinkEscapesAllowedBoundary {
    std::string path;
    std::string target;
    [[nodiscard]] std::string description() const {
      return "Operation denied: Symlink '" + path + "' resolves to '" + target + "' outside allowed folders.";
    }
    bool operator==(const SymlinkEscapesAllowedBoundary&) const = default;
  };
  struct EmptyPath {
    static std::string description() { return "Operation denied: File path is empty."; }
    bool operator==(const EmptyPath&) const = default;
  };
  struct PermanentDeletionForbidden {
    static std::string description() {
      return "Operation denied: Permanent file deletion is strictly forbidden; all deletions must use Trash.";
    }
    bool operator==(const PermanentDeletionForbidden&) const = default;
  };
  using Case = std::variant<ProtectedPath, PathTraversalAttempt, SymlinkEscapesAllowedBoundary, EmptyPath,
                            PermanentDeletionForbidden>;
};

// A safety check refused an operation. Shared by every component that checks paths.
using SecurityError = VariantError<SecurityErrorCases>;

}  // namespace orvane
