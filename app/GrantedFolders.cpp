#include "app/GrantedFolders.h"

#include "app/Text.h"
#include "core/base/CanonicalPath.h"
#include "core/base/DirectoryReader.h"
#include "core/safety/Boundary.h"
#include "core/safety/FileAccessService.h"
#include "core/safety/ManagedFolderType.h"
#include "core/safety/PathValidator.h"

#include <fcntl.h>

#include <algorithm>
#include <exception>
#include <set>
#include <string>

namespace orvane {
namespace {

bool canBeListed(const FileUrl& folder) {
  return DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow).has_value();
}

// That of the kind of folder; of another one, a folder's.
QString symbolOf(const FileUrl& folder, const FileUrl& home) {
  for (const auto type : allManagedFolderTypes) {
    if (defaultURL(type, home.path()).path() == folder.path()) return textFrom(systemImage(type));
  }
  return QStringLiteral("folder");
}

}  // namespace

FileUrl GrantedFolders::placeFrom(const QString& text) {
  const auto utf8 = text.toStdString();
  if (utf8.starts_with('/')) return FileUrl(utf8);
  return FileUrl::fromAbsoluteString(utf8).value_or(FileUrl());
}

QVariantMap GrantedFolders::row(const FileUrl& folder, const FileUrl& home) {
  return {
      {"name", shownName(folder.lastPathComponent())},
      {"path", shownPath(folder.path(), home)},
      {"url", textFrom(folder.absoluteString())},
  };
}

QVariantList GrantedFolders::rows() const {
  auto folders = m_service.getManagedFolderURLs();
  std::ranges::sort(folders);
  QVariantList result;
  for (const auto& folder : folders) {
    auto shown = row(folder, m_home);
    shown.insert("symbol", symbolOf(folder, m_home));
    shown.insert("exists", canBeListed(folder));
    shown.insert("canRemove", folders.size() > 1);
    result.append(shown);
  }
  return result;
}

void GrantedFolders::keepDefaults() const {
  if (m_service.hasGrants()) return;
  for (const auto& folder : m_service.getManagedFolderURLs()) m_service.saveBookmark(folder);
}

QString GrantedFolders::add(const QString& url) const {
  const auto folder = placeFrom(url);
  try {
    m_validator.validate(folder, fixedRulesOnly);
    keepDefaults();
    m_service.saveBookmark(folder);
  } catch (const std::exception& error) {
    return shownName(error.what());
  }
  return {};
}

QString GrantedFolders::remove(const QString& url) const {
  const auto folder = placeFrom(url);
  try {
    // By where they lead: two names may mean one folder.
    std::set<std::string> left;
    for (const auto& granted : m_service.getManagedFolderURLs()) left.insert(canonicalPath(granted.path()));
    left.erase(canonicalPath(folder.path()));
    if (left.empty()) return localizedText("settings.last_folder");
    keepDefaults();
    m_service.removeManagedFolder(folder);
  } catch (const std::exception& error) {
    return shownName(error.what());
  }
  return {};
}

}  // namespace orvane
