#include "core/organizer/categories/ClassifierTables.h"

#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"

#include <algorithm>
#include <string>

namespace orvane {
namespace {

struct ExtensionRow {
  std::string_view extension;
  ExtensionKind kind;
};

constexpr std::array extensionRows{
    ExtensionRow{"log", ExtensionKind::log},
    ExtensionRow{"dmg", ExtensionKind::installer},
    ExtensionRow{"pkg", ExtensionKind::installer},
    ExtensionRow{"iso", ExtensionKind::installer},
    ExtensionRow{"zip", ExtensionKind::archive},
    ExtensionRow{"tar", ExtensionKind::archive},
    ExtensionRow{"gz", ExtensionKind::archive},
    ExtensionRow{"tgz", ExtensionKind::archive},
    ExtensionRow{"bz2", ExtensionKind::archive},
    ExtensionRow{"xz", ExtensionKind::archive},
    ExtensionRow{"7z", ExtensionKind::archive},
    ExtensionRow{"rar", ExtensionKind::archive},
    ExtensionRow{"appinstaller", ExtensionKind::installer},
};
constexpr std::size_t maxExtensionBytes = 12;

constexpr std::array<std::string_view, 11> screenshotPrefixes{
    "Screen Shot", "Screenshot",          "Capture d’écran", "Bildschirmfoto", "スクリーンショット", "스크린샷", "截屏",
    "螢幕截圖",    "Captura de pantalla", "CleanShot",       "Shot_",
};

constexpr std::array<bool, 256> firstBytesOfScreenshots() {
  std::array<bool, 256> result{};
  for (const auto prefix : screenshotPrefixes) result[static_cast<unsigned char>(prefix.front())] = true;
  return result;
}
constexpr auto startsScreenshotPrefix = firstBytesOfScreenshots();

ExtensionKind kindOfLowerCase(std::string_view extension) noexcept {
  for (const auto& row : extensionRows) {
    // The first letter alone settles most rows, without a call.
    if (row.extension.front() == extension.front() && row.extension == extension) return row.kind;
  }
  return ExtensionKind::other;
}

}  // namespace

ExtensionKind extensionKind(std::string_view extension) {
  std::array<char, maxExtensionBytes> lower{};
  if (extension.empty()) return ExtensionKind::other;
  for (std::size_t i = 0; i < extension.size(); ++i) {
    const char c = extension[i];
    // Some letters outside ASCII have a lower case inside it.
    if (static_cast<unsigned char>(c) >= 0x80) return kindOfLowerCase(lowercased(extension));
    if (i < lower.size()) lower[i] = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  if (extension.size() > lower.size()) return ExtensionKind::other;
  return kindOfLowerCase({lower.data(), extension.size()});
}

bool hasScreenshotPrefix(std::string_view name) noexcept {
  if (name.empty() || !startsScreenshotPrefix[static_cast<unsigned char>(name.front())]) return false;
  return std::any_of(screenshotPrefixes.begin(), screenshotPrefixes.end(),
                     [&](std::string_view prefix) { return name.starts_with(prefix); });
}

NameRule nameRuleOf(std::string_view name, std::int64_t fileSize, const FolderFacts& facts) {
  const auto kind = extensionKind(splitName(name).extension);
  if (facts.inLogs) return NameRule::logsFolder;
  if (kind == ExtensionKind::log) return NameRule::logExtension;
  if (facts.inCaches) return NameRule::cachesFolder;
  if (hasScreenshotPrefix(name)) return NameRule::screenshotName;
  if (kind == ExtensionKind::installer) return NameRule::installerExtension;
  if (kind == ExtensionKind::archive && facts.inDownloads) return NameRule::archiveInDownloads;
  if (facts.inLeftovers) return NameRule::leftoversFolder;
  return fileSize >= largeFileBytes ? NameRule::largeFile : NameRule::none;
}

ScanCategory categoryByName(std::string_view name, std::int64_t fileSize, const FolderFacts& facts) {
  return nameRules[static_cast<std::size_t>(nameRuleOf(name, fileSize, facts))].category;
}

}  // namespace orvane
