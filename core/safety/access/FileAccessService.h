#pragma once

#include "core/base/files/FileUrl.h"
#include "core/platform/FolderGrants.h"

#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {

class Preferences;

// The folders that the user has granted, kept across starts as bookmarks and shared by all processes: what is stored is
// read again by each operation. Callable from any thread.
class FileAccessService {
 public:
  // An object from canonical folder path to bookmark. A path that is not UTF-8 is kept as its URL.
  static constexpr std::string_view bookmarkStorageKey = "OrvaneSecurityScopedBookmarks";

  // Whether the known places of programs count as granted; true where nothing is stored.
  static constexpr std::string_view knownPlacesKey = "OrvaneKnownPlaces";

  FileAccessService(Preferences& preferences, FolderGrants& grants, std::string homeFolder);
  static FileAccessService& shared();

  // Grants a folder, links resolved. Throws std::runtime_error, with nothing stored, when the system refuses.
  void saveBookmark(const FileUrl& url);
  // The granted folders, in no order that callers may rely on; where none was ever granted, the folders managed by
  // default that exist. A bookmark that no longer leads anywhere counts as its folder's path.
  [[nodiscard]] std::vector<FileUrl> getManagedFolderURLs();
  // Whether any folder was granted, so that those managed by default no longer count.
  [[nodiscard]] bool hasGrants();
  // The caches and logs of programs, wherever the system keeps them: a grant of its own.
  [[nodiscard]] bool areKnownPlacesGranted() const;
  // Throws std::system_error.
  void grantKnownPlaces(bool granted);
  // Takes a grant back, links resolved. One that was never given changes nothing. Throws std::system_error.
  void removeManagedFolder(const FileUrl& url);

  // Runs an operation with access to a folder and returns what it returns.
  template <typename Operation>
  auto withSecurityScope(const FileUrl& url, Operation&& operation) {
    const Scope scope(m_grants, url);
    return std::forward<Operation>(operation)();
  }

 private:
  using Bookmarks = std::map<std::string, std::string>;

  class Scope {
   public:
    Scope(FolderGrants& grants, const FileUrl& url)
        : m_grants(grants), m_url(url), m_isStarted(grants.startAccess(url)) {}
    ~Scope() {
      if (m_isStarted) m_grants.stopAccess(m_url);
    }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    FolderGrants& m_grants;
    const FileUrl& m_url;
    bool m_isStarted;
  };

  [[nodiscard]] Bookmarks load() const;
  // Changes what is stored now, whatever another process put there.
  template <typename Change>
  void change(Change change);
  [[nodiscard]] std::vector<FileUrl> defaultFolders() const;

  Preferences& m_preferences;
  FolderGrants& m_grants;
  std::string m_homeFolder;
  std::mutex m_mutex;
  Bookmarks m_activeBookmarks;
  std::map<std::string, FileUrl> m_resolvedURLs;
};

}  // namespace orvane
