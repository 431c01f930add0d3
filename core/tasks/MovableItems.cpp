#include "core/tasks/MovableItems.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathText.h"
#include "core/organizer/propose/TidyFolder.h"
#include "core/safety/rules/FolderRules.h"
#include "core/safety/rules/PathValidator.h"
#include "core/tasks/KeptRows.h"

namespace orvane {

MovableItems::MovableItems(const PathValidator& validator, const Boundary& boundary, KeptRows& kept)
    : m_validator(validator), m_boundary(boundary), m_kept(kept) {}

MovableItems::~MovableItems() = default;

const FolderRules& MovableItems::rulesOf(std::string_view folder) {
  if (m_lastRules != nullptr && m_lastFolder == folder) return *m_lastRules;
  m_lastFolder = folder;
  auto& rules = m_rules[m_lastFolder];
  if (!rules) rules = std::make_unique<FolderRules>(m_validator, folder, canonicalPath(folder), m_boundary);
  m_lastRules = rules.get();
  return *rules;
}

bool MovableItems::admits(const FileUrl& item, std::int64_t bytes) {
  const auto name = item.lastPathComponent();
  if (isUnfinished(name)) {
    m_unfinished.rows.add(bytes);
    return false;
  }
  if (rulesOf(parentPath(item.path())).admits(name)) return !m_kept.hold(item, bytes);
  if (m_refused.rows.count == 0) m_refused.detail = m_validator.refusalText(item, m_boundary);
  m_refused.rows.add(bytes);
  return false;
}

Notices MovableItems::notices() const {
  Notices result;
  for (const auto* kind : {&m_refused, &m_unfinished}) {
    if (kind->rows.count > 0) result.emplace_back(*kind);
  }
  return result;
}

}  // namespace orvane
