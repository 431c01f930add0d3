#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/common/ItemPreview.h"
#include "app/common/ScanFeed.h"
#include "app/common/ScannedItems.h"
#include "app/shell/AppNavigationItem.h"
#include "app/shell/WindowServices.h"
#include "core/scanning/records/StorageSummary.h"

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QObject>
#include <QString>
#include <QStringList>
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
  Q_PROPERTY(double earlierScanDate READ earlierScanDate NOTIFY scanChanged)
  Q_PROPERTY(double earlierScanBytes READ earlierScanBytes NOTIFY scanChanged)
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
  Q_PROPERTY(double proposedBytes READ proposedBytes NOTIFY summaryChanged)
  Q_PROPERTY(double reviewBytes READ reviewBytes NOTIFY summaryChanged)
  Q_PROPERTY(double lifetimeReclaimedBytes READ lifetimeReclaimedBytes NOTIFY summaryChanged)
  Q_PROPERTY(bool hasCompletedOnboarding READ hasCompletedOnboarding NOTIFY onboardingChanged)
  Q_PROPERTY(bool darkScheme READ darkScheme NOTIFY appearanceChanged)
  Q_PROPERTY(QStringList themeKeys READ themeKeys CONSTANT)
  Q_PROPERTY(int theme READ theme WRITE setTheme NOTIFY choicesChanged)
  Q_PROPERTY(bool closesToTray READ closesToTray WRITE setClosesToTray NOTIFY choicesChanged)
  Q_PROPERTY(QColor accent READ accent NOTIFY appearanceChanged)
  Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY appearanceChanged)
  Q_PROPERTY(bool knowsTray READ knowsTray NOTIFY knowsTrayChanged)
  Q_PROPERTY(bool canKeepTray READ canKeepTray NOTIFY canKeepTrayChanged)
  Q_PROPERTY(orvane::ItemPreview* preview READ preview CONSTANT)

 public:
  static constexpr std::string_view onboardingKey = "hasCompletedOnboarding";
  static constexpr std::string_view trayKey = "knowsTray";

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
  // The last scan of an earlier start, and how much one cleanup would have taken of it; 0 where there was none.
  [[nodiscard]] double earlierScanDate() const noexcept { return m_earlierScanDate; }
  [[nodiscard]] double earlierScanBytes() const noexcept { return m_earlierScanBytes; }
  void setEarlierScan(double date, double bytes);
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
  // Of what the last scan found: what one cleanup takes as it is proposed, and what is worth a look.
  [[nodiscard]] double proposedBytes() const noexcept { return static_cast<double>(m_scannedItems.proposedBytes()); }
  [[nodiscard]] double reviewBytes() const noexcept { return static_cast<double>(m_scannedItems.reviewBytes()); }
  [[nodiscard]] double lifetimeReclaimedBytes() const noexcept {
    return static_cast<double>(m_summary.lifetimeReclaimedBytes);
  }
  [[nodiscard]] bool hasCompletedOnboarding() const noexcept { return m_hasCompletedOnboarding; }
  [[nodiscard]] bool darkScheme() const noexcept { return m_darkScheme; }
  // The desktop's; clear where it has none.
  [[nodiscard]] const QColor& accent() const noexcept { return m_accent; }
  [[nodiscard]] bool reducedMotion() const noexcept { return m_reducedMotion; }
  // Keys of texts, as Theme counts.
  [[nodiscard]] static QStringList themeKeys() {
    return {QStringLiteral("settings.theme_system"), QStringLiteral("settings.theme_light"),
            QStringLiteral("settings.theme_dark")};
  }
  enum Theme { SystemTheme, LightTheme, DarkTheme };
  Q_ENUM(Theme)
  [[nodiscard]] int theme() const noexcept { return m_theme; }
  void setTheme(int theme);
  // Where there is a tray; else closing the window ends the program.
  [[nodiscard]] bool closesToTray() const noexcept { return m_closesToTray; }
  void setClosesToTray(bool closesToTray);
  // Whether the user was told that the window closes to the tray.
  [[nodiscard]] bool knowsTray() const noexcept { return m_knowsTray; }
  [[nodiscard]] bool canKeepTray() const noexcept { return m_canKeepTray; }
  [[nodiscard]] ItemPreview* preview() noexcept { return &m_preview; }

  // Scans the folder named, by its path or URL, or else the granted folders that exist. Does nothing while a scan is
  // running.
  Q_INVOKABLE void startScan(const QString& folder = {});
  Q_INVOKABLE void cancelScan();
  Q_INVOKABLE void completeOnboarding();
  Q_INVOKABLE void noteTrayIsKnown();
  Q_INVOKABLE void openTrash();
  // An item by its path or URL: with the program for it, in the file manager, its path on the clipboard.
  Q_INVOKABLE void openItem(const QString& place);
  Q_INVOKABLE void revealItem(const QString& place);
  Q_INVOKABLE static void copyPath(const QString& place);
  // folderDropped() follows where it is a folder.
  Q_INVOKABLE void takeDropped(const QString& url);
  Q_INVOKABLE void quit();
  // Reads the disk's figures and the system's permission again.
  Q_INVOKABLE void refresh();

  void recalculateStorageSummary(std::int64_t reclaimableBytes);
  void setLifetimeReclaimed(std::int64_t bytes);
  void setAppearance(bool darkScheme, bool reducedMotion);
  void setAccent(const QColor& accent);
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
  // The theme, or where the window closes to.
  void choicesChanged();
  void shortcutsAsked();
  void aboutAsked();
  void canKeepTrayChanged();
  void knowsTrayChanged();
  // The window is to come to the front.
  void raised();
  void folderDropped(const QString& url, const QString& name);
  void quitRequested();
  // Undoes the last run of this window, whatever section it was of.
  void undoRequested();
  // There is none: the section that is shown may know an older one.
  void undoLeftToScreen();
  // A sentence to show wherever the user is.
  void told(const QString& text);
  // Items are being moved: the user is to say how the program ends; the next two are the answers.
  void quitAsked();
  void quitWhenFinished();
  void quitWhenStopped();

 private:
  void storeFlag(std::string_view key);
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
  double m_earlierScanDate = 0;
  double m_earlierScanBytes = 0;
  RowSum m_kept;
  bool m_hasFullDiskAccess = false;
  bool m_hasCompletedOnboarding = false;
  bool m_darkScheme = false;
  bool m_reducedMotion = false;
  QColor m_accent = Qt::transparent;
  bool m_canKeepTray = false;
  bool m_knowsTray = false;
  int m_theme = SystemTheme;
  bool m_closesToTray = true;
  ItemPreview m_preview{m_services.tasks.home};
  QTimer m_refreshTimer;
  std::stop_source m_scanStop;
  BackgroundQueue m_queue;
  BackgroundQueue m_scanQueue;
};

}  // namespace orvane
