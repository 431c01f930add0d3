#pragma once

#include "core/base/values/VariantError.h"

#include <string>
#include <variant>

namespace orvane {

struct TrashErrorCases {
  struct FileNotFound {
    std::string path;
    [[nodiscard]] std::string description() const { return "File not found at path: " + path; }
    bool operator==(const FileNotFound&) const = default;
  };
  struct PathValidationFailed {
    std::string message;
    [[nodiscard]] std::string description() const { return "Safety validation failed: " + message; }
    bool operator==(const PathValidationFailed&) const = default;
  };
  struct TrashedUrlMissing {
    std::string path;
    [[nodiscard]] std::string description() const {
      return "Item was moved to Trash but macOS did not return a valid resulting URL for '" + path + "'.";
    }
    bool operator==(const TrashedUrlMissing&) const = default;
  };
  struct UnderlyingError {
    std::string message;
    [[nodiscard]] std::string description() const { return "Trash operation failed: " + message; }
    bool operator==(const UnderlyingError&) const = default;
  };
  using Case = std::variant<FileNotFound, PathValidationFailed, TrashedUrlMissing, UnderlyingError>;
};

// An item could not be moved to the Trash. On every case but TrashedUrlMissing the item is where it was.
using TrashError = VariantError<TrashErrorCases>;

}  // namespace orvane
