#pragma once

#include "core/safety/rules/PathValidator.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The path validator's verdict on the entries of one folder, decided once for the folder, so that an entry costs a look
// at its name. Holds for entries that are no symbolic links: those need PathValidator itself.
class FolderRules {
 public:
  // `path` is how the folder was reached, `canonicalPath` where it really is. The validator and the boundary must
  // outlive this object.
  FolderRules(const PathValidator& validator, std::string_view path, std::string_view canonicalPath,
              const Boundary& boundary);

  // The same answer as PathValidator::isPathAllowed() for the entry `name`, but for what only a look at the entry
  // itself tells, and for exceptions inside of protected places: no walk reaches these.
  [[nodiscard]] bool admits(std::string_view name) const noexcept;
  // Whether nothing at any depth below this folder can be admitted, so that the folder need not be entered.
  [[nodiscard]] bool refusesAllBelow() const noexcept { return m_refusesAllBelow; }

 private:
  void applyProtectedLocations(const ProtectedLocations& locations, std::string_view folder);
  void applyRoots(std::string_view folder, const std::vector<std::string>& roots);
  void applyPrivateSystemFolders(std::string_view folder, const ProtectedLocations& locations);
  void applyProfile(const ProtectedLocations& locations, std::string_view folder);
  // For folders in which nothing is admitted, though a folder below may be worth a walk.
  void admitNothing();

  bool m_refusesAllBelow = false;
  bool m_insideRoot = false;
  // Only entries that are allowed roots themselves may pass.
  bool m_onlyRoots = false;
  std::vector<std::string_view> m_refusedNames;
  std::vector<std::string_view> m_rootNames;
  // With "*", from the profile.
  std::vector<std::string_view> m_refusedPatterns;
  const SystemProfile& m_profile;
};

}  // namespace orvane
