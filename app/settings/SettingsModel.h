#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/common/GrantedFolders.h"
#include "core/rules/records/ScheduleSettings.h"

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

class HttpUrlReader;
class KeychainService;
class LaunchAgentManager;
class Preferences;
class ScheduleCoordinator;
class TidyModel;
class UserNotificationService;

// Everything that can be set. A change shows at once and is stored in the background; what another process stores shows
// after refresh().
class SettingsModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(QVariantList folders READ folders NOTIFY changed)
  Q_PROPERTY(QVariantList suggestedFolders READ suggestedFolders NOTIFY changed)
  Q_PROPERTY(QString folderError READ folderError NOTIFY changed)
  Q_PROPERTY(bool scansKnownPlaces READ scansKnownPlaces WRITE setScansKnownPlaces NOTIFY changed)
  Q_PROPERTY(QStringList keptPatterns READ keptPatterns NOTIFY changed)
  Q_PROPERTY(QString keepError READ keepError NOTIFY changed)
  Q_PROPERTY(bool scheduleEnabled READ scheduleEnabled WRITE setScheduleEnabled NOTIFY changed)
  Q_PROPERTY(QStringList frequencyKeys READ frequencyKeys CONSTANT)
  Q_PROPERTY(int scheduleFrequency READ scheduleFrequency WRITE setScheduleFrequency NOTIFY changed)
  Q_PROPERTY(int scheduleThresholdGB READ scheduleThresholdGB WRITE setScheduleThresholdGB NOTIFY changed)
  Q_PROPERTY(bool scheduleApprovedOnly READ scheduleApprovedOnly WRITE setScheduleApprovedOnly NOTIFY changed)
  Q_PROPERTY(double lastScheduledRun READ lastScheduledRun NOTIFY changed)
  Q_PROPERTY(bool agentInstalled READ agentInstalled NOTIFY changed)
  Q_PROPERTY(QString agentStatus READ agentStatus NOTIFY changed)
  Q_PROPERTY(bool notificationsAvailable READ notificationsAvailable NOTIFY changed)
  Q_PROPERTY(QVariantList keys READ keys NOTIFY changed)
  Q_PROPERTY(QString keyError READ keyError NOTIFY changed)
  Q_PROPERTY(QString modelAddress READ modelAddress WRITE setModelAddress NOTIFY changed)
  Q_PROPERTY(QString modelName READ modelName WRITE setModelName NOTIFY changed)
  Q_PROPERTY(QString modelError READ modelError NOTIFY changed)
  Q_PROPERTY(bool isModelNew READ isModelNew NOTIFY changed)
  Q_PROPERTY(int recentsDays READ recentsDays WRITE setRecentsDays NOTIFY tidyChanged)
  Q_PROPERTY(bool useTopics READ useTopics WRITE setUseTopics NOTIFY tidyChanged)
  Q_PROPERTY(QVariantList autoFolders READ autoFolders NOTIFY tidyChanged)

 public:
  enum Frequency { Daily, Weekly, Monthly, LowSpace };
  Q_ENUM(Frequency)

  // All must outlive the model.
  struct Collaborators {
    TaskServices tasks;
    ScheduleCoordinator& schedule;
    LaunchAgentManager& agent;
    const UserNotificationService& notifications;
    const KeychainService& keychain;
    Preferences& preferences;
    const HttpUrlReader& urls;
    TidyModel& tidy;
    std::string program;  // what the background agent starts
  };

  explicit SettingsModel(Collaborators collaborators, QObject* parent = nullptr);

  // As GrantedFolders::rows().
  [[nodiscard]] const QVariantList& folders() const noexcept { return m_state.folders; }
  // Folders to grant where none of the usual ones exists: {name, path, url}.
  [[nodiscard]] const QVariantList& suggestedFolders() const noexcept { return m_state.suggested; }
  [[nodiscard]] const QString& folderError() const noexcept { return m_folderError; }
  // The caches and logs of programs, beside the folders.
  [[nodiscard]] bool scansKnownPlaces() const noexcept { return m_state.scansKnownPlaces; }
  void setScansKnownPlaces(bool isOn);
  // The keep list as it is stored.
  [[nodiscard]] const QStringList& keptPatterns() const noexcept { return m_state.keptPatterns; }
  // Why the list cannot be read or was not changed; empty where all is well.
  [[nodiscard]] QString keepError() const;
  [[nodiscard]] bool scheduleEnabled() const noexcept { return m_state.schedule.isEnabled; }
  void setScheduleEnabled(bool isEnabled);
  // Keys of texts, as the frequency counts.
  [[nodiscard]] static QStringList frequencyKeys() {
    return {QStringLiteral("settings.daily"), QStringLiteral("settings.weekly"), QStringLiteral("settings.monthly"),
            QStringLiteral("settings.low_space")};
  }
  [[nodiscard]] int scheduleFrequency() const;
  void setScheduleFrequency(int frequency);
  // Kept while another frequency is chosen.
  [[nodiscard]] int scheduleThresholdGB() const noexcept { return m_thresholdGB; }
  void setScheduleThresholdGB(int threshold);
  [[nodiscard]] bool scheduleApprovedOnly() const noexcept { return m_state.schedule.runApprovedRulesOnly; }
  void setScheduleApprovedOnly(bool isApprovedOnly);
  [[nodiscard]] double lastScheduledRun() const;
  [[nodiscard]] bool agentInstalled() const noexcept { return m_state.isAgentInstalled; }
  // Why the agent could not be written; empty where it could.
  [[nodiscard]] const QString& agentStatus() const noexcept { return m_agentStatus; }
  [[nodiscard]] bool notificationsAvailable() const noexcept { return m_state.canNotify; }
  // {name, account, isStored} for each provider that needs one.
  [[nodiscard]] const QVariantList& keys() const noexcept { return m_state.keys; }
  [[nodiscard]] QString keyError() const;
  [[nodiscard]] const QString& modelAddress() const noexcept { return m_state.modelAddress; }
  // Only an address on this computer is taken; none for no model.
  void setModelAddress(const QString& address);
  // A server of one model does not need it.
  [[nodiscard]] const QString& modelName() const noexcept { return m_state.modelName; }
  void setModelName(const QString& name);
  // Why the last address was not taken; empty where it was.
  [[nodiscard]] QString modelError() const;
  // Whether the address was changed since the start: what is asked at the start holds until the next.
  [[nodiscard]] bool isModelNew() const noexcept {
    return m_firstModelAddress && *m_firstModelAddress != modelAddress();
  }
  [[nodiscard]] int recentsDays() const;
  void setRecentsDays(int days);
  [[nodiscard]] bool useTopics() const;
  void setUseTopics(bool useTopics);
  [[nodiscard]] QVariantList autoFolders() const;

  Q_INVOKABLE void addFolder(const QString& url);
  Q_INVOKABLE void removeFolder(const QString& url);
  Q_INVOKABLE void addKept(const QString& url);
  Q_INVOKABLE void removeKept(const QString& pattern);
  Q_INVOKABLE void addAutoFolder(const QString& url);
  Q_INVOKABLE void removeAutoFolder(const QString& url);
  Q_INVOKABLE void storeKey(const QString& account, const QString& key);
  Q_INVOKABLE void removeKey(const QString& account);
  // Has the system ask the user, where it does.
  Q_INVOKABLE void askForNotifications();
  // Where the schedule is on and its background agent is not there.
  Q_INVOKABLE void installAgent();
  // Reads everything anew. That begins talks with the key ring and the notification service.
  Q_INVOKABLE void refresh();
  // The same without these talks, where none began before.
  Q_INVOKABLE void readStored();
  // The stored settings may be new: reads them anew where they were read before.
  void reload();

  // Texts are new.
  void languageChanged();

 Q_SIGNALS:
  void changed();
  void tidyChanged();
  // Emitted after the stored settings were read anew.
  void published();
  // Other screens look at these too.
  void foldersChanged();
  void keysChanged();

 private:
  struct State {
    QVariantList folders;
    bool scansKnownPlaces = true;
    QStringList keptPatterns;
    QString keepProblem;
    QVariantList suggested;
    ScheduleSettings schedule;
    bool isAgentInstalled = false;
    bool canNotify = false;
    QVariantList keys;
    QString modelAddress;
    QString modelName;
  };

  // On the queue's thread.
  [[nodiscard]] State read() const;
  void readAndPublish();
  void changeFolders(std::function<QString()> change);
  void changeKept(std::function<void(const TaskServices&)> change);
  void changeKey(std::function<bool()> change);
  // Shows the change at once, stores it, and has the agent follow.
  void changeSchedule(std::function<void(ScheduleSettings&)> change);
  void takeModelAddress(const QString& address, bool isRefused);
  void changePreference(std::string_view key, const QString& value);
  [[nodiscard]] QString letAgentFollow(const ScheduleSettings& settings) const;

  Collaborators m_collaborators;
  GrantedFolders m_granted;
  State m_state;
  bool m_isRead = false;
  std::atomic<bool> m_talks = false;  // with the key ring and the notification service
  int m_thresholdGB = 10;
  QString m_folderError;
  QString m_keepError;
  QString m_agentStatus;
  bool m_hasKeyFailed = false;
  bool m_isModelRefused = false;
  std::optional<QString> m_firstModelAddress;
  BackgroundQueue m_queue;  // last: its tasks use everything above
};

}  // namespace orvane
