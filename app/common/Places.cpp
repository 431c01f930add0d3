#include "app/common/Places.h"

#include "app/common/Text.h"
#include "core/base/text/UnicodeText.h"

namespace orvane {

std::optional<FileUrl> placeFrom(const QString& pathOrUrl) {
  const auto text = pathOrUrl.toStdString();
  if (text.starts_with('/')) return FileUrl(text);
  return FileUrl::fromAbsoluteString(text);
}

QString placeText(const FileUrl& place) {
  return textFrom(isValidUtf8(place.path()) ? place.path() : place.absoluteString());
}

QVariantList folderList(const std::vector<FileUrl>& folders) {
  QVariantList result;
  for (const auto& folder : folders) {
    result.append(QVariantMap{{"name", shownName(folder.lastPathComponent())}, {"path", placeText(folder)}});
  }
  return result;
}

}  // namespace orvane
