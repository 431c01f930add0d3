#pragma once

#include <stdexcept>
#include <string>
#include <variant>

namespace orvane {

// An item could not be moved to the Trash. On every case but TrashedUrlMissing the item is where it was.
class TrashError : public std::runtime_error {
 public:
  struct FileNotFound {
    std::string path;
    bool operator==(const FileNotFound&) const = default;
  };
  struct PathValidationFailed {
    std::string message;
    bool operator==(const PathValidationFailed&) const = default;
  };
  struct TrashedUrlMissing {
    std::string path;
    bool operator==(const TrashedUrlMissing&) const = default;
  };
  struct UnderlyingError {
    std::string message;
    bool operator==(const UnderlyingError&) const = default;
  };
  using Case = std::variant<FileNotFound, PathValidationFailed, TrashedUrlMissing, UnderlyingError>;

  explicit TrashError(Case which);
  [[nodiscard]] const Case& which() const noexcept { return m_which; }
  bool operator==(const TrashError& other) const { return m_which == other.m_which; }

 private:
  Case m_which;
};

}  // namespace orvane
