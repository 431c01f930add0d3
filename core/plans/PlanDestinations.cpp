#include "core/plans/PlanDestinations.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "core/organizer/categories/OrganizerCategories.h"
#include "core/plans/records/PlanFolder.h"
#include "core/safety/rules/PathValidator.h"

#include <utility>

namespace orvane {

PlanDestinations::Destination PlanDestinations::destinationFor(const FileUrl& file, std::string_view destination) {
  auto folder = planFolder(destination);
  if (!folder) return {{}, "The destination folder is not a path."};
  const auto& own = canonical(parentPath(file.path()));
  if (canonical(folder->path()) == own) {
    const auto category = defaultCategoryNameForExtension(lowercased(file.pathExtension()), file.lastPathComponent());
    folder = FileUrl(joinPath(folder->path(), category));
    if (canonical(folder->path()) == own) return {};
  }
  auto refusal = refusalOf(*folder);
  return {std::move(folder), std::move(refusal)};
}

const std::string& PlanDestinations::canonical(std::string_view folder) {
  const auto found = m_canonicalPaths.find(folder);
  if (found != m_canonicalPaths.end()) return found->second;
  return m_canonicalPaths.emplace(folder, canonicalPath(folder)).first->second;
}

const std::string& PlanDestinations::refusalOf(const FileUrl& folder) {
  const auto [found, isNew] = m_refusals.try_emplace(folder);
  if (isNew) found->second = m_validator.refusalText(folder, m_boundary);
  return found->second;
}

}  // namespace orvane
