#include "core/safety/rules/FolderRules.h"

#include "core/base/files/PathText.h"

#include <algorithm>
#include <cstddef>

namespace orvane {
namespace {

bool contains(const std::vector<std::string_view>& names, std::string_view name) noexcept {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// Whether `path` is an entry of `folder`, both canonical.
bool isEntryOf(std::string_view path, std::string_view folder) noexcept {
  return path.starts_with(folder) && path != "/" && parentPath(path) == folder;
}

// Whether `path` lies anywhere below `folder`, both canonical. Here "/" holds everything.
bool liesBelow(std::string_view path, std::string_view folder) noexcept {
  return path != folder && isSameOrInside(path, folder);
}

}  // namespace

FolderRules::FolderRules(const PathValidator& validator, std::string_view path, std::string_view canonicalPath,
                         const Boundary& boundary)
    : m_profile(validator.protectedLocations().profile()) {
  if (path.empty() || PathValidator::hasTraversal(path) || path == "." || path.ends_with("/.")) {
    m_refusesAllBelow = true;
  }
  std::size_t start = 0;
  while (start < canonicalPath.size()) {
    const auto end = std::min(canonicalPath.find('/', start), canonicalPath.size());
    const auto component = canonicalPath.substr(start, end - start);
    if (isVersionControlName(component) || protectedName(m_profile, component) != nullptr) m_refusesAllBelow = true;
    start = end + 1;
  }
  applyProtectedLocations(validator.protectedLocations(), canonicalPath);
  applyRoots(canonicalPath, boundary.canonicalPaths());
  applyPrivateSystemFolders(canonicalPath, validator.protectedLocations());
  applyProfile(validator.protectedLocations(), canonicalPath);
}

void FolderRules::applyProtectedLocations(const ProtectedLocations& locations, std::string_view folder) {
  for (const std::string_view tree : locations.trees()) {
    if (isAtOrBelow(folder, tree)) m_refusesAllBelow = true;
    if (isEntryOf(tree, folder)) m_refusedNames.push_back(lastComponent(tree));
  }
  for (const std::string_view place : locations.places()) {
    if (isEntryOf(place, folder)) m_refusedNames.push_back(lastComponent(place));
  }
}

void FolderRules::applyRoots(std::string_view folder, const std::vector<std::string>& roots) {
  bool rootBelow = false;
  for (const std::string_view root : roots) {
    // An entry of the folder "/" starts with one slash, so the root "/" never covers it.
    if (folder != "/" && isAtOrBelow(folder, root)) m_insideRoot = true;
    if (isEntryOf(root, folder)) m_rootNames.push_back(lastComponent(root));
    if (liesBelow(root, folder)) rootBelow = true;
  }
  m_onlyRoots = !m_insideRoot;
  if (!m_insideRoot && !rootBelow) m_refusesAllBelow = true;
}

void FolderRules::applyPrivateSystemFolders(std::string_view folder, const ProtectedLocations& locations) {
  if (locations.isInExemptHome(folder)) return;
  for (const auto closed : privateSystemFolders) {
    if (isEntryOf(closed, folder)) m_refusedNames.push_back(lastComponent(closed));
    if (!isAtOrBelow(folder, closed)) continue;
    const auto covers = [&](std::string_view temporary) { return isAtOrBelow(folder, temporary); };
    const bool isTemporary = std::any_of(std::begin(userTemporaryFolders), std::end(userTemporaryFolders), covers);
    // Inside the temporary folders an allowed root has to cover the entry; elsewhere no entry is admitted, but the
    // temporary folders may still lie below.
    if (isTemporary) {
      m_onlyRoots = !m_insideRoot;
      continue;
    }
    admitNothing();
    const auto holds = [&](std::string_view open) { return liesBelow(open, folder); };
    if (std::none_of(std::begin(userTemporaryFolders), std::end(userTemporaryFolders), holds) &&
        std::ranges::none_of(locations.exemptHomes(), holds)) {
      m_refusesAllBelow = true;
    }
  }
}

void FolderRules::admitNothing() {
  m_onlyRoots = true;
  m_rootNames.clear();
}

void FolderRules::applyProfile(const ProtectedLocations& locations, std::string_view folder) {
  const auto holds = [&](std::string_view home) { return liesBelow(home, folder); };
  for (const auto& base : locations.bases()) {
    const auto relative = base.relative(folder);
    if (!relative && liesBelow(base.folder, folder)) {
      const auto below = std::string_view(base.folder).substr(folder == "/" ? 1 : folder.size() + 1);
      m_refusedNames.push_back(below.substr(0, below.find('/')));
    }
    if (!relative) continue;
    const auto depth = relative->empty() ? 0 : 1 + std::count(relative->begin(), relative->end(), '/');
    for (const auto& row : base.rows) {
      const auto fit = row.pattern.fit(*relative);
      if (fit == PathPattern::Fit::above) {
        m_refusedPatterns.push_back(row.pattern.components()[static_cast<std::size_t>(depth)]);
      }
      if (fit != PathPattern::Fit::exact && fit != PathPattern::Fit::below) continue;
      if (fit == PathPattern::Fit::below && locations.isExempt(row, folder, *relative)) continue;
      if (row.place->base != SystemProfile::Base::root) {
        m_refusesAllBelow = true;
      } else if (!locations.isInExemptHome(folder)) {
        admitNothing();
        if (std::ranges::none_of(locations.exemptHomes(), holds)) m_refusesAllBelow = true;
      }
    }
  }
}

bool FolderRules::admits(std::string_view name) const noexcept {
  if (m_refusesAllBelow || name.find("..") != std::string_view::npos || isVersionControlName(name)) return false;
  if (m_onlyRoots && !contains(m_rootNames, name)) return false;
  if (contains(m_refusedNames, name) || protectedName(m_profile, name) != nullptr) return false;
  return std::ranges::none_of(m_refusedPatterns, [&](auto pattern) { return fitsWildcard(name, pattern); });
}

}  // namespace orvane
