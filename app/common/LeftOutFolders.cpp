#include "app/common/LeftOutFolders.h"

#include "app/common/Text.h"
#include "core/base/files/FileUrl.h"

#include <QString>

#include <variant>

namespace orvane {
namespace {

QString textOf(const FolderLeftOut& leftOut, const FileUrl& home) {
  const auto folder = shownPath(leftOut.folder.path(), home);
  switch (leftOut.why) {
    case FolderLeftOut::Why::missing:
      return QStringLiteral("%1: %2").arg(folder, textFrom(leftOut.detail));
    case FolderLeftOut::Why::refused:
      return shownName(leftOut.detail);
    case FolderLeftOut::Why::notGranted:
    case FolderLeftOut::Why::listedOnly:
      break;
  }
  return localizedText("agent.folder_not_granted").arg(folder);
}

}  // namespace

QStringList leftOutFolders(const Notices& notices, const FileUrl& home) {
  QStringList result;
  for (const auto& notice : notices) {
    if (const auto* leftOut = std::get_if<FolderLeftOut>(&notice)) result += textOf(*leftOut, home);
  }
  return result;
}

}  // namespace orvane
