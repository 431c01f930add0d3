#include "core/organizer/records/CloudFolderDetector.h"

#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"

#include <fmt/format.h>

#include <array>

namespace orvane {
namespace {

enum class Match : std::uint8_t { anywhere, atHome };

struct DetectionRow {
  CloudProvider provider;
  Match match;
  std::string_view text;
};

// The first row that matches decides. The text after the home folder has no slash at its end: "/Dropbox Old" counts
// too.
constexpr std::array rows{
    DetectionRow{CloudProvider::iCloud, Match::anywhere, "Library/Mobile Documents/com~apple~CloudDocs"},
    DetectionRow{CloudProvider::iCloud, Match::anywhere, "Mobile Documents"},
    DetectionRow{CloudProvider::dropBox, Match::atHome, "/Dropbox"},
    DetectionRow{CloudProvider::dropBox, Match::anywhere, "/Dropbox/"},
    DetectionRow{CloudProvider::googleDrive, Match::atHome, "/Google Drive"},
    DetectionRow{CloudProvider::googleDrive, Match::anywhere, "/Google Drive/"},
    DetectionRow{CloudProvider::googleDrive, Match::anywhere, "GoogleDrive"},
    DetectionRow{CloudProvider::oneDrive, Match::atHome, "/OneDrive"},
    DetectionRow{CloudProvider::oneDrive, Match::anywhere, "/OneDrive/"},
};

bool matches(const DetectionRow& row, std::string_view path, std::string_view homeFolder) noexcept {
  if (row.match == Match::anywhere) return path.find(row.text) != std::string_view::npos;
  return path.starts_with(homeFolder) && path.substr(homeFolder.size()).starts_with(row.text);
}

}  // namespace

std::optional<CloudProvider> CloudFolderDetector::detectProvider(const FileUrl& url) {
  return detectProvider(url, homeFolder());
}

std::optional<CloudProvider> CloudFolderDetector::detectProvider(const FileUrl& url, std::string_view homeFolder) {
  for (const auto& row : rows) {
    if (matches(row, url.path(), homeFolder)) return row.provider;
  }
  return std::nullopt;
}

std::optional<std::string> CloudFolderDetector::syncWarning(const FileUrl& url) {
  return syncWarning(url, homeFolder());
}

std::optional<std::string> CloudFolderDetector::syncWarning(const FileUrl& url, std::string_view homeFolder) {
  const auto provider = detectProvider(url, homeFolder);
  if (!provider) return std::nullopt;
  return fmt::format(
      "Warning: '{}' is synced via {}. Deleting it will also remove it from your other connected devices.",
      url.lastPathComponent(), rawValue(*provider));
}

bool CloudFolderDetector::isDatalessCloudPlaceholder(const FileUrl& url) noexcept {
  return isPlaceholderName(url.lastPathComponent());
}

bool CloudFolderDetector::isPlaceholderName(std::string_view name) noexcept {
  return name.starts_with('.') && splitName(name).extension == "icloud";
}

}  // namespace orvane
