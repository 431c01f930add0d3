#include "core/uninstaller/AppUninstallerEngine.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "core/safety/rules/PathValidator.h"
#include "core/uninstaller/ContentSizes.h"
#include "core/uninstaller/LeftoverLocations.h"
#include "core/uninstaller/services/BundleInformation.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <utility>

namespace orvane {
namespace {

// Compared whole, in spite of the name.
constexpr std::array<std::string_view, 9> protectedBundlePrefixes{
    "com.apple.finder",   "com.apple.Safari",      "com.apple.systempreferences",
    "com.apple.AppStore", "com.apple.Terminal",    "com.apple.ActivityMonitor",
    "com.apple.Console",  "com.apple.DiskUtility", "com.apple.keychainaccess",
};
constexpr std::array<std::string_view, 2> protectedBeginnings{"/System/", "/Applications/Utilities"};
constexpr std::array<std::string_view, 3> protectedParts{"Safari.app", "Finder.app", "System Settings.app"};

constexpr std::string_view appExtension = "app";

bool isAppBundle(const FileUrl& url) {
  if (url.pathExtension() != appExtension) return false;
  // A link to a bundle counts as one.
  const auto status = readFileStatus(AT_FDCWD, canonicalPath(url.path()).c_str());
  return status && status->type == FileType::directory;
}

// In an order that does not depend on the file system; each folder once, by whatever names it is given.
std::vector<FileUrl> appBundlesIn(std::span<const FileUrl> directories) {
  std::vector<FileUrl> result;
  std::set<std::string> seen;
  for (const auto& directory : directories) {
    if (!seen.insert(canonicalPath(directory.path())).second) continue;
    auto reader = DirectoryReader::open(AT_FDCWD, directory.path().c_str(), DirectoryReader::Links::follow);
    const auto first = static_cast<std::ptrdiff_t>(result.size());
    while (const auto entry = reader ? reader->next() : std::nullopt) {
      auto url = directory.appendingPathComponent(entry->name);
      if (isAppBundle(url)) result.push_back(std::move(url));
    }
    std::sort(result.begin() + first, result.end());
  }
  return result;
}

struct Candidate {
  FileUrl url;
  enum class Named : std::uint8_t { byIdentifier, byDisplayName } named;
};

std::vector<Candidate> candidatesUnder(const FileUrl& library, const std::optional<std::string>& identifier,
                                       const std::optional<std::string>& displayName) {
  std::vector<Candidate> result;
  for (const auto& location : leftoverLocations()) {
    const auto folder = library.appendingPathComponent(location.subfolder);
    if (identifier) {
      result.push_back(
          {folder.appendingPathComponent(leftoverName(location.kind, *identifier)), Candidate::Named::byIdentifier});
    }
    if (displayName && location.kind == LeftoverKind::folder) {
      result.push_back({folder.appendingPathComponent(*displayName), Candidate::Named::byDisplayName});
    }
  }
  return result;
}

InstalledApp appFrom(SystemApplication found) {
  InstalledApp app;
  app.name = found.name;
  if (!found.identifier.empty()) app.bundleIdentifier = found.identifier;
  if (!found.version.empty()) app.version = found.version;
  app.url = FileUrl(found.place);
  app.appSize = found.bytes.value_or(0);
  if (found.kind == SystemApplication::Kind::appImage) {
    if (const auto status = readFileStatus(AT_FDCWD, found.place.c_str())) app.lastOpenedDate = status->accessed.date();
  }
  app.isSystemProtected = found.isProtected;
  app.system = std::make_shared<const SystemApplication>(std::move(found));
  return app;
}

FileItem leftoverItem(const FileUrl& place, std::int64_t size, Date now) {
  FileItem::Fields fields;
  fields.url = place;
  fields.fileSize = size;
  fields.createdDate = now;
  fields.lastModifiedDate = now;
  fields.category = ScanCategory::appLeftovers;
  fields.riskLabel = RiskLabel::review;
  return FileItem(std::move(fields));
}

// The request to move what stands at a place now.
MoveRequest requestFor(const FileUrl& place, std::int64_t size) {
  MoveRequest request;
  request.source = place;
  request.fileSize = size;
  const auto status = readFileStatus(AT_FDCWD, place.path().c_str());
  // The content of a folder may change at any time.
  if (status && status->type != FileType::directory) request.expectedIdentity = ItemIdentity::of(*status);
  return request;
}

// Of a leftover whose application did not move.
MoveOutcome outcomeOfLeft(const MoveRequest& leftover, MoveResult appResult) {
  MoveOutcome outcome;
  outcome.source = leftover.source;
  outcome.fileSize = leftover.fileSize;
  if (appResult != MoveResult::cancelled) {
    outcome.result = MoveResult::failed;
    outcome.error = AppUninstallerEngine::leftWithApplication;
  }
  return outcome;
}

}  // namespace

AppUninstallerEngine::AppUninstallerEngine(const PathValidator& validator, FileUrl homeFolder,
                                           const SystemApplications& system)
    : m_validator(validator), m_homeFolder(std::move(homeFolder)), m_system(system) {}

std::vector<FileUrl> AppUninstallerEngine::directoriesOrDefault(const Directories& directories) const {
  if (directories) return *directories;
  return {FileUrl("/Applications"), m_homeFolder.appendingPathComponent("Applications")};
}

FileUrl AppUninstallerEngine::libraryOrDefault(const std::optional<FileUrl>& libraryRoot) const {
  return libraryRoot ? *libraryRoot : m_homeFolder.appendingPathComponent("Library");
}

bool AppUninstallerEngine::isAppProtected(std::string_view path, const std::optional<std::string>& bundleIdentifier) {
  const auto begins = [&](std::string_view beginning) { return path.starts_with(beginning); };
  const auto contains = [&](std::string_view part) { return path.find(part) != std::string_view::npos; };
  return std::any_of(protectedBeginnings.begin(), protectedBeginnings.end(), begins) ||
         (bundleIdentifier && std::find(protectedBundlePrefixes.begin(), protectedBundlePrefixes.end(),
                                        *bundleIdentifier) != protectedBundlePrefixes.end()) ||
         std::any_of(protectedParts.begin(), protectedParts.end(), contains);
}

InstalledApp AppUninstallerEngine::inspectAppBundle(const FileUrl& url) {
  auto information = readBundleInformation(url);
  InstalledApp app;
  app.lastOpenedDate = newestExecutableAccess(url, information);
  app.name = std::move(information.displayName);
  app.bundleIdentifier = std::move(information.identifier);
  app.version = std::move(information.version);
  app.url = url;
  // By the path as it is given and by where it leads, so that neither a detour nor a link opens a way.
  app.isSystemProtected = isAppProtected(url.path(), app.bundleIdentifier) ||
                          isAppProtected(standardizedPath(url.path()), {}) ||
                          isAppProtected(canonicalPath(url.path()), {});
  return app;
}

std::int64_t AppUninstallerEngine::calculateSize(const FileUrl& url) {
  return contentSizes({&url, 1}).front();
}

std::vector<InstalledApp> AppUninstallerEngine::listInstalledApps(const Directories& searchDirectories,
                                                                  const std::stop_token& stop) {
  auto apps = findInstalledApps(searchDirectories, stop);
  const auto sizes = measureApps(apps, stop);
  if (stop.stop_requested()) return {};
  for (std::size_t i = 0; i < apps.size(); ++i) apps[i].appSize = sizes[i];
  return apps;
}

std::vector<InstalledApp> AppUninstallerEngine::findInstalledApps(const Directories& searchDirectories,
                                                                  const std::stop_token& stop) {
  const std::lock_guard lock(m_mutex);
  std::vector<InstalledApp> apps;
  for (const auto& bundle : appBundlesIn(directoriesOrDefault(searchDirectories))) {
    if (stop.stop_requested()) return {};
    apps.push_back(inspectAppBundle(bundle));
  }
  if (!searchDirectories) {
    auto others = systemApps(stop);
    std::move(others.begin(), others.end(), std::back_inserter(apps));
  }
  std::stable_sort(apps.begin(), apps.end(), [](const InstalledApp& left, const InstalledApp& right) {
    return compareForDisplay(left.name, right.name) < 0;
  });
  return apps;
}

std::vector<std::int64_t> AppUninstallerEngine::measureApps(std::span<const InstalledApp> apps,
                                                            const std::stop_token& stop) {
  const std::lock_guard lock(m_mutex);
  std::vector<FileUrl> bundles;
  bundles.reserve(apps.size());
  for (const auto& app : apps) bundles.push_back(app.url);
  auto sizes = contentSizes(bundles, stop);
  if (stop.stop_requested()) sizes.clear();
  for (std::size_t at = 0; at < sizes.size(); ++at) {
    // A package lies in many places.
    if (apps[at].system && apps[at].system->bytes) sizes[at] = *apps[at].system->bytes;
  }
  return sizes;
}

InstalledApp AppUninstallerEngine::appAt(const FileUrl& url) {
  const std::lock_guard lock(m_mutex);
  if (!isAppBundle(url)) {
    auto app = systemAppAt(url);
    if (!app) throw UninstallError(UninstallError::NotAnApplication{url});
    if (!app->system->bytes) app->appSize = calculateSize(url);
    return *std::move(app);
  }
  auto app = inspectAppBundle(url);
  app.appSize = calculateSize(url);
  return app;
}

std::vector<InstalledApp> AppUninstallerEngine::systemApps(const std::stop_token& stop) const {
  std::vector<InstalledApp> result;
  for (auto& found : m_system.list(stop)) {
    // A place may look like a bundle of the given rules, which come first.
    if (!isAppBundle(FileUrl(found.place))) result.push_back(appFrom(std::move(found)));
  }
  return result;
}

std::optional<InstalledApp> AppUninstallerEngine::systemAppAt(const FileUrl& url) const {
  const auto place = canonicalPath(url.path());
  for (auto& app : systemApps({})) {
    if (canonicalPath(app.url.path()) == place) return std::move(app);
  }
  return std::nullopt;
}

AppUninstallBundle AppUninstallerEngine::systemLeftovers(const InstalledApp& app) const {
  AppUninstallBundle bundle;
  bundle.app = app;
  const auto now = ReferenceClock::now();
  for (const auto& place : app.system->leftovers) {
    const FileUrl url(place);
    if (isSharedFolderName(url.lastPathComponent()) || !readFileStatus(AT_FDCWD, place.c_str())) continue;
    // Of what Orvane does not remove, nothing moves: it is only told where its files are.
    const bool isTold =
        app.isSystemProtected || m_validator.isPathAllowed(url, Boundary({url.deletingLastPathComponent()}));
    if (isTold) bundle.leftovers.push_back(leftoverItem(url, calculateSize(url), now));
  }
  return bundle;
}

bool AppUninstallerEngine::isOwnName(const InstalledApp& app, const Directories& searchDirectories) const {
  if (app.name == app.bundleIdentifier || !isTellingDisplayName(app.name)) return false;
  auto directories = directoriesOrDefault(searchDirectories);
  directories.push_back(app.url.deletingLastPathComponent());
  const auto own = canonicalPath(app.url.path());
  const auto name = lowercased(app.name);
  const auto isSame = [&](std::string_view other) { return lowercased(other) == name; };
  if (std::any_of(protectedBundlePrefixes.begin(), protectedBundlePrefixes.end(), isSame)) return false;
  for (const auto& bundle : appBundlesIn(directories)) {
    if (canonicalPath(bundle.path()) == own) continue;
    const auto other = readBundleInformation(bundle);
    if (isSame(other.displayName) || (other.identifier && isSame(*other.identifier))) return false;
  }
  return true;
}

AppUninstallBundle AppUninstallerEngine::findLeftovers(const InstalledApp& app,
                                                       const std::optional<FileUrl>& libraryRoot,
                                                       const Directories& searchDirectories) {
  const std::lock_guard lock(m_mutex);
  if (app.system) return systemLeftovers(app);
  const auto library = libraryOrDefault(libraryRoot);
  const Boundary roots({library});
  auto identifier = app.bundleIdentifier;
  if (identifier && (!isSafeLeftoverName(*identifier) || isSharedFolderName(*identifier))) identifier.reset();
  const auto displayName = isOwnName(app, searchDirectories) ? std::optional(app.name) : std::nullopt;

  AppUninstallBundle bundle;
  bundle.app = app;
  const auto now = ReferenceClock::now();
  std::set<std::pair<std::uint64_t, std::uint64_t>> seen;
  for (const auto& candidate : candidatesUnder(library, identifier, displayName)) {
    const auto status = readFileStatus(AT_FDCWD, candidate.url.path().c_str());
    if (!status || !m_validator.isPathAllowed(candidate.url, roots)) continue;
    if (candidate.named == Candidate::Named::byDisplayName && status->type != FileType::directory) continue;
    // Both names can mean one folder where the file system ignores case.
    if (!seen.emplace(status->device, status->inode).second) continue;
    bundle.leftovers.push_back(leftoverItem(candidate.url, calculateSize(candidate.url), now));
  }
  return bundle;
}

void AppUninstallerEngine::requireUninstallable(const InstalledApp& app) {
  const std::lock_guard lock(m_mutex);
  // The caller's record may be old or made up: the bundle on the disk decides too.
  if (!isAppBundle(app.url)) {
    const auto found = systemAppAt(app.url);
    if (!found) throw UninstallError(UninstallError::NotAnApplication{app.url});
    if (!found->isSystemProtected) return;
    const auto& command = found->system->removalCommand;
    if (!command.empty()) throw UninstallError(UninstallError::ManagedApplication{found->name, command});
    throw UninstallError(UninstallError::ProtectedApplication{found->name, app.url});
  }
  if (app.isSystemProtected || isAppProtected(app.url.path(), app.bundleIdentifier) ||
      inspectAppBundle(app.url).isSystemProtected) {
    throw UninstallError(UninstallError::ProtectedApplication{app.name, app.url});
  }
}

std::vector<MoveOutcome> AppUninstallerEngine::moveWithLeftovers(CleanupRun& run, std::span<const MoveRequest> requests,
                                                                 const CleanupRun::Progress& progress,
                                                                 const std::stop_token& stop) {
  const auto progressFrom = [&](std::size_t before) -> CleanupRun::Progress {
    if (!progress) return {};
    return [&, before](std::size_t done, std::size_t) { progress(before + done, requests.size()); };
  };
  auto outcomes = run.carryOut(requests.first(1), progressFrom(0), stop);
  const auto leftovers = requests.subspan(1);
  if (const auto appResult = outcomes.front().result; appResult != MoveResult::moved) {
    for (const auto& leftover : leftovers) outcomes.push_back(outcomeOfLeft(leftover, appResult));
  } else if (!leftovers.empty()) {
    auto rest = run.carryOut(leftovers, progressFrom(1), stop);
    std::move(rest.begin(), rest.end(), std::back_inserter(outcomes));
  }
  return outcomes;
}

UninstallResult AppUninstallerEngine::uninstall(const AppUninstallBundle& bundle, TrashMover& mover,
                                                UndoJournal& journal, const std::optional<FileUrl>& libraryRoot,
                                                const CleanupRun::Progress& progress, const std::stop_token& stop) {
  requireUninstallable(bundle.app);
  // The moves serialise themselves, and they call the caller back: no lock is held here.
  std::vector<MoveRequest> requests{requestFor(bundle.app.url, bundle.app.appSize)};
  for (const auto& item : bundle.leftovers) {
    if (item.isSelected()) requests.push_back(requestFor(item.url(), item.fileSize()));
  }
  CleanupRun run(mover, journal, Boundary({bundle.app.url.deletingLastPathComponent(), libraryOrDefault(libraryRoot)}));
  return {run.id(), moveWithLeftovers(run, requests, progress, stop)};
}

}  // namespace orvane
