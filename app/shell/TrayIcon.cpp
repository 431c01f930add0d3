#include "app/shell/TrayIcon.h"

#include "app/common/Format.h"
#include "app/common/IconProvider.h"
#include "app/common/Text.h"
#include "app/settings/TidyModel.h"
#include "app/shell/AppState.h"

#include <QAction>
#include <QIcon>
#include <QPixmap>
#include <QTimer>

#include <chrono>

namespace orvane {
namespace {

// A tray may come later than the program, which the desktop may start at login.
constexpr std::chrono::seconds trayCheckInterval{5};

// Nothing tells whether a panel is light or dark, so the ink is one that stands out on both.
QIcon trayPicture() {
  IconProvider drawings;
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48, 64}) {
    icon.addPixmap(QPixmap::fromImage(
        drawings.requestImage(QStringLiteral("folder.badge.gearshape/1b9e9a"), nullptr, QSize(size, size))));
  }
  return icon;
}

}  // namespace

TrayIcon::TrayIcon(AppState& state, TidyModel& tidy, QObject* parent) : QObject(parent), m_state(state), m_tidy(tidy) {
  m_title = m_menu.addAction(QString());
  m_title->setEnabled(false);
  m_tagline = m_menu.addAction(QString());
  m_tagline->setEnabled(false);
  m_reclaimable = m_menu.addAction(QString());
  m_reclaimable->setEnabled(false);
  m_menu.addSeparator();
  m_keepTidy = m_menu.addAction(QString());
  m_keepTidy->setCheckable(true);
  m_organizeNow = m_menu.addAction(QString());
  m_scan = m_menu.addAction(QString());
  m_menu.addSeparator();
  m_open = m_menu.addAction(QString());
  m_quit = m_menu.addAction(QString());
  m_quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));

  connect(m_keepTidy, &QAction::triggered, this, [this](bool isChecked) { m_tidy.setEnabled(isChecked); });
  connect(m_organizeNow, &QAction::triggered, this, [this] {
    Q_EMIT m_state.raised();
    m_tidy.look();
  });
  connect(m_scan, &QAction::triggered, &m_state, [this] { m_state.startScan(); });
  connect(m_open, &QAction::triggered, &m_state, &AppState::raised);
  connect(m_quit, &QAction::triggered, &m_state, &AppState::quit);
  connect(&m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::Trigger) Q_EMIT m_state.raised();
  });
  connect(&m_state, &AppState::summaryChanged, this, &TrayIcon::refresh);
  connect(&m_state, &AppState::scanChanged, this, &TrayIcon::refresh);
  connect(&m_tidy, &TidyModel::changed, this, &TrayIcon::refresh);

  m_icon.setIcon(trayPicture());
  m_icon.setContextMenu(&m_menu);
  auto* check = new QTimer(this);
  connect(check, &QTimer::timeout, this, &TrayIcon::showWhereThereIsATray);
  check->start(trayCheckInterval);
  refresh();
  showWhereThereIsATray();
}

void TrayIcon::showWhereThereIsATray() {
  const bool isThere = QSystemTrayIcon::isSystemTrayAvailable();
  if (isThere != m_icon.isVisible()) m_icon.setVisible(isThere);
  m_state.setCanKeepTray(isThere);
}

void TrayIcon::refresh() {
  m_title->setText(localizedText("app.name"));
  m_tagline->setText(localizedText("app.tagline"));
  m_reclaimable->setText(localizedText("dashboard.reclaimable_now") + ": " + Format::bytes(m_state.proposedBytes()));
  m_keepTidy->setText(localizedText("tray.keep_tidy"));
  m_keepTidy->setChecked(m_tidy.isEnabled());
  m_organizeNow->setText(localizedText("tray.organize_now"));
  m_organizeNow->setEnabled(m_tidy.isReady() && !m_tidy.isRunning());
  m_scan->setText(localizedText(m_state.isScanning() ? "action.scanning" : "action.scan"));
  m_scan->setEnabled(!m_state.isScanning());
  m_open->setText(localizedText("tray.open"));
  m_quit->setText(localizedText("tray.quit"));
  m_icon.setToolTip(localizedText("app.name") + QStringLiteral("\n") + m_reclaimable->text());
}

void TrayIcon::languageChanged() {
  refresh();
}

}  // namespace orvane
