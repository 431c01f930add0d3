#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

namespace orvane {

class AppState;
class TidyModel;

// The icon in the desktop's tray, where it has one, with the menu of what can be done without the window.
class TrayIcon : public QObject {
  Q_OBJECT

 public:
  // Both must outlive the icon.
  TrayIcon(AppState& state, TidyModel& tidy, QObject* parent = nullptr);

  // Texts are new.
  void languageChanged();

  [[nodiscard]] const QMenu& menu() const noexcept { return m_menu; }

 private:
  void refresh();
  void showWhereThereIsATray();

  AppState& m_state;
  TidyModel& m_tidy;
  QMenu m_menu;
  QAction* m_title;
  QAction* m_tagline;
  QAction* m_reclaimable;
  QAction* m_keepTidy;
  QAction* m_organizeNow;
  QAction* m_scan;
  QAction* m_open;
  QAction* m_quit;
  QSystemTrayIcon m_icon;
};

}  // namespace orvane
