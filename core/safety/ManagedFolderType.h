#pragma once

#include "core/base/FileUrl.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// The user's folders that are managed unless the user chooses others.
enum class ManagedFolderType : std::uint8_t { downloads, documents, desktop, pictures, caches };

inline constexpr std::array allManagedFolderTypes{ManagedFolderType::downloads, ManagedFolderType::documents,
                                                  ManagedFolderType::desktop, ManagedFolderType::pictures,
                                                  ManagedFolderType::caches};

// The case name; also the identity.
[[nodiscard]] std::string_view rawValue(ManagedFolderType type) noexcept;
[[nodiscard]] std::optional<ManagedFolderType> managedFolderTypeFromRawValue(std::string_view text) noexcept;
// English title.
[[nodiscard]] std::string_view title(ManagedFolderType type) noexcept;
// Name of a symbol image, kept as an opaque text.
[[nodiscard]] std::string_view systemImage(ManagedFolderType type) noexcept;
[[nodiscard]] FileUrl defaultURL(ManagedFolderType type, const std::string& homeFolder);

}  // namespace orvane
