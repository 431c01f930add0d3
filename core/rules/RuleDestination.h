#pragma once

#include "core/base/files/FileUrl.h"
#include "core/rules/records/RuleAction.h"
#include "core/safety/records/Boundary.h"

#include <optional>
#include <string>

namespace orvane {

class FileItem;
class FolderLookups;
class PathValidator;

// Where a rule's action takes files, looked up once for many of them.
class RuleDestination {
 public:
  RuleDestination(const RuleAction& action, const PathValidator& validator, const Boundary& boundary);

  // Absent where files go to the Trash, or nowhere.
  [[nodiscard]] const std::optional<FileUrl>& folder() const noexcept { return m_folder; }
  // Why no file may go there; empty when files may.
  [[nodiscard]] const std::string& refusal() const noexcept { return m_refusal; }
  // Whether the file lies there already: it would get another number with every run.
  [[nodiscard]] bool holds(const FileItem& file, FolderLookups& folders) const;

 private:
  std::optional<FileUrl> m_folder;
  std::string m_canonicalPath;
  std::string m_refusal;
};

}  // namespace orvane
