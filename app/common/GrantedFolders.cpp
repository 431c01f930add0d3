#include "app/common/GrantedFolders.h"

#include "app/common/Places.h"
#include "app/common/Text.h"
#include "core/base/files/FileStatus.h"
#include "core/safety/records/ManagedFolderType.h"
#include "core/tasks/Folders.h"

#include <algorithm>
#include <exception>
#include <vector>

namespace orvane {
namespace {

// That of the kind of folder; of another one, a folder's.
QString symbolOf(const FileUrl& folder, const FileUrl& home) {
  for (const auto type : allManagedFolderTypes) {
    if (defaultURL(type, home.path()).path() == folder.path()) return textFrom(systemImage(type));
  }
  return QStringLiteral("folder");
}

}  // namespace

QVariantMap GrantedFolders::row(const FileUrl& folder, const FileUrl& home) {
  return {
      {"name", shownName(folder.lastPathComponent())},
      {"path", shownPath(folder.path(), home)},
      {"url", textFrom(folder.absoluteString())},
  };
}

QVariantList GrantedFolders::rows() const {
  auto folders = listedGrants(m_services);
  std::ranges::sort(folders);
  QVariantList result;
  for (const auto& folder : folders) {
    auto shown = row(folder, m_services.home);
    const auto problem = problemWith(m_services, folder);
    shown.insert("symbol", symbolOf(folder, m_services.home));
    shown.insert("exists", itemExists(folder.path().c_str()));
    shown.insert("canBeRead", !problem || problem->why != FolderLeftOut::Why::missing);
    shown.insert("canRemove", folders.size() > 1);
    const auto holder = grantHolding(m_services, folder);
    shown.insert("coveredBy", holder ? shownPath(holder->path(), m_services.home) : QString());
    result.append(shown);
  }
  return result;
}

QVariantList GrantedFolders::suggestions() const {
  QVariantList result;
  for (const auto& folder : suggestedFolders(m_services)) result.append(row(folder, m_services.home));
  return result;
}

QString GrantedFolders::add(const QString& url) const {
  try {
    const auto problem = grantFolders(m_services, std::vector{placeFrom(url).value_or(FileUrl())});
    return problem ? shownName(problem->detail) : QString();
  } catch (const std::exception& error) {
    return shownName(error.what());
  }
}

QString GrantedFolders::remove(const QString& url) const {
  try {
    const auto removal = removeGrants(m_services, std::vector{placeFrom(url).value_or(FileUrl())});
    return removal.wouldLeaveNone ? localizedText("settings.last_folder") : QString();
  } catch (const std::exception& error) {
    return shownName(error.what());
  }
}

}  // namespace orvane
