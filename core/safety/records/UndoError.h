#pragma once

#include "core/base/values/Uuid.h"
#include "core/base/values/VariantError.h"

#include <string>
#include <variant>

namespace orvane {

struct UndoErrorCases {
  struct RunNotFound {
    Uuid runId;
    [[nodiscard]] std::string description() const {
      return "No recorded cleanup run found for ID: " + runId.toString();
    }
    bool operator==(const RunNotFound&) const = default;
  };
  struct FileNoLongerInTrash {
    std::string path;
    [[nodiscard]] std::string description() const {
      return "File is no longer in the Trash: '" + path + "'. It may have been permanently emptied by Finder.";
    }
    bool operator==(const FileNoLongerInTrash&) const = default;
  };
  struct RestorationFailed {
    std::string path;
    std::string reason;
    [[nodiscard]] std::string description() const { return "Could not restore '" + path + "': " + reason; }
    bool operator==(const RestorationFailed&) const = default;
  };
  using Case = std::variant<RunNotFound, FileNoLongerInTrash, RestorationFailed>;
};

// Undoing a run failed as a whole.
using UndoError = VariantError<UndoErrorCases>;

}  // namespace orvane
