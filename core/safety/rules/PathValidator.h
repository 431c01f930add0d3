#pragma once

#include "core/base/files/FileUrl.h"
#include "core/safety/records/Boundary.h"
#include "core/safety/records/SecurityError.h"
#include "core/safety/rules/ProtectedLocations.h"
#include "core/scanning/records/KnownPlaceTable.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The gate that every listing and every move passes: refuses system locations, the user's identity files, version
// control, tricks with dots, and whatever really lies outside the allowed roots.
class PathValidator {
 public:
  // Tests give a home folder of their own. The profile must outlive this object.
  explicit PathValidator(const std::string& homeFolder, const SystemProfile& profile = SystemProfile::none());
  // For the current user's home folder.
  static PathValidator& shared();

  // Throws SecurityError, the first rule that refuses deciding. A known place in the folder of settings is admitted
  // where the boundary names it itself.
  void validate(const FileUrl& url, const Boundary& boundary) const;
  void validate(const FileUrl& url, FixedRulesOnly only) const;
  // The non-throwing twins: true when the matching validate() does not throw.
  [[nodiscard]] bool isPathAllowed(const FileUrl& url, const Boundary& boundary) const;
  [[nodiscard]] bool isPathAllowed(const FileUrl& url, FixedRulesOnly only) const;

  // The message that validate() would throw; empty when it does not throw.
  [[nodiscard]] std::string refusalText(const FileUrl& url, const Boundary& boundary) const;
  [[nodiscard]] std::string refusalText(const FileUrl& url, FixedRulesOnly only) const;

  // Links resolved, standardised; in the order given. For callers that validate many paths.
  [[nodiscard]] static Boundary canonicalizeRoots(std::span<const FileUrl> roots);

  // The rules from the system locations on, for a path that is canonical already; absent when it may be touched.
  [[nodiscard]] std::optional<SecurityError::Case> checkCanonical(std::string_view canonicalPath,
                                                                  const Boundary& boundary) const;

  // The same for the place at which an item stood that comes back: the system profile does not keep it from its own
  // place, wherever that is.
  [[nodiscard]] std::optional<SecurityError::Case> checkReturn(std::string_view canonicalPath) const;

  // Of the rows of the system profile, what they protect at the place, as the profile has it: "key rings".
  [[nodiscard]] std::string_view protectedContent(const FileUrl& url) const;
  // Whether a place is refused only because of what it could hold: it never moves, and may be walked.
  [[nodiscard]] bool isRefusedForContent(const FileUrl& url) const;

  // Whether the text of a path, before anything is resolved, tries to climb.
  [[nodiscard]] static bool hasTraversal(std::string_view path) noexcept;
  [[nodiscard]] const ProtectedLocations& protectedLocations() const noexcept { return m_protected; }
  [[nodiscard]] const KnownPlaceTable& knownPlaces() const noexcept { return m_knownPlaces; }

 private:
  // `boundary` is null where only the fixed rules are asked.
  [[nodiscard]] std::optional<SecurityError::Case> refusal(const FileUrl& url, const Boundary* boundary) const;
  // By the given rules alone.
  [[nodiscard]] bool isGivenProtected(std::string_view canonicalPath, const Boundary* boundary) const;
  // By the profile too.
  [[nodiscard]] bool isProtected(std::string_view canonicalPath, const Boundary* boundary) const;

  // Of the folder of settings nothing may be touched but the known places in it, each whole.
  [[nodiscard]] bool isKnownSettingsPlace(std::string_view canonicalPath) const noexcept;

  ProtectedLocations m_protected;
  KnownPlaceTable m_knownPlaces;
};

}  // namespace orvane
