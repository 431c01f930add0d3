#include "core/safety/records/Boundary.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathText.h"

#include <algorithm>

namespace orvane {

Boundary::Boundary(std::vector<FileUrl> folders) : m_folders(std::move(folders)) {
  m_canonicalPaths.reserve(m_folders.size());
  for (const auto& folder : m_folders) m_canonicalPaths.push_back(canonicalPath(folder.path()));
}

bool Boundary::contains(std::string_view canonicalPath) const noexcept {
  return std::any_of(m_canonicalPaths.begin(), m_canonicalPaths.end(),
                     [&](const auto& folder) { return isSameOrInside(canonicalPath, folder); });
}

}  // namespace orvane
