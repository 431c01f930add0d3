#include "core/safety/AllowedRoots.h"

#include "core/base/CanonicalPath.h"

namespace orvane {

AllowedRoots::AllowedRoots(std::vector<FileUrl> folders) : m_folders(std::move(folders)) {
  m_canonicalPaths.reserve(m_folders.size());
  for (const auto& folder : m_folders) m_canonicalPaths.push_back(canonicalPath(folder.path()));
}

}  // namespace orvane
