#include "core/organizer/CloudProvider.h"

namespace orvane {
namespace {

struct ProviderRow {
  CloudProvider provider;
  std::string_view rawValue;
  std::string_view systemImage;
};

constexpr std::array rows{
    ProviderRow{CloudProvider::iCloud, "iCloud Drive", "icloud.fill"},
    ProviderRow{CloudProvider::dropBox, "Dropbox", "shippingbox.fill"},
    ProviderRow{CloudProvider::googleDrive, "Google Drive", "externaldrive.fill"},
    ProviderRow{CloudProvider::oneDrive, "OneDrive", "cloud.fill"},
};

constexpr bool rowsFollowDeclaration() {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].provider != allCloudProviders[i] || static_cast<std::size_t>(rows[i].provider) != i) return false;
  }
  return rows.size() == allCloudProviders.size();
}
static_assert(rowsFollowDeclaration());

}  // namespace

std::string_view rawValue(CloudProvider provider) noexcept {
  return rows[static_cast<std::size_t>(provider)].rawValue;
}

std::optional<CloudProvider> cloudProviderFromRawValue(std::string_view text) noexcept {
  for (const auto& row : rows) {
    if (row.rawValue == text) return row.provider;
  }
  return std::nullopt;
}

std::string_view systemImage(CloudProvider provider) noexcept {
  return rows[static_cast<std::size_t>(provider)].systemImage;
}

}  // namespace orvane
