#include "core/rules/RuleDestination.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"
#include "core/safety/rules/FolderLookups.h"
#include "core/safety/rules/PathValidator.h"
#include "core/scanning/records/FileItem.h"

namespace orvane {

RuleDestination::RuleDestination(const RuleAction& action, const PathValidator& validator, const Boundary& boundary) {
  if (action.type() != RuleAction::Type::moveToFolder) return;
  m_folder = FileUrl(expandedHome(action.path()));
  m_canonicalPath = canonicalPath(m_folder->path());
  m_refusal = validator.refusalText(*m_folder, boundary);
}

bool RuleDestination::holds(const FileItem& file, FolderLookups& folders) const {
  return m_folder && folders.canonical(parentPath(file.url().path())) == m_canonicalPath;
}

}  // namespace orvane
