#include "core/scanning/RiskEvaluator.h"

namespace orvane {
namespace {

constexpr std::string_view keychainsFragment = "/Keychains/";
constexpr std::string_view preferencesFragment = "/Preferences/";
constexpr std::string_view systemPreferencePrefix = "com.apple.";
constexpr std::string_view systemPreferenceFragment = "/Preferences/com.apple.";
constexpr std::string_view propertyListEnding = ".plist";

bool contains(std::string_view text, std::string_view fragment) noexcept {
  return text.find(fragment) != std::string_view::npos;
}

RiskLabel labelByCategory(ScanCategory category, Date createdDate) noexcept {
  switch (category) {
    case ScanCategory::manualReview:
      return RiskLabel::manual;
    case ScanCategory::developerCaches:
    case ScanCategory::screenshots:
    case ScanCategory::largeFiles:
    case ScanCategory::duplicates:
    case ScanCategory::appLeftovers:
    case ScanCategory::messagingMedia:
      return RiskLabel::review;
    case ScanCategory::caches:
    case ScanCategory::logs:
    case ScanCategory::trash:
    case ScanCategory::browserCaches:
      return RiskLabel::safe;
    case ScanCategory::oldDownloads:
      break;
  }
  const double age = (ReferenceClock::now() - createdDate).count();
  return age >= RiskEvaluator::safeInstallerAgeSeconds ? RiskLabel::safe : RiskLabel::review;
}

}  // namespace

RiskLabel RiskEvaluator::evaluate(ScanCategory category, const FileUrl& url, std::int64_t /*fileSize*/,
                                  Date createdDate, std::optional<Date> /*lastOpenedDate*/) {
  const std::string_view path = url.path();
  if (contains(path, keychainsFragment) || contains(path, systemPreferenceFragment) ||
      (path.ends_with(propertyListEnding) && contains(path, preferencesFragment))) {
    return RiskLabel::manual;
  }
  return labelByCategory(category, createdDate);
}

FolderRisk::FolderRisk(std::string_view folderPrefix) noexcept
    : m_isSensitive(contains(folderPrefix, keychainsFragment) || contains(folderPrefix, systemPreferenceFragment)),
      m_inPreferences(contains(folderPrefix, preferencesFragment)),
      m_isPreferences(folderPrefix.ends_with(preferencesFragment)) {}

RiskLabel FolderRisk::evaluate(ScanCategory category, std::string_view name, Date createdDate) const noexcept {
  if (m_isSensitive || (m_isPreferences && name.starts_with(systemPreferencePrefix)) ||
      (m_inPreferences && name.ends_with(propertyListEnding))) {
    return RiskLabel::manual;
  }
  return labelByCategory(category, createdDate);
}

}  // namespace orvane
