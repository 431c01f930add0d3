#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/common/QtRepeatingTimer.h"
#include "core/organizer/tidy/AutoOrganizeController.h"
#include "core/tasks/LargeRun.h"

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace orvane {

// The automatic organizer for the tray and the settings. Its controller works in the background, where it is also made:
// asking for the language model takes time.
class TidyModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(bool isReady READ isReady NOTIFY changed)
  Q_PROPERTY(bool isEnabled READ isEnabled WRITE setEnabled NOTIFY changed)
  Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed)
  Q_PROPERTY(bool isAvailable READ isAvailable NOTIFY changed)
  Q_PROPERTY(double lastRunDate READ lastRunDate NOTIFY changed)
  Q_PROPERTY(double movedCount READ movedCount NOTIFY changed)
  Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY changed)
  Q_PROPERTY(QString launchAtLoginError READ launchAtLoginError NOTIFY changed)
  Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
  Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
  Q_PROPERTY(QString unavailableReason READ unavailableReason NOTIFY changed)
  Q_PROPERTY(bool isLooking READ isLooking NOTIFY lookChanged)
  Q_PROPERTY(double selectedCount READ selectedCount NOTIFY lookChanged)
  Q_PROPERTY(double selectedBytes READ selectedBytes NOTIFY lookChanged)
  Q_PROPERTY(bool isLarge READ isLarge NOTIFY lookChanged)
  Q_PROPERTY(QVariantList proposed READ proposed NOTIFY lookChanged)
  Q_PROPERTY(QStringList remarks READ remarks NOTIFY lookChanged)
  Q_PROPERTY(double returnedCount READ returnedCount NOTIFY lookChanged)
  Q_PROPERTY(double progressDone READ progressDone NOTIFY progressChanged)
  Q_PROPERTY(double progressTotal READ progressTotal NOTIFY progressChanged)

 public:
  // The timer is given by the model.
  using MakeCollaborators = std::function<AutoOrganizeController::Collaborators(RepeatingTimer& timer)>;

  explicit TidyModel(MakeCollaborators makeCollaborators, QObject* parent = nullptr);
  ~TidyModel() override;

  // Whether the settings are known yet.
  [[nodiscard]] bool isReady() const noexcept { return m_isReady; }
  [[nodiscard]] bool isEnabled() const noexcept { return m_settings.isEnabled; }
  void setEnabled(bool isEnabled);
  [[nodiscard]] bool isRunning() const noexcept { return m_isRunning; }
  // Whether a language model on this machine can name topics.
  [[nodiscard]] bool isAvailable() const noexcept { return m_isAvailable; }
  [[nodiscard]] double lastRunDate() const;
  [[nodiscard]] double movedCount() const noexcept { return static_cast<double>(m_settings.lastRunMovedCount); }
  [[nodiscard]] bool launchAtLogin() const noexcept { return m_launchAtLogin; }
  void setLaunchAtLogin(bool isEnabled);
  // Why the last change was refused; empty where it was not.
  [[nodiscard]] const QString& launchAtLoginError() const noexcept { return m_launchAtLoginError; }
  // The result of the last run of this process, or why it failed; empty before.
  [[nodiscard]] QString statusText() const;
  // Whether what was confirmed last can be undone from here.
  [[nodiscard]] bool canUndo() const noexcept { return !m_lastRuns.empty() && !m_isRunning; }
  // Why there is no language model; empty where there is one.
  [[nodiscard]] const QString& unavailableReason() const noexcept { return m_unavailableReason; }
  // Of the folder that is tidied now; both 0 as long as nothing moves.
  [[nodiscard]] double progressDone() const noexcept { return static_cast<double>(m_done); }
  [[nodiscard]] double progressTotal() const noexcept { return static_cast<double>(m_total); }

  [[nodiscard]] const AutoOrganizeSettings& settings() const noexcept { return m_settings; }
  // Changes and stores the settings, in the background.
  void update(std::function<void(AutoOrganizeSettings&)> change);

  // The moves that tidying would make now: true while they are looked for, then the rows to confirm.
  [[nodiscard]] bool isLooking() const noexcept { return m_isLooking; }
  [[nodiscard]] double selectedCount() const noexcept { return static_cast<double>(m_proposedSum.count); }
  [[nodiscard]] double selectedBytes() const noexcept { return static_cast<double>(m_proposedSum.bytes); }
  // Whether so much is asked for once more.
  [[nodiscard]] bool isLarge() const noexcept { return isLargeRun(m_proposedSum); }
  // A row for each folder that something goes to.
  [[nodiscard]] QVariantList proposed() const;
  // The notices beside the rows.
  [[nodiscard]] QStringList remarks() const;

  // How many items of the watched folders a restore brought back, which are left alone.
  [[nodiscard]] double returnedCount() const;

  // Looks at what there is to tidy, and asks whoever shows it.
  Q_INVOKABLE void look();
  // Looks again, and proposes what a restore brought back too.
  Q_INVOKABLE void takeReturned();
  // Carries out what was shown.
  Q_INVOKABLE void confirm();
  // Forgets what was shown.
  Q_INVOKABLE void dismiss();
  Q_INVOKABLE void undo();
  Q_INVOKABLE void cancel();
  // The settings may have been changed by another process.
  void reload();
  // Texts are new.
  void languageChanged();

 Q_SIGNALS:
  void changed();
  void progressChanged();
  void lookChanged();
  void asked();
  // The confirmed moves have been carried out.
  void tidied();

 private:
  void makeController(const MakeCollaborators& makeCollaborators);
  // From any thread.
  void publish();
  void lookFor(ReturnedUse returned);
  void show(TidyLook look, RowSum sum);

  bool m_isReady = false;
  bool m_isRunning = false;
  bool m_isAvailable = false;
  bool m_launchAtLogin = false;
  QString m_launchAtLoginError;
  AutoOrganizeSettings m_settings;
  int m_changesUnderWay = 0;  // shown already, and not stored yet
  std::optional<AutoOrganizeResult> m_lastResult;
  QString m_runError;
  std::vector<Uuid> m_lastRuns;
  std::optional<std::int64_t> m_restoredCount;  // of the last undo, until something else happens
  QString m_unavailableReason;
  bool m_isLooking = false;
  TidyLook m_look;
  RowSum m_proposedSum;
  std::size_t m_done = 0;
  std::size_t m_total = 0;
  std::stop_source m_runStop;
  std::stop_source m_lookStop;

  std::function<AutoOrganizeSettings()> m_storedSettings;
  QtRepeatingTimer m_timer;
  std::unique_ptr<AutoOrganizeController> m_controller;  // made by the first task of m_runQueue
  BackgroundQueue m_runQueue;
  BackgroundQueue m_settingsQueue;
};

}  // namespace orvane
