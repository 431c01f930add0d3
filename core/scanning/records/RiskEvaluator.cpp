#include "core/scanning/records/RiskEvaluator.h"

#include "core/scanning/records/SensitivePaths.h"

#include <string_view>

namespace orvane {
RiskLabel RiskEvaluator::evaluate(ScanCategory category, const FileUrl& url, std::int64_t /*fileSize*/,
                                  Date createdDate, std::optional<Date> /*lastOpenedDate*/) {
  const std::string_view path = url.path();
  if (containsFragment(path, keychainsFragment) || containsFragment(path, systemPreferenceFragment) ||
      (path.ends_with(propertyListEnding) && containsFragment(path, preferencesFragment))) {
    return RiskLabel::manual;
  }
  return labelByCategory(category, createdDate);
}

RiskLabel RiskEvaluator::labelByCategory(ScanCategory category, Date createdDate) noexcept {
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
  return age >= safeInstallerAgeSeconds ? RiskLabel::safe : RiskLabel::review;
}

}  // namespace orvane
