#include "app/Places.h"

#include "app/Text.h"
#include "core/base/DirectoryReader.h"
#include "core/base/UnicodeText.h"
#include "core/safety/FileAccessService.h"

#include <fcntl.h>

namespace orvane {

std::vector<FileUrl> existingFolders(FileAccessService& access) {
  auto folders = access.getManagedFolderURLs();
  std::erase_if(folders, [](const FileUrl& folder) {
    return !DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow);
  });
  return folders;
}

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
