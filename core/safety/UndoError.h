#pragma once

#include "core/base/Uuid.h"

#include <stdexcept>
#include <string>
#include <variant>

namespace orvane {

// Undoing a run failed as a whole.
class UndoError : public std::runtime_error {
 public:
  struct RunNotFound {
    Uuid runId;
    bool operator==(const RunNotFound&) const = default;
  };
  struct FileNoLongerInTrash {
    std::string path;
    bool operator==(const FileNoLongerInTrash&) const = default;
  };
  struct RestorationFailed {
    std::string path;
    std::string reason;
    bool operator==(const RestorationFailed&) const = default;
  };
  using Case = std::variant<RunNotFound, FileNoLongerInTrash, RestorationFailed>;

  explicit UndoError(Case which);
  [[nodiscard]] const Case& which() const noexcept { return m_which; }
  bool operator==(const UndoError& other) const { return m_which == other.m_which; }

 private:
  Case m_which;
};

}  // namespace orvane
