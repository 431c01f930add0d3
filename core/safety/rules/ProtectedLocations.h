#pragma once

#include "core/base/files/PathPattern.h"
#include "core/platform/SystemProfile.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The protected places of a system profile that begin at one folder.
struct ProtectedBase {
  struct Row {
    PathPattern pattern;
    std::vector<PathPattern> exceptions;
    const SystemProfile::ProtectedPlace* place;
  };
  std::string folder;  // canonical, without a slash at its end: empty for the root
  std::vector<Row> rows;

  // The path from here; absent where the path lies elsewhere.
  [[nodiscard]] std::optional<std::string_view> relative(std::string_view path) const noexcept;
};

// The places that no operation may list or touch, whatever the user allows: parts of the system, the files of the home
// folder that make up the user's identity, and what the system profile adds. All paths are canonical.
class ProtectedLocations {
 public:
  // The home folder counts as given and, where a link leads to it, also where it really is; so do the profile's folders
  // and each of its places that has a name without "*". The profile must outlive this object.
  explicit ProtectedLocations(const std::string& homeFolder, const SystemProfile& profile = SystemProfile::none());

  // Refused together with everything inside.
  [[nodiscard]] std::span<const std::string> trees() const noexcept { return m_trees; }
  // Refused as such; what they hold is not.
  [[nodiscard]] std::span<const std::string> places() const noexcept { return m_places; }

  // Of the profile, asked after trees() and places().
  [[nodiscard]] std::span<const ProtectedBase> bases() const noexcept { return m_bases; }
  [[nodiscard]] const SystemProfile& profile() const noexcept { return m_profile; }
  // The home folder where the profile exempts it from the rows of the system, in each of its paths.
  [[nodiscard]] std::span<const std::string> exemptHomes() const noexcept;
  [[nodiscard]] bool isInExemptHome(std::string_view path) const noexcept;
  // Whether a path that the row fits, or that lies below what it fits, may be touched all the same.
  [[nodiscard]] bool isExempt(const ProtectedBase::Row& row, std::string_view path, std::string_view relative) const;

  // The protection of a path by the profile: it lies in a protected place, or could hold one.
  struct Finding {
    enum class Kind : std::uint8_t { none, isProtected, holdsProtected };
    Kind kind = Kind::none;
    std::string_view content = {};  // of the place that is protected, as the profile has it
  };
  [[nodiscard]] Finding find(std::string_view path) const;

 private:
  void addBase(SystemProfile::Base base, const std::string& folder);

  const SystemProfile& m_profile;
  std::vector<std::string> m_trees;
  std::vector<std::string> m_places;
  std::vector<ProtectedBase> m_bases;
  bool m_homeIsExempt = false;
};

// Folders that are refused but for the temporary folders of single users inside them.
inline constexpr std::string_view privateSystemFolders[] = {"/private", "/var"};
// The exceptions inside those, admitted where an allowed root covers them.
inline constexpr std::string_view userTemporaryFolders[] = {"/private/var/folders", "/var/folders"};

[[nodiscard]] bool isVersionControlName(std::string_view name) noexcept;
// The profile's row for a name that is protected wherever it stands; null where there is none.
[[nodiscard]] const SystemProfile::ProtectedName* protectedName(const SystemProfile& profile,
                                                                std::string_view name) noexcept;

// Whether the path is `folder` or starts with `folder` and a slash. By this text rule "/" contains nothing but itself:
// the whole file system is never an allowed root.
[[nodiscard]] bool isAtOrBelow(std::string_view path, std::string_view folder) noexcept;
// Whether the path starts with `folder` and a slash.
[[nodiscard]] bool isBelow(std::string_view path, std::string_view folder) noexcept;

}  // namespace orvane
