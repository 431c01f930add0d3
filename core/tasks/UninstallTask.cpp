#include "core/tasks/UninstallTask.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FileStatus.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/safety/access/KeepList.h"
#include "core/tasks/KeptRows.h"
#include "core/tasks/TaskServices.h"
#include "core/uninstaller/AppUninstallerEngine.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view libraryFolder = "Library";

template <typename Matches>
std::vector<InstalledApp> appsThat(const std::vector<InstalledApp>& apps, Matches matches) {
  std::vector<InstalledApp> result;
  std::copy_if(apps.begin(), apps.end(), std::back_inserter(result), matches);
  return result;
}

std::optional<ItemIdentity> identityAt(const FileUrl& place) {
  const auto status = readFileStatus(AT_FDCWD, place.path().c_str());
  return status ? std::optional(ItemIdentity::of(*status)) : std::nullopt;
}

FileItem appItem(const InstalledApp& app, const std::optional<ItemIdentity>& identity) {
  FileItem::Fields fields;
  fields.url = app.url;
  fields.fileSize = app.appSize;
  fields.createdDate = ReferenceClock::now();
  fields.category = ScanCategory::appLeftovers;
  fields.riskLabel = RiskLabel::review;
  fields.identity = identity;
  return FileItem(std::move(fields));
}

// The engine finds places; that one item alone may move is settled here.
FileItem withIdentity(const FileItem& leftover) {
  FileItem::Fields fields;
  fields.id = leftover.id();
  fields.url = leftover.url();
  fields.fileSize = leftover.fileSize();
  fields.createdDate = leftover.createdDate();
  fields.category = leftover.category();
  fields.riskLabel = leftover.riskLabel();
  fields.identity = identityAt(leftover.url());
  return FileItem(std::move(fields));
}

// Files that always go with the application: they are of no use without it.
std::vector<FileItem> partsOf(const InstalledApp& app) {
  std::vector<FileItem> result;
  if (!app.system) return result;
  for (const auto& place : app.system->parts) {
    InstalledApp part;
    part.url = FileUrl(place);
    const auto status = readFileStatus(AT_FDCWD, place.c_str());
    if (!status) continue;
    part.appSize = status->size;
    result.push_back(appItem(part, ItemIdentity::of(*status)));
  }
  return result;
}

// Where everything of the application lies.
std::vector<FileUrl> foldersOf(const TaskServices& services, const AppUninstallBundle& bundle) {
  std::vector<FileUrl> result{bundle.app.url.deletingLastPathComponent()};
  if (!bundle.app.system) {
    result.push_back(services.home.appendingPathComponent(libraryFolder));
    return result;
  }
  for (const auto& part : bundle.app.system->parts) result.push_back(FileUrl(part).deletingLastPathComponent());
  for (const auto& leftover : bundle.leftovers) result.push_back(leftover.url().deletingLastPathComponent());
  return result;
}

Json subjectOf(const UninstallOptions& options) {
  Json subject = Json::object();
  subject["app"] = jsonFromUrl(options.app);
  subject["leftovers"] = options.leftovers == Leftovers::take;
  return subject;
}

// `refusal` locks the application where it is not empty.
Proposal propose(const TaskServices& services, const UninstallOptions& options, std::string refusal) {
  const auto identity = identityAt(options.app);
  const auto bundle = bundleAt(services, options.app);
  services.uninstaller.requireUninstallable(bundle.app);

  ProposalBuilder builder(TaskKind::uninstall, Boundary(foldersOf(services, bundle)), options.now);
  builder.setSubject(subjectOf(options));
  if (refusal.empty()) {
    auto places = services.keepList.places();
    refusal = keptReason(places, options.app);
  }
  const bool isRefused = !refusal.empty();
  const auto group = builder.addGroup({.name = bundle.app.name, .refusal = std::move(refusal)});
  builder.add(appItem(bundle.app, identity),
              {isRefused ? Choice::locked : Choice::selected, isRefused ? Lock::refused : Lock::none, group});
  for (const auto& part : partsOf(bundle.app)) builder.add(part, {Choice::selected});
  const auto choice = options.leftovers == Leftovers::take ? Choice::selected : Choice::unselected;
  RowsLeftAside aside;
  KeptRows kept(services);
  for (const auto& leftover : bundle.leftovers) {
    if (kept.hold(leftover)) continue;
    if (choice == Choice::unselected) aside.rows.add(leftover.fileSize());
    builder.add(withIdentity(leftover), {choice});
  }
  if (aside.rows.count > 0) builder.note(aside);
  kept.noteIn(builder);
  return builder.take();
}

bool isInstalled(const TaskServices& services, const FileUrl& app) {
  const auto place = canonicalPath(app.path());
  const auto apps = installedApps(services);
  return std::any_of(apps.begin(), apps.end(),
                     [&](const InstalledApp& known) { return canonicalPath(known.url.path()) == place; });
}

}  // namespace

std::vector<InstalledApp> installedApps(const TaskServices& services, const std::vector<FileUrl>& folders,
                                        const std::stop_token& stop) {
  return services.uninstaller.findInstalledApps(folders.empty() ? std::nullopt : std::optional(folders), stop);
}

bool measureApps(const TaskServices& services, std::span<InstalledApp> apps, const std::stop_token& stop) {
  const auto sizes = services.uninstaller.measureApps(apps, stop);
  for (std::size_t at = 0; at < sizes.size(); ++at) apps[at].appSize = sizes[at];
  return sizes.size() == apps.size();
}

std::vector<InstalledApp> appsMeantBy(const TaskServices& services, const std::string& text) {
  const auto apps = installedApps(services);
  auto found = appsThat(apps, [&](const InstalledApp& app) { return app.bundleIdentifier == text; });
  if (!found.empty()) return found;
  const auto name = lowercased(text);
  return appsThat(apps, [&](const InstalledApp& app) { return lowercased(app.name) == name; });
}

AppUninstallBundle bundleAt(const TaskServices& services, const FileUrl& app) {
  return services.uninstaller.findLeftovers(services.uninstaller.appAt(app));
}

Proposal proposeUninstall(const TaskServices& services, const UninstallOptions& options) {
  return propose(services, options, {});
}

std::optional<Proposal> reproposeUninstall(const TaskServices& services, const Json& subject, const Boundary& boundary,
                                           Date countedTo, const TaskMonitor& /*monitor*/) {
  UninstallOptions options{.app = urlAt(subject, "app"), .now = countedTo};
  if (booleanAt(subject, "leftovers")) options.leftovers = Leftovers::take;
  if (boundary.contains(canonicalPath(options.app.path())) || isInstalled(services, options.app)) {
    return propose(services, options, {});
  }
  return propose(services, options,
                 fmt::format("'{}' lies in no folder of applications and in no granted folder.", options.app.path()));
}

}  // namespace orvane
