#include "core/safety/rules/ProtectedLocations.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathText.h"

#include <algorithm>
#include <array>

namespace orvane {
namespace {

constexpr std::array<std::string_view, 19> systemLocations{
    "/System",
    "/Library",
    "/usr",
    "/bin",
    "/sbin",
    "/private/etc",
    "/private/var/root",
    "/private/var/db",
    "/private/var/log",
    "/private/var/vm",
    "/private/var/run",
    "/etc",
    "/opt",
    "/dev",
    "/Volumes",
    "/System/Applications",
    "/System/Library",
    "/Applications/Utilities",
    "/Applications/Safari.app",
};

constexpr std::array<std::string_view, 13> homeEntries{
    ".ssh",
    ".gnupg",
    ".aws",
    ".zshrc",
    ".bashrc",
    ".bash_profile",
    ".profile",
    ".gitconfig",
    ".config",
    "Library/Keychains",
    "Library/IdentityServices",
    "Library/Mail",
    "Pictures/Photos Library.photoslibrary",
};

constexpr std::array<std::string_view, 3> versionControlNames{".git", ".svn", ".hg"};

}  // namespace

ProtectedLocations::ProtectedLocations(const std::string& homeFolder, const SystemProfile& profile)
    : m_profile(profile), m_trees(systemLocations.begin(), systemLocations.end()) {
  m_places.push_back(standardizedPath(homeFolder));
  if (auto real = canonicalPath(homeFolder); real != m_places.front()) m_places.push_back(std::move(real));
  for (const auto& home : m_places) {
    for (const auto entry : homeEntries) m_trees.push_back(joinPath(home, entry));
  }
  using Base = SystemProfile::Base;
  for (const auto base : {Base::root, Base::home, Base::cache, Base::config, Base::data, Base::state}) {
    const auto folder = profile.baseFolder(base);
    if (folder.empty()) continue;
    addBase(base, folder);
    if (const auto real = canonicalPath(folder); real != folder) addBase(base, real);
  }
  // The rest of the system stays as it is given.
  m_homeIsExempt = !m_bases.empty() && std::none_of(m_trees.begin(), m_trees.end(), [&](const auto& tree) {
    return isAtOrBelow(m_places.back(), tree);
  });
}

void ProtectedLocations::addBase(SystemProfile::Base base, const std::string& folder) {
  ProtectedBase added{folder == "/" ? std::string() : folder, {}};
  for (const auto& place : m_profile.protectedPlaces()) {
    if (place.base != base) continue;
    const auto exceptions = place.except.empty() ? std::vector<PathPattern>() : PathPattern::alternatives(place.except);
    for (auto& pattern : PathPattern::alternatives(place.pattern)) {
      if (base != SystemProfile::Base::root && pattern.isPlain() && !pattern.components().empty()) {
        // A place that a link leads to elsewhere is protected there too, unless that would be the whole home.
        const auto named = joinPath(folder, pattern.text());
        const auto real = canonicalPath(named);
        if (real != named && !isAtOrBelow(m_places.back(), real)) {
          m_bases.push_back({real, {{PathPattern({}), exceptions, &place}}});
        }
      }
      added.rows.push_back({std::move(pattern), exceptions, &place});
    }
  }
  if (!added.rows.empty()) m_bases.push_back(std::move(added));
}

std::span<const std::string> ProtectedLocations::exemptHomes() const noexcept {
  return m_homeIsExempt ? places() : std::span<const std::string>();
}

bool ProtectedLocations::isInExemptHome(std::string_view path) const noexcept {
  return std::ranges::any_of(exemptHomes(), [&](const auto& home) { return isAtOrBelow(path, home); });
}

bool ProtectedLocations::isExempt(const ProtectedBase::Row& row, std::string_view path,
                                  std::string_view relative) const {
  if (row.place->base == SystemProfile::Base::root && isInExemptHome(path)) return true;
  const auto covered = row.pattern.coveredBytes(relative);
  if (covered == relative.size()) return m_profile.isLeftOver(std::string(path));
  const auto inside = relative.substr(covered > 0 ? covered + 1 : 0);
  return std::ranges::any_of(row.exceptions, [&](const auto& exception) {
    const auto fit = exception.fit(inside);
    return fit == PathPattern::Fit::exact || fit == PathPattern::Fit::below;
  });
}

ProtectedLocations::Finding ProtectedLocations::find(std::string_view path) const {
  Finding finding;
  for (const auto& base : m_bases) {
    const auto relative = base.relative(path);
    if (!relative && !base.folder.empty() && isBelow(base.folder, path)) {
      finding = {Finding::Kind::holdsProtected, base.rows.front().place->content};
    }
    if (!relative) continue;
    for (const auto& row : base.rows) {
      const auto fit = row.pattern.fit(*relative);
      if (fit == PathPattern::Fit::above) finding = {Finding::Kind::holdsProtected, row.place->content};
      if (fit != PathPattern::Fit::exact && fit != PathPattern::Fit::below) continue;
      if (!isExempt(row, path, *relative)) return {Finding::Kind::isProtected, row.place->content};
    }
  }
  for (auto rest = path; rest.size() > 1; rest = parentPath(rest)) {
    const auto* store = protectedName(m_profile, lastComponent(rest));
    if (store != nullptr) return {Finding::Kind::isProtected, store->content};
  }
  return finding;
}

std::optional<std::string_view> ProtectedBase::relative(std::string_view path) const noexcept {
  if (path == folder || path == "/") return path == folder || folder.empty() ? std::optional("") : std::nullopt;
  if (!path.starts_with(folder) || path[folder.size()] != '/') return std::nullopt;
  return path.substr(folder.size() + 1);
}

const SystemProfile::ProtectedName* protectedName(const SystemProfile& profile, std::string_view name) noexcept {
  const auto names = profile.protectedNames();
  const auto found = std::ranges::find(names, name, &SystemProfile::ProtectedName::name);
  return found == names.end() ? nullptr : &*found;
}

bool isVersionControlName(std::string_view name) noexcept {
  return std::find(versionControlNames.begin(), versionControlNames.end(), name) != versionControlNames.end();
}

bool isAtOrBelow(std::string_view path, std::string_view folder) noexcept {
  return path == folder || isBelow(path, folder);
}

bool isBelow(std::string_view path, std::string_view folder) noexcept {
  return !folder.empty() && path.size() > folder.size() && path[folder.size()] == '/' && path.starts_with(folder);
}

}  // namespace orvane
