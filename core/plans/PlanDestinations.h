#pragma once

#include "core/base/files/FileUrl.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

class Boundary;
class PathValidator;

// Where the files of one plan may go, each folder judged once. For one thread.
class PlanDestinations {
 public:
  // Both must outlive this object.
  PlanDestinations(const PathValidator& validator, const Boundary& boundary)
      : m_validator(validator), m_boundary(boundary) {}

  struct Destination {
    std::optional<FileUrl> folder;  // absent for a text that cannot name one, and where the file lies in place
    std::string refusal;            // why the folder may not be moved into; empty when it may
  };
  // Where a file goes that a step moves to `destination`: a file that lies there goes to the folder of its category
  // inside it.
  [[nodiscard]] Destination destinationFor(const FileUrl& file, std::string_view destination);

 private:
  [[nodiscard]] const std::string& canonical(std::string_view folder);
  [[nodiscard]] const std::string& refusalOf(const FileUrl& folder);

  const PathValidator& m_validator;
  const Boundary& m_boundary;
  std::map<std::string, std::string, std::less<>> m_canonicalPaths;
  std::map<FileUrl, std::string> m_refusals;
};

}  // namespace orvane
