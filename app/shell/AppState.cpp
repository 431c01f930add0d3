#include "app/shell/AppState.h"

#include "app/common/GrantedFolders.h"
#include "app/common/NoticeTexts.h"
#include "app/common/Places.h"
#include "app/common/Text.h"
#include "core/base/files/PathAccess.h"
#include "core/base/text/Json.h"
#include "core/platform/Desktop.h"
#include "core/platform/Preferences.h"
#include "core/platform/Volume.h"
#include "core/safety/services/PermissionsManager.h"
#include "core/tasks/LargestFolders.h"

#include <QClipboard>
#include <QDebug>
#include <QGuiApplication>

#include <algorithm>
#include <exception>
#include <utility>

namespace orvane {
namespace {

// How often the disk's figures are read while the program is idle.
constexpr std::chrono::seconds refreshInterval{30};

bool flagFrom(const std::optional<Json>& value) {
  return value && value->is_boolean() && value->get<bool>();
}

}  // namespace

AppState::AppState(WindowServices services, QObject* parent) : QObject(parent), m_services(std::move(services)) {
  m_hasCompletedOnboarding = flagFrom(m_services.preferences.value(onboardingKey));
  m_knowsTray = flagFrom(m_services.preferences.value(trayKey));
  connect(&m_scannedItems, &ScannedItems::presenceChanged, this, [this] {
    recalculateStorageSummary(m_scannedItems.bytes());
    refresh();
  });
  connect(&m_refreshTimer, &QTimer::timeout, this, &AppState::refresh);
  m_refreshTimer.start(refreshInterval);
  refresh();
}

AppState::~AppState() {
  m_scanStop.request_stop();
}

void AppState::setSelectedNavigation(int section) {
  if (section < 0 || section >= static_cast<int>(navigationRows.size()) || section == selectedNavigation()) return;
  m_selectedNavigation = static_cast<AppNavigationItem>(section);
  Q_EMIT navigationChanged();
}

QString AppState::scanStatus() const {
  if (!m_isScanning) return {};
  if (m_examined == 0) return localizedText("cleanup.scan_initializing");
  return countedText("cleanup.scan_progress", m_examined).arg(m_currentPlace);
}

QString AppState::scanFailed() const {
  return m_hasNoFolders ? localizedText("cleanup.no_folders") : m_scanProblem;
}

void AppState::startScan(const QString& folder) {
  if (m_isScanning) return;
  std::vector<FileUrl> named;
  if (const auto place = placeFrom(folder)) named.push_back(*place);
  m_isScanning = true;
  m_hasNoFolders = false;
  m_scanProblem.clear();
  m_homeFolders.clear();
  m_grantError.clear();
  m_examined = 0;
  m_currentPlace.clear();
  m_scanStop = {};
  Q_EMIT scanChanged();
  Q_EMIT scanStatusChanged();
  m_scanQueue.post([this, named = std::move(named), stop = m_scanStop.get_token()](const std::stop_token&) {
    try {
      const auto end = scan(named, stop);
      if (end == ScanOutcome::noFolders) lookForHomeFolders(stop);
      callOn(this, [this, end] { finishScan(end); });
    } catch (const std::runtime_error& error) {
      callOn(this, [this, problem = shownName(error.what())] { finishScan(ScanOutcome::cancelled, problem); });
    }
  });
}

ScanOutcome AppState::scan(const std::vector<FileUrl>& named, const std::stop_token& stop) {
  return scanForWindow(
      m_services.tasks, named,
      {
          .begun =
              [this](std::vector<FileUrl> folders) {
                callOn(this, [this, folders = std::move(folders)] { beginItems(folders); });
              },
          .found = [this, &stop](SharedPiece piece,
                                 std::int64_t bytes) { m_scannedItems.appendLater(std::move(piece), bytes, stop); },
          .progress =
              [this](std::int64_t examined, const std::string& place) {
                callOn(this, [this, examined, place = shownName(place)] { showProgress(examined, place); });
              },
          .keptBack = [this](const RowSum& kept) { callOn(this, [this, kept] { showKept(kept); }); },
      },
      stop);
}

void AppState::lookForHomeFolders(const std::stop_token& stop) {
  constexpr std::size_t maxSuggestions = 6;
  const auto& home = m_services.tasks.home;
  QVariantList rows;
  for (const auto& [folder, bytes] : largestFolders(home, maxSuggestions, stop)) {
    auto row = GrantedFolders::row(folder, home);
    row.insert("bytes", static_cast<double>(bytes));
    rows.append(row);
  }
  callOn(this, [this, rows] { m_homeFolders = rows; });
}

void AppState::grantFolder(const QString& url) {
  m_scanQueue.post([this, url](const std::stop_token&) {
    const auto problem = GrantedFolders(m_services.tasks).add(url);
    callOn(this, [this, problem] {
      m_grantError = problem;
      Q_EMIT scanChanged();
      if (problem.isEmpty()) startScan();
    });
  });
}

void AppState::cancelScan() {
  m_scanStop.request_stop();
}

QString AppState::keptText() const {
  return m_kept.count > 0 ? orvane::keptText(m_kept) : QString();
}

void AppState::addKept(std::int64_t bytes) {
  m_kept.add(bytes);
  Q_EMIT keptChanged();
}

void AppState::showKept(const RowSum& kept) {
  m_kept = kept;
  Q_EMIT keptChanged();
}

void AppState::beginItems(std::vector<FileUrl> folders) {
  showKept({});
  m_scannedItems.begin(std::move(folders));
  recalculateStorageSummary(0);
}

void AppState::showProgress(std::int64_t examined, const QString& place) {
  m_examined = examined;
  m_currentPlace = place;
  m_summary.reclaimableBytes = m_scannedItems.bytes();
  Q_EMIT scanStatusChanged();
  Q_EMIT summaryChanged();
}

void AppState::finishScan(ScanOutcome end, const QString& problem) {
  m_isScanning = false;
  // The examined path is reported now and then only.
  m_examined = std::max(m_examined, m_scannedItems.count());
  m_hasNoFolders = end == ScanOutcome::noFolders;
  m_scanProblem = problem;
  const bool hasScanned = end != ScanOutcome::noFolders || m_scannedItems.count() > 0;
  if (hasScanned && problem.isEmpty()) m_lastScanDate = milliseconds(ReferenceClock::now());
  recalculateStorageSummary(m_scannedItems.bytes());
  Q_EMIT scanStatusChanged();
  Q_EMIT scanChanged();
  Q_EMIT scanFinished();
  refresh();
}

void AppState::setEarlierScan(double date, double bytes) {
  m_earlierScanDate = date;
  m_earlierScanBytes = bytes;
  Q_EMIT scanChanged();
}

void AppState::recalculateStorageSummary(std::int64_t reclaimableBytes) {
  m_summary.reclaimableBytes = reclaimableBytes;
  Q_EMIT summaryChanged();
}

void AppState::setLifetimeReclaimed(std::int64_t bytes) {
  if (m_summary.lifetimeReclaimedBytes == bytes) return;
  m_summary.lifetimeReclaimedBytes = bytes;
  Q_EMIT summaryChanged();
}

void AppState::refresh() {
  m_queue.post([this](const std::stop_token&) {
    const auto disk = m_services.volume.capacity(m_services.tasks.home);
    const bool hasAccess = m_services.permissions.checkFullDiskAccess();
    callOn(this, [this, disk, hasAccess] {
      if (disk) {
        m_summary.totalDiskBytes = disk->totalBytes;
        m_summary.freeDiskBytes = disk->availableBytes;
        m_summary.usedDiskBytes = disk->totalBytes - disk->availableBytes;
        Q_EMIT summaryChanged();
      }
      if (std::exchange(m_hasFullDiskAccess, hasAccess) != hasAccess) Q_EMIT fullDiskAccessChanged();
    });
  });
}

void AppState::completeOnboarding() {
  if (std::exchange(m_hasCompletedOnboarding, true)) return;
  Q_EMIT onboardingChanged();
  storeFlag(onboardingKey);
}

void AppState::noteTrayIsKnown() {
  if (std::exchange(m_knowsTray, true)) return;
  Q_EMIT knowsTrayChanged();
  storeFlag(trayKey);
}

void AppState::storeFlag(std::string_view key) {
  m_queue.post([this, key](const std::stop_token&) {
    try {
      m_services.preferences.setValue(key, Json(true));
    } catch (const std::exception& error) {
      qWarning("The preferences cannot be written: %s", error.what());
    }
  });
}

void AppState::openTrash() {
  m_queue.post([this](const std::stop_token&) {
    if (!m_services.desktop.openUrl("trash:///")) qWarning("No program shows the Trash.");
  });
}

void AppState::openItem(const QString& place) {
  const auto item = placeFrom(place);
  if (!item) return;
  m_queue.post([this, url = item->absoluteString()](const std::stop_token&) {
    if (!m_services.desktop.openUrl(url)) qWarning("No program opens the item.");
  });
}

void AppState::revealItem(const QString& place) {
  const auto item = placeFrom(place);
  if (!item) return;
  m_queue.post([this, item = *item](const std::stop_token&) {
    if (!m_services.desktop.reveal(item)) qWarning("No file manager could be started.");
  });
}

void AppState::copyPath(const QString& place) {
  QGuiApplication::clipboard()->setText(place);
}

void AppState::takeDropped(const QString& url) {
  const auto place = placeFrom(url);
  if (!place) return;
  m_queue.post([this, place = *place](const std::stop_token&) {
    const auto status = readPathStatus(place.path());
    if (!status || status->type != FileType::directory) return;
    callOn(this, [this, place] { Q_EMIT folderDropped(placeText(place), shownName(place.lastPathComponent())); });
  });
}

void AppState::quit() {
  Q_EMIT quitRequested();
}

void AppState::setAppearance(bool darkScheme, bool reducedMotion) {
  if (m_darkScheme == darkScheme && m_reducedMotion == reducedMotion) return;
  m_darkScheme = darkScheme;
  m_reducedMotion = reducedMotion;
  Q_EMIT appearanceChanged();
}

void AppState::setAccent(const QColor& accent) {
  if (std::exchange(m_accent, accent) != accent) Q_EMIT appearanceChanged();
}

void AppState::setTheme(int theme) {
  if (theme < SystemTheme || theme > DarkTheme || std::exchange(m_theme, theme) == theme) return;
  Q_EMIT choicesChanged();
}

void AppState::setClosesToTray(bool closesToTray) {
  if (std::exchange(m_closesToTray, closesToTray) != closesToTray) Q_EMIT choicesChanged();
}

void AppState::setCanKeepTray(bool canKeepTray) {
  if (std::exchange(m_canKeepTray, canKeepTray) != canKeepTray) Q_EMIT canKeepTrayChanged();
}

void AppState::languageChanged() {
  Q_EMIT scanStatusChanged();
  Q_EMIT scanChanged();
  Q_EMIT keptChanged();
}

}  // namespace orvane
