#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Uuid.h"
#include "core/platform/SystemApplications.h"
#include "core/safety/run/CleanupRun.h"
#include "core/uninstaller/records/AppUninstallBundle.h"
#include "core/uninstaller/records/InstalledApp.h"
#include "core/uninstaller/records/UninstallError.h"

#include <mutex>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

class PathValidator;
class TrashMover;
class UndoJournal;
struct BundleInformation;

// The result of an uninstall.
struct UninstallResult {
  Uuid runId;
  // The application first, then the selected leftovers in their order.
  std::vector<MoveOutcome> outcomes;
};

// Lists the installed applications, finds what they leave in the user's Library, and moves both to the Trash.
class AppUninstallerEngine {
 public:
  // `system` must outlive the engine.
  AppUninstallerEngine(const PathValidator& validator, FileUrl homeFolder,
                       const SystemApplications& system = SystemApplications::none());
  static AppUninstallerEngine& shared();

  // The bundles that lie directly in the folders ("/Applications" and the user's own "Applications" when absent, and
  // then the programs that the system installs in ways of its own), by name as the user's language sorts, ignoring
  // case. Passes over missing and unreadable ones. Empty once a stop is requested.
  [[nodiscard]] std::vector<InstalledApp> listInstalledApps(
      const std::optional<std::vector<FileUrl>>& searchDirectories = std::nullopt, const std::stop_token& stop = {});
  // Its two halves: the same without sizes, all 0, and the sizes of what was found, in its order, which take the
  // longest. Empty once a stop is requested.
  [[nodiscard]] std::vector<InstalledApp> findInstalledApps(
      const std::optional<std::vector<FileUrl>>& searchDirectories = std::nullopt, const std::stop_token& stop = {});
  [[nodiscard]] std::vector<std::int64_t> measureApps(std::span<const InstalledApp> apps,
                                                      const std::stop_token& stop = {});
  // One application, wherever it is. Throws UninstallError when there is none.
  [[nodiscard]] InstalledApp appAt(const FileUrl& url);

  // A bundle's leftovers under `libraryRoot` (the user's Library when absent): items named by its identifier,
  // and folders named by its display name where no other application can mean the same name. Other applications are
  // those of `searchDirectories`, as for the list, and of the application's own folder. Of one that is no bundle: what
  // the system names. Nothing is selected.
  [[nodiscard]] AppUninstallBundle findLeftovers(
      const InstalledApp& app, const std::optional<FileUrl>& libraryRoot = std::nullopt,
      const std::optional<std::vector<FileUrl>>& searchDirectories = std::nullopt);

  // Throws UninstallError for a protected application, whatever the caller's record says of it, and for what is no
  // application. uninstall() begins with it.
  void requireUninstallable(const InstalledApp& app);
  // Has a run move the application, which is the first request, and then its leftovers. They stay when it does: they
  // are its data then. Outcomes are in the order of the requests.
  static std::vector<MoveOutcome> moveWithLeftovers(CleanupRun& run, std::span<const MoveRequest> requests,
                                                    const CleanupRun::Progress& progress, const std::stop_token& stop);
  // Why a leftover stays where its application has not moved.
  static constexpr std::string_view leftWithApplication = "Left with its application, which was not moved.";
  // Moves the application and the selected leftovers to the Trash as one run, as moveWithLeftovers() does. Throws
  // UninstallError, having moved nothing, where requireUninstallable() does.
  UninstallResult uninstall(const AppUninstallBundle& bundle, TrashMover& mover, UndoJournal& journal,
                            const std::optional<FileUrl>& libraryRoot = std::nullopt,
                            const CleanupRun::Progress& progress = {}, const std::stop_token& stop = {});

 private:
  using Directories = std::optional<std::vector<FileUrl>>;

  [[nodiscard]] std::vector<FileUrl> directoriesOrDefault(const Directories& directories) const;
  [[nodiscard]] std::vector<InstalledApp> systemApps(const std::stop_token& stop) const;
  // The application there that is no bundle.
  [[nodiscard]] std::optional<InstalledApp> systemAppAt(const FileUrl& url) const;
  [[nodiscard]] AppUninstallBundle systemLeftovers(const InstalledApp& app) const;
  [[nodiscard]] FileUrl libraryOrDefault(const std::optional<FileUrl>& libraryRoot) const;
  // Without the size.
  [[nodiscard]] static InstalledApp inspectAppBundle(const FileUrl& url);
  [[nodiscard]] static bool isAppProtected(std::string_view path, const std::optional<std::string>& bundleIdentifier);
  [[nodiscard]] static std::int64_t calculateSize(const FileUrl& url);
  // Whether the name alone tells whose folder it is.
  [[nodiscard]] bool isOwnName(const InstalledApp& app, const Directories& searchDirectories) const;

  const PathValidator& m_validator;
  FileUrl m_homeFolder;
  const SystemApplications& m_system;
  std::mutex m_mutex;
};

}  // namespace orvane
