#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orvane {

// The file or folder that a place in the user's Library keeps for an application.
enum class LeftoverKind : std::uint8_t {
  folder,           // named by the bundle identifier
  preferencesFile,  // the bundle identifier + ".plist"
  savedState,       // the bundle identifier + ".savedState"
};

struct LeftoverLocation {
  std::string_view subfolder;
  LeftoverKind kind;
};

// In the order in which leftovers are looked for.
[[nodiscard]] std::span<const LeftoverLocation> leftoverLocations() noexcept;
[[nodiscard]] std::string leftoverName(LeftoverKind kind, std::string_view identifier);

// Whether an application's own text may name something inside a folder, and nothing else: one component, no dots that
// climb.
[[nodiscard]] bool isSafeLeftoverName(std::string_view name) noexcept;
// Whether several applications keep their files in a folder of this name, which is that of a vendor or of the system.
// In any case of letters.
[[nodiscard]] bool isSharedFolderName(std::string_view name);

// Whether a folder may be taken for an application's because it has the application's display name.
[[nodiscard]] bool isTellingDisplayName(std::string_view name);

}  // namespace orvane
