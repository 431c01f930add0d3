#pragma once

#include "core/base/values/EnumTable.h"

#include <cstdint>
#include <string_view>

namespace orvane {

// A service that keeps a folder in sync with other devices.
enum class CloudProvider : std::uint8_t { iCloud, dropBox, googleDrive, oneDrive };

struct CloudProviderRow {
  CloudProvider value;
  std::string_view rawValue;     // the service's display name; also the identity
  std::string_view systemImage;  // name of a symbol image, kept as an opaque text
};

inline constexpr EnumTable cloudProviders({
    CloudProviderRow{CloudProvider::iCloud, "iCloud Drive", "icloud.fill"},
    CloudProviderRow{CloudProvider::dropBox, "Dropbox", "shippingbox.fill"},
    CloudProviderRow{CloudProvider::googleDrive, "Google Drive", "externaldrive.fill"},
    CloudProviderRow{CloudProvider::oneDrive, "OneDrive", "cloud.fill"},
});
inline constexpr auto allCloudProviders = cloudProviders.values();

constexpr std::string_view rawValue(CloudProvider provider) noexcept {
  return cloudProviders[provider].rawValue;
}
constexpr std::string_view systemImage(CloudProvider provider) noexcept {
  return cloudProviders[provider].systemImage;
}

}  // namespace orvane
