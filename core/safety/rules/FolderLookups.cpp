#include "core/safety/rules/FolderLookups.h"

#include "core/base/files/CanonicalPath.h"

namespace orvane {

const std::string& FolderLookups::canonical(std::string_view folder) {
  const auto found = m_canonicalPaths.find(folder);
  if (found != m_canonicalPaths.end()) return found->second;
  return m_canonicalPaths.emplace(folder, canonicalPath(folder)).first->second;
}

const std::string& FolderLookups::destination(const FileUrl& folder,
                                              const std::function<void(const FileUrl&)>& prepare) {
  const auto found = m_destinations.find(folder);
  if (found != m_destinations.end()) return found->second;
  prepare(folder);
  return m_destinations.emplace(folder, canonicalPath(folder.path())).first->second;
}

void FolderLookups::noteMade(const std::vector<std::string>& folders) {
  for (const auto& folder : folders) m_made.push_back(canonicalPath(folder));
}

}  // namespace orvane
