#include "app/cleanup/CleanupText.h"

#include "app/common/Text.h"
#include "core/localization/ThreadSafeLanguageStore.h"
#include "core/organizer/records/CloudFolderDetector.h"
#include "core/scanning/records/FileItem.h"
#include "core/scanning/records/KeyFiles.h"
#include "core/tasks/CleanTask.h"
#include "core/tasks/KnownPlaces.h"

#include <string>

namespace orvane {
namespace {

bool isRecentInstaller(const FileItem& item) {
  return item.category() == ScanCategory::oldDownloads && item.riskLabel() == RiskLabel::review;
}

}  // namespace

QString reasonText(const TaskServices& services, const FileItem& item) {
  const auto place = knownPlaceReason(services, item, ThreadSafeLanguageStore::shared().currentLanguage());
  if (!place.empty()) return textFrom(place);
  if (item.riskLabel() == RiskLabel::manual && item.category() != ScanCategory::manualReview) {
    return localizedText("reason.protected");
  }
  if (isRecentInstaller(item)) return localizedText("reason.recent");
  return localizedText("reason." + std::string(rawValue(item.category())));
}

QString labelText(const FileItem& item) {
  const bool isUnknown = item.riskLabel() == RiskLabel::manual && item.category() == ScanCategory::manualReview;
  if (isUnknown) return localizedText(looksLikeKey(item.url()) ? "cleanup.manual_key" : "cleanup.manual_plain");
  return localizedText("risk." + std::string(rawValue(item.riskLabel())) + ".desc");
}

QString lockText(const FileItem& item) {
  switch (scannedMark(item).lock) {
    case Lock::manualLabel:
      return labelText(item);
    case Lock::inTrash:
      return localizedText("cleanup.locked_in_trash");
    default:
      return {};
  }
}

QString cloudText(const FileItem& item, const FileUrl& home) {
  if (item.isCloudPlaceholder()) return localizedText("cleanup.cloud_only");
  const auto provider = CloudFolderDetector::detectProvider(item.url(), home.path());
  return provider ? localizedText("cleanup.cloud_warning").arg(textFrom(rawValue(*provider))) : QString();
}

}  // namespace orvane
