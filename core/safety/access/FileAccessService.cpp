#include "core/safety/access/FileAccessService.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/PlaceText.h"
#include "core/platform/StoredValue.h"
#include "core/safety/records/ManagedFolderType.h"

#include <fcntl.h>

namespace orvane {
namespace {

using Bookmarks = std::map<std::string, std::string>;

std::string keyOf(const std::string& path) {
  return pathOrUrl(FileUrl(path));
}

FileUrl folderOf(const std::string& key) {
  return placeFromPathOrUrl(key).value_or(FileUrl(key));
}

// A damaged bookmark is kept as one that leads nowhere, so that its folder's path counts.
Bookmarks bookmarksFrom(const Json* stored) {
  Bookmarks result;
  if (stored == nullptr || !stored->is_object()) return result;
  for (const auto& [path, bookmark] : stored->items()) {
    result.emplace(path, bookmark.is_string() ? bookmark.get<std::string>() : std::string());
  }
  return result;
}

}  // namespace

FileAccessService::FileAccessService(Preferences& preferences, FolderGrants& grants, std::string homeFolder)
    : m_preferences(preferences), m_grants(grants), m_homeFolder(std::move(homeFolder)) {}

Bookmarks FileAccessService::load() const {
  return storedValue(m_preferences, bookmarkStorageKey, bookmarksFrom);
}

template <typename Change>
void FileAccessService::change(Change change) {
  m_activeBookmarks = changeStoredValue(m_preferences, bookmarkStorageKey, change, bookmarksFrom);
}

void FileAccessService::saveBookmark(const FileUrl& url) {
  const std::lock_guard lock(m_mutex);
  const FileUrl folder(canonicalPath(url.path()));
  const auto bookmark = m_grants.makeBookmark(folder);
  const auto key = keyOf(folder.path());
  change([&](Bookmarks& bookmarks) { bookmarks[key] = bookmark; });
  m_resolvedURLs.insert_or_assign(key, folder);
}

std::vector<FileUrl> FileAccessService::getManagedFolderURLs() {
  const std::lock_guard lock(m_mutex);
  m_activeBookmarks = load();
  if (m_activeBookmarks.empty()) return defaultFolders();
  std::vector<FileUrl> result;
  Bookmarks refreshed;
  for (const auto& [key, bookmark] : m_activeBookmarks) {
    auto resolved = m_grants.resolve(bookmark).value_or(FolderGrants::Resolved{folderOf(key), false});
    if (resolved.isStale) {
      try {
        refreshed.emplace(key, m_grants.makeBookmark(resolved.folder));
      } catch (const std::runtime_error&) {
        // The old one works as long as it does.
      }
    }
    m_resolvedURLs.insert_or_assign(key, resolved.folder);
    result.push_back(std::move(resolved.folder));
  }
  if (!refreshed.empty()) {
    change([&](Bookmarks& bookmarks) {
      for (const auto& [key, bookmark] : refreshed) {
        if (const auto found = bookmarks.find(key); found != bookmarks.end()) found->second = bookmark;
      }
    });
  }
  return result;
}

bool FileAccessService::hasGrants() {
  const std::lock_guard lock(m_mutex);
  m_activeBookmarks = load();
  return !m_activeBookmarks.empty();
}

bool FileAccessService::areKnownPlacesGranted() const {
  return storedValue<bool>(m_preferences, knownPlacesKey,
                           [](const Json* stored) { return stored == nullptr || *stored != Json(false); });
}

void FileAccessService::grantKnownPlaces(bool granted) {
  m_preferences.setValue(knownPlacesKey, granted);
}

void FileAccessService::removeManagedFolder(const FileUrl& url) {
  const std::lock_guard lock(m_mutex);
  const auto key = keyOf(canonicalPath(url.path()));
  change([&](Bookmarks& bookmarks) { bookmarks.erase(key); });
  m_resolvedURLs.erase(key);
}

std::vector<FileUrl> FileAccessService::defaultFolders() const {
  std::vector<FileUrl> result;
  for (const auto type : allManagedFolderTypes) {
    auto folder = defaultURL(type, m_homeFolder);
    if (DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow)) {
      result.push_back(std::move(folder));
    }
  }
  return result;
}

}  // namespace orvane
