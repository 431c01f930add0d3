#include "app/common/Places.h"

#include "app/common/Text.h"
#include "core/base/files/PlaceText.h"

namespace orvane {

std::optional<FileUrl> placeFrom(const QString& pathOrUrl) {
  return placeFromPathOrUrl(pathOrUrl.toStdString());
}

QString placeText(const FileUrl& place) {
  return textFrom(pathOrUrl(place));
}

QVariantList folderList(const std::vector<FileUrl>& folders) {
  QVariantList result;
  for (const auto& folder : folders) {
    result.append(QVariantMap{{"name", shownName(folder.lastPathComponent())}, {"path", placeText(folder)}});
  }
  return result;
}

}  // namespace orvane
