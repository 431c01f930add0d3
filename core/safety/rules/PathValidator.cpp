#include "core/safety/rules/PathValidator.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"

#include <algorithm>

namespace orvane {
namespace {

// "/" as a root covers nothing but itself here, as the fixed rules have it.
bool isInside(std::string_view path, const Boundary& boundary) noexcept {
  const auto& roots = boundary.canonicalPaths();
  return std::any_of(roots.begin(), roots.end(), [&](const auto& root) { return isAtOrBelow(path, root); });
}

bool isPrivateSystemPath(std::string_view path, const Boundary* boundary) noexcept {
  const auto covers = [&](std::string_view folder) { return isAtOrBelow(path, folder); };
  if (std::none_of(std::begin(privateSystemFolders), std::end(privateSystemFolders), covers)) return false;
  const auto holds = [&](std::string_view folder) { return isBelow(path, folder); };
  const bool isTemporary = std::any_of(std::begin(userTemporaryFolders), std::end(userTemporaryFolders), holds);
  return !(isTemporary && boundary != nullptr && isInside(path, *boundary));
}

bool hasVersionControlComponent(std::string_view path) noexcept {
  std::size_t start = 0;
  while (start < path.size()) {
    const auto end = std::min(path.find('/', start), path.size());
    if (isVersionControlName(path.substr(start, end - start))) return true;
    start = end + 1;
  }
  return false;
}

bool isSymbolicLink(const std::string& path) noexcept {
  const auto status = readPathStatus(path);
  return status && status->type == FileType::symbolicLink;
}

}  // namespace

PathValidator::PathValidator(const std::string& homeFolder, const SystemProfile& profile)
    : m_protected(homeFolder, profile), m_knownPlaces(profile) {}

void PathValidator::validate(const FileUrl& url, const Boundary& boundary) const {
  if (auto refused = refusal(url, &boundary)) throw SecurityError(*std::move(refused));
}

void PathValidator::validate(const FileUrl& url, FixedRulesOnly /*only*/) const {
  if (auto refused = refusal(url, nullptr)) throw SecurityError(*std::move(refused));
}

bool PathValidator::isPathAllowed(const FileUrl& url, const Boundary& boundary) const {
  return !refusal(url, &boundary).has_value();
}

bool PathValidator::isPathAllowed(const FileUrl& url, FixedRulesOnly /*only*/) const {
  return !refusal(url, nullptr).has_value();
}

std::string PathValidator::refusalText(const FileUrl& url, const Boundary& boundary) const {
  auto refused = refusal(url, &boundary);
  return refused ? SecurityError(*std::move(refused)).what() : std::string();
}

std::string PathValidator::refusalText(const FileUrl& url, FixedRulesOnly /*only*/) const {
  auto refused = refusal(url, nullptr);
  return refused ? SecurityError(*std::move(refused)).what() : std::string();
}

Boundary PathValidator::canonicalizeRoots(std::span<const FileUrl> roots) {
  return Boundary({roots.begin(), roots.end()});
}

std::optional<SecurityError::Case> PathValidator::checkCanonical(std::string_view canonicalPath,
                                                                 const Boundary& boundary) const {
  if (!isProtected(canonicalPath, &boundary) && isInside(canonicalPath, boundary)) return std::nullopt;
  return SecurityError::ProtectedPath{std::string(canonicalPath)};
}

std::optional<SecurityError::Case> PathValidator::refusal(const FileUrl& url, const Boundary* boundary) const {
  const std::string& path = url.path();
  if (path.empty()) return SecurityError::EmptyPath{};
  if (hasTraversal(path)) return SecurityError::PathTraversalAttempt{path};
  std::string canonical = canonicalPath(path);
  if (isProtected(canonical, boundary)) return SecurityError::ProtectedPath{std::move(canonical)};
  if (boundary == nullptr || isInside(canonical, *boundary)) return std::nullopt;
  if (isSymbolicLink(path)) return SecurityError::SymlinkEscapesAllowedBoundary{path, std::move(canonical)};
  return SecurityError::ProtectedPath{std::move(canonical)};
}

bool PathValidator::hasTraversal(std::string_view path) noexcept {
  // A NUL byte would make the system see another path than the one that is checked.
  return path.find("..") != std::string_view::npos || path.find("/./") != std::string_view::npos ||
         path.starts_with("./") || path.find('\0') != std::string_view::npos;
}

bool PathValidator::isGivenProtected(std::string_view canonicalPath, const Boundary* boundary) const {
  const auto trees = m_protected.trees();
  const auto places = m_protected.places();
  return std::any_of(trees.begin(), trees.end(), [&](const auto& tree) { return isAtOrBelow(canonicalPath, tree); }) ||
         (isPrivateSystemPath(canonicalPath, boundary) && !m_protected.isInExemptHome(canonicalPath)) ||
         std::find(places.begin(), places.end(), canonicalPath) != places.end() ||
         hasVersionControlComponent(canonicalPath);
}

bool PathValidator::isKnownSettingsPlace(std::string_view canonicalPath) const noexcept {
  const auto* row = m_knownPlaces.rowOf(canonicalPath);
  return row != nullptr && row->place->base == SystemProfile::Base::config;
}

bool PathValidator::isProtected(std::string_view canonicalPath, const Boundary* boundary) const {
  if (boundary != nullptr &&
      std::ranges::find(boundary->canonicalPaths(), canonicalPath) != boundary->canonicalPaths().end() &&
      isKnownSettingsPlace(canonicalPath))
    return false;
  return isGivenProtected(canonicalPath, boundary) ||
         m_protected.find(canonicalPath).kind != ProtectedLocations::Finding::Kind::none ||
         m_protected.profile().isStoreInUse(std::string(canonicalPath));
}

std::optional<SecurityError::Case> PathValidator::checkReturn(std::string_view canonicalPath) const {
  const Boundary folder({FileUrl(std::string(parentPath(canonicalPath)))});
  if (isKnownSettingsPlace(canonicalPath)) return std::nullopt;
  if (!isGivenProtected(canonicalPath, &folder) && isInside(canonicalPath, folder)) return std::nullopt;
  return SecurityError::ProtectedPath{std::string(canonicalPath)};
}

std::string_view PathValidator::protectedContent(const FileUrl& url) const {
  return m_protected.find(canonicalPath(url.path())).content;
}

bool PathValidator::isRefusedForContent(const FileUrl& url) const {
  const auto path = canonicalPath(url.path());
  return !hasTraversal(url.path()) && !isGivenProtected(path, nullptr) &&
         m_protected.find(path).kind == ProtectedLocations::Finding::Kind::holdsProtected;
}

}  // namespace orvane
