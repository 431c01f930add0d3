#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/common/ScanFeed.h"
#include "app/common/ScannedItems.h"
#include "app/shell/AppNavigationItem.h"
#include "app/shell/WindowServices.h"
#include "core/scanning/records/StorageSummary.h"

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariantList>

#include <chrono>
#include <cstdint>
#include <stop_token>

namespace orvane {

// The state that all screens share: the section shown, the running scan, and the figures of the disk. Changed on the
// main thread only.
class AppState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(int selectedNavigation READ selectedNavigation WRITE setSelectedNavigation NOTIFY navigationChanged)
  Q_PROPERTY(bool isScanning READ isScanning NOTIFY scanChanged)
  Q_PROPERTY(QString scanStatus READ scanStatus NOTIFY scanStatusChanged)
  Q_PROPERTY(double scanItems READ scanItems NOTIFY scanStatusChanged)
  Q_PROPERTY(QString scanFailed READ scanFailed NOTIFY scanChanged)
  Q_PROPERTY(bool hasScanned READ hasScanned NOTIFY scanChanged)
  Q_PROPERTY(double lastScanDate READ lastScanDate NOTIFY scanChanged)
  Q_PROPERTY(double scannedFiles READ scannedFiles NOTIFY scanChanged)
  Q_PROPERTY(int scannedFolders READ scannedFolders NOTIFY scanChanged)
  // {name, path, url, bytes} of the largest folders of the home, where none of those that are looked after is there.
  Q_PROPERTY(QVariantList homeFolders READ homeFolders NOTIFY scanChanged)
  Q_PROPERTY(QString grantError READ grantError NOTIFY scanChanged)
  // How much the keep list held back; empty where nothing.
  Q_PROPERTY(QString keptText READ keptText NOTIFY keptChanged)
  Q_PROPERTY(bool hasFullDiskAccess READ hasFullDiskAccess NOTIFY fullDiskAccessChanged)
  Q_PROPERTY(double totalBytes READ totalBytes NOTIFY summaryChanged)
  Q_PROPERTY(double usedBytes READ usedBytes NOTIFY summaryChanged)
  Q_PROPERTY(double freeBytes READ freeBytes NOTIFY summaryChanged)
  Q_PROPERTY(double reclaimableBytes READ reclaimableBytes NOTIFY summaryChanged)
  Q_PROPERTY(double lifetimeReclaimedBytes READ lifetimeReclaimedBytes NOTIFY summaryChanged)
  Q_PROPERTY(bool hasCompletedOnboarding READ hasCompletedOnboarding NOTIFY onboardingChanged)
  Q_PROPERTY(bool darkScheme READ darkScheme NOTIFY appearanceChanged)
  Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY appearanceChanged)
  Q_PROPERTY(bool canKeepTray READ canKeepTray NOTIFY canKeepTrayChanged)

 public:
  static constexpr std::string_view onboardingKey = "hasCompletedOnboarding";

  // Reads the flag of the onboarding at once, everything else in the background.
  explicit AppState(WindowServices services, QObject* parent = nullptr);
  ~AppState() override;

  [[nodiscard]] ScannedItems& scannedItems() noexcept { return m_scannedItems; }
  [[nodiscard]] const StorageSummary& storageSummary() const noexcept { return m_summary; }

  [[nodiscard]] int selectedNavigation() const noexcept { return static_cast<int>(m_selectedNavigation); }
  void setSelectedNavigation(int section);
  [[nodiscard]] bool isScanning() const noexcept { return m_isScanning; }
  [[nodiscard]] QString scanStatus() const;
  // Entries examined by the running or last scan.
  [[nodiscard]] double scanItems() const noexcept { return static_cast<double>(m_examined); }
  // Why the last scan could not be made; empty when it could.
  [[nodiscard]] QString scanFailed() const;
  [[nodiscard]] bool hasScanned() const noexcept { return m_lastScanDate != 0; }
  [[nodiscard]] double lastScanDate() const noexcept { return m_lastScanDate; }
  [[nodiscard]] double scannedFiles() const noexcept { return static_cast<double>(m_examined); }
  [[nodiscard]] int scannedFolders() const noexcept { return static_cast<int>(m_scannedItems.folders().size()); }
  [[nodiscard]] const QVariantList& homeFolders() const noexcept { return m_homeFolders; }
  // Why the last folder was not granted; empty where it was.
  [[nodiscard]] const QString& grantError() const noexcept { return m_grantError; }
  // Has a folder looked after, and scans.
  Q_INVOKABLE void grantFolder(const QString& url);
  [[nodiscard]] QString keptText() const;
  // An item of the last scan was put on the list.
  void addKept(std::int64_t bytes);
  [[nodiscard]] bool hasFullDiskAccess() const noexcept { return m_hasFullDiskAccess; }
  [[nodiscard]] double totalBytes() const noexcept { return static_cast<double>(m_summary.totalDiskBytes); }
  [[nodiscard]] double usedBytes() const noexcept { return static_cast<double>(m_summary.usedDiskBytes); }
  [[nodiscard]] double freeBytes() const noexcept { return static_cast<double>(m_summary.freeDiskBytes); }
  [[nodiscard]] double reclaimableBytes() const noexcept { return static_cast<double>(m_summary.reclaimableBytes); }
  [[nodiscard]] double lifetimeReclaimedBytes() const noexcept {
    return static_cast<double>(m_summary.lifetimeReclaimedBytes);
  }
  [[nodiscard]] bool hasCompletedOnboarding() const noexcept { return m_hasCompletedOnboarding; }
  [[nodiscard]] bool darkScheme() const noexcept { return m_darkScheme; }
  [[nodiscard]] bool reducedMotion() const noexcept { return m_reducedMotion; }
  [[nodiscard]] bool canKeepTray() const noexcept { return m_canKeepTray; }

  // Scans the folder named, by its path or URL, or else the granted folders that exist. Does nothing while a scan is
  // running.
  Q_INVOKABLE void startScan(const QString& folder = {});
  Q_INVOKABLE void cancelScan();
  Q_INVOKABLE void completeOnboarding();
  Q_INVOKABLE void openTrash();
  Q_INVOKABLE void quit();
  // Reads the disk's figures and the system's permission again.
  Q_INVOKABLE void refresh();

  void recalculateStorageSummary(std::int64_t reclaimableBytes);
  void setLifetimeReclaimed(std::int64_t bytes);
  void setAppearance(bool darkScheme, bool reducedMotion);
  void setCanKeepTray(bool canKeepTray);
  // Texts are new.
  void languageChanged();

 Q_SIGNALS:
  void navigationChanged();
  void scanChanged();
  void scanStatusChanged();
  void scanFinished();
  void keptChanged();
  void fullDiskAccessChanged();
  void summaryChanged();
  void onboardingChanged();
  void appearanceChanged();
  void canKeepTrayChanged();
  // The window is to come to the front.
  void raised();
  void quitRequested();

 private:
  void beginItems(std::vector<FileUrl> folders);
  void lookForHomeFolders(const std::stop_token& stop);
  void showKept(const RowSum& kept);
  void showProgress(std::int64_t examined, const QString& place);
  ScanOutcome scan(const std::vector<FileUrl>& named, const std::stop_token& stop);
  void finishScan(ScanOutcome end, const QString& problem = {});

  WindowServices m_services;
  ScannedItems m_scannedItems;
  StorageSummary m_summary;
  AppNavigationItem m_selectedNavigation = AppNavigationItem::Overview;
  bool m_isScanning = false;
  bool m_hasNoFolders = false;
  QVariantList m_homeFolders;
  QString m_grantError;
  QString m_scanProblem;
  std::int64_t m_examined = 0;
  QString m_currentPlace;
  double m_lastScanDate = 0;
  RowSum m_kept;
  bool m_hasFullDiskAccess = false;
  bool m_hasCompletedOnboarding = false;
  bool m_darkScheme = false;
  bool m_reducedMotion = false;
  bool m_canKeepTray = false;
  QTimer m_refreshTimer;
  std::stop_source m_scanStop;
  BackgroundQueue m_queue;
  BackgroundQueue m_scanQueue;
};

}  // namespace orvane
