#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// A service that keeps a folder in sync with other devices.
enum class CloudProvider : std::uint8_t { iCloud, dropBox, googleDrive, oneDrive };

inline constexpr std::array allCloudProviders{CloudProvider::iCloud, CloudProvider::dropBox, CloudProvider::googleDrive,
                                              CloudProvider::oneDrive};

// The service's display name; also the identity.
[[nodiscard]] std::string_view rawValue(CloudProvider provider) noexcept;
[[nodiscard]] std::optional<CloudProvider> cloudProviderFromRawValue(std::string_view text) noexcept;
// Name of a symbol image, kept as an opaque text.
[[nodiscard]] std::string_view systemImage(CloudProvider provider) noexcept;

}  // namespace orvane
