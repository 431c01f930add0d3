#include "app/settings/SettingsModel.h"

#include "app/common/Places.h"
#include "app/common/Text.h"
#include "app/settings/TidyModel.h"
#include "core/assistant/records/AIProvider.h"
#include "core/assistant/services/KeychainService.h"
#include "core/base/files/PlaceText.h"
#include "core/base/text/Json.h"
#include "core/platform/HttpUrl.h"
#include "core/platform/Preferences.h"
#include "core/rules/schedule/ScheduleCoordinator.h"
#include "core/rules/services/LaunchAgentManager.h"
#include "core/rules/services/UserNotificationService.h"
#include "core/tasks/KeepTask.h"
#include "core/tasks/KnownPlaces.h"

#include <QDebug>

#include <algorithm>
#include <exception>
#include <span>
#include <utility>

namespace orvane {
namespace {

// The address of the server that the automatic organizer asks for topics.
constexpr std::string_view modelAddressKey = "OrvaneLocalModelEndpoint";
constexpr std::string_view modelNameKey = "OrvaneLocalModelName";

struct FrequencyIndex {
  int operator()(const OnLowDiskSpace& /*frequency*/) const { return SettingsModel::LowSpace; }
  int operator()(const orvane::Daily& /*frequency*/) const { return SettingsModel::Daily; }
  int operator()(const orvane::Weekly& /*frequency*/) const { return SettingsModel::Weekly; }
  int operator()(const orvane::Monthly& /*frequency*/) const { return SettingsModel::Monthly; }
};

ScheduleFrequency frequencyFrom(int index, int thresholdGB) {
  switch (index) {
    case SettingsModel::Daily:
      return Daily{};
    case SettingsModel::Monthly:
      return Monthly{};
    case SettingsModel::LowSpace:
      return OnLowDiskSpace{thresholdGB};
    default:
      return Weekly{};
  }
}

QString textPreference(const Preferences& preferences, std::string_view key) {
  const auto value = preferences.value(key);
  return value && value->is_string() ? textFrom(value->get<std::string>()) : QString();
}

}  // namespace

SettingsModel::SettingsModel(Collaborators collaborators, QObject* parent)
    : QObject(parent), m_collaborators(std::move(collaborators)), m_granted(m_collaborators.tasks) {
  connect(&m_collaborators.tidy, &TidyModel::changed, this, &SettingsModel::tidyChanged);
}

SettingsModel::State SettingsModel::read() const {
  State state{.folders = m_granted.rows(),
              .scansKnownPlaces = grantedKnownPlaces(m_collaborators.tasks) == KnownPlaces::include,
              .keptPatterns = {},
              .keepProblem = {},
              .suggested = m_granted.suggestions(),
              .schedule = m_collaborators.schedule.getSettings(),
              .isAgentInstalled = m_collaborators.agent.isInstalled(),
              .canNotify = false,
              .keys = {},
              .modelAddress = textPreference(m_collaborators.preferences, modelAddressKey),
              .modelName = textPreference(m_collaborators.preferences, modelNameKey)};
  try {
    for (const auto& pattern : orvane::keptPatterns(m_collaborators.tasks)) state.keptPatterns += textFrom(pattern);
  } catch (const std::exception& error) {
    state.keepProblem = shownName(error.what());
  }
  if (!m_talks) return state;
  state.canNotify = m_collaborators.notifications.requestAuthorization();
  for (const auto provider : allAIProviders) {
    const auto account = keyAccount(provider);
    if (account.empty()) continue;
    state.keys.append(QVariantMap{{"name", textFrom(displayName(provider))},
                                  {"account", textFrom(account)},
                                  {"isStored", m_collaborators.keychain.hasKey(account)}});
  }
  return state;
}

void SettingsModel::readAndPublish() {
  const auto state = read();
  callOn(this, [this, state] {
    const bool areFoldersNew = state.folders != m_state.folders;
    const bool areKeysNew = state.keys != m_state.keys;
    m_state = state;
    if (!m_firstModelAddress) m_firstModelAddress = state.modelAddress;
    if (const auto* low = std::get_if<OnLowDiskSpace>(&state.schedule.frequency)) {
      m_thresholdGB = static_cast<int>(low->thresholdGB);
    }
    Q_EMIT changed();
    if (areFoldersNew) Q_EMIT foldersChanged();
    if (areKeysNew) Q_EMIT keysChanged();
    Q_EMIT published();
  });
}

void SettingsModel::reload() {
  if (m_isRead) readStored();
}

void SettingsModel::refresh() {
  m_talks = true;
  readStored();
}

void SettingsModel::readStored() {
  m_isRead = true;
  m_queue.post([this](const std::stop_token&) { readAndPublish(); });
}

void SettingsModel::changeFolders(std::function<QString()> change) {
  m_queue.post([this, change = std::move(change)](const std::stop_token&) {
    const auto problem = change();
    callOn(this, [this, problem] { m_folderError = problem; });
    readAndPublish();
  });
}

void SettingsModel::addFolder(const QString& url) {
  changeFolders([this, url] {
    const auto problem = m_granted.add(url);
    return problem.isEmpty() ? QString() : localizedText("settings.folder_refused").arg(problem);
  });
}

void SettingsModel::removeFolder(const QString& url) {
  changeFolders([this, url] { return m_granted.remove(url); });
}

void SettingsModel::setScansKnownPlaces(bool isOn) {
  m_state.scansKnownPlaces = isOn;
  Q_EMIT changed();
  changeFolders([this, isOn]() -> QString {
    try {
      grantKnownPlaces(m_collaborators.tasks, isOn ? KnownPlaces::include : KnownPlaces::leaveOut);
    } catch (const std::exception& error) {
      return shownName(error.what());
    }
    return {};
  });
}

QString SettingsModel::keepError() const {
  return m_state.keepProblem.isEmpty() ? m_keepError : m_state.keepProblem;
}

void SettingsModel::changeKept(std::function<void(const TaskServices&)> change) {
  m_queue.post([this, change = std::move(change)](const std::stop_token&) {
    QString problem;
    try {
      change(m_collaborators.tasks);
    } catch (const std::exception& error) {
      problem = shownName(error.what());
    }
    callOn(this, [this, problem] { m_keepError = problem; });
    readAndPublish();
  });
}

void SettingsModel::addKept(const QString& url) {
  if (const auto place = placeFrom(url)) changeKept([place](const TaskServices& tasks) { keepPlace(tasks, *place); });
}

void SettingsModel::removeKept(const QString& pattern) {
  changeKept([pattern = pattern.toStdString()](const TaskServices& tasks) {
    static_cast<void>(dropPatterns(tasks, std::span(&pattern, 1)));
  });
}

QString SettingsModel::letAgentFollow(const ScheduleSettings& settings) const {
  try {
    if (settings.isEnabled) {
      m_collaborators.agent.install(m_collaborators.program, settings.frequency);
    } else if (m_collaborators.agent.isInstalled()) {
      m_collaborators.agent.uninstall();
    }
  } catch (const std::exception& error) {
    return shownName(error.what());
  }
  return {};
}

void SettingsModel::changeSchedule(std::function<void(ScheduleSettings&)> change) {
  change(m_state.schedule);
  Q_EMIT changed();
  m_queue.post([this, change = std::move(change)](const std::stop_token&) {
    QString problem;
    try {
      problem = letAgentFollow(m_collaborators.schedule.changeSettings(change));
    } catch (const std::exception& error) {
      problem = shownName(error.what());
    }
    callOn(this, [this, problem] { m_agentStatus = problem; });
    readAndPublish();
  });
}

void SettingsModel::setScheduleEnabled(bool isEnabled) {
  changeSchedule([isEnabled](ScheduleSettings& settings) { settings.isEnabled = isEnabled; });
}

int SettingsModel::scheduleFrequency() const {
  return std::visit(FrequencyIndex{}, m_state.schedule.frequency);
}

void SettingsModel::setScheduleFrequency(int frequency) {
  const auto chosen = frequencyFrom(frequency, m_thresholdGB);
  changeSchedule([chosen](ScheduleSettings& settings) { settings.frequency = chosen; });
}

void SettingsModel::setScheduleThresholdGB(int threshold) {
  m_thresholdGB = std::max(1, threshold);
  if (scheduleFrequency() == LowSpace) setScheduleFrequency(LowSpace);
}

void SettingsModel::setScheduleApprovedOnly(bool isApprovedOnly) {
  changeSchedule([isApprovedOnly](ScheduleSettings& settings) { settings.runApprovedRulesOnly = isApprovedOnly; });
}

double SettingsModel::lastScheduledRun() const {
  return milliseconds(m_state.schedule.lastRunDate);
}

void SettingsModel::changeKey(std::function<bool()> change) {
  m_queue.post([this, change = std::move(change)](const std::stop_token&) {
    const bool isDone = change();
    callOn(this, [this, isDone] { m_hasKeyFailed = !isDone; });
    readAndPublish();
  });
}

void SettingsModel::storeKey(const QString& account, const QString& key) {
  changeKey([this, account = account.toStdString(), key = SecretText(key.trimmed().toStdString())] {
    return !key.isEmpty() && m_collaborators.keychain.saveKey(key, account);
  });
}

void SettingsModel::removeKey(const QString& account) {
  changeKey([this, account = account.toStdString()] { return m_collaborators.keychain.deleteKey(account); });
}

QString SettingsModel::keyError() const {
  return m_hasKeyFailed ? localizedText("settings.key_failed") : QString();
}

void SettingsModel::askForNotifications() {
  // Reading the state is asking for it.
  refresh();
}

void SettingsModel::installAgent() {
  if (m_state.schedule.isEnabled) changeSchedule([](ScheduleSettings&) {});
}

void SettingsModel::setModelAddress(const QString& address) {
  // The first address that is read has a library loaded.
  m_queue.post([this, wanted = address.trimmed()](const std::stop_token&) {
    bool isOnThisMachine = false;
    try {
      const auto url = m_collaborators.urls.read(wanted.toStdString());
      isOnThisMachine = url && url->isLoopback;
    } catch (const std::exception& error) {
      qWarning("The address cannot be read: %s", error.what());
    }
    callOn(this,
           [this, wanted, isRefused = !wanted.isEmpty() && !isOnThisMachine] { takeModelAddress(wanted, isRefused); });
  });
}

void SettingsModel::takeModelAddress(const QString& address, bool isRefused) {
  m_isModelRefused = isRefused;
  if (isRefused || address == m_state.modelAddress) {
    Q_EMIT changed();
    return;
  }
  m_state.modelAddress = address;
  changePreference(modelAddressKey, address);
}

void SettingsModel::setModelName(const QString& name) {
  const auto wanted = name.trimmed();
  if (wanted == m_state.modelName) return;
  m_state.modelName = wanted;
  changePreference(modelNameKey, wanted);
}

QString SettingsModel::modelError() const {
  return m_isModelRefused ? localizedText("settings.model_refused") : QString();
}

void SettingsModel::languageChanged() {
  Q_EMIT changed();
}

void SettingsModel::changePreference(std::string_view key, const QString& value) {
  Q_EMIT changed();
  m_queue.post([this, key, value = value.toStdString()](const std::stop_token&) {
    try {
      m_collaborators.preferences.setValue(key, Json(value));
    } catch (const std::exception& error) {
      qWarning("The preferences cannot be written: %s", error.what());
    }
    readAndPublish();
  });
}

int SettingsModel::recentsDays() const {
  return static_cast<int>(m_collaborators.tidy.settings().recentsDays);
}

void SettingsModel::setRecentsDays(int days) {
  constexpr auto range = AutoOrganizeSettings::recentsDayRange;
  const auto chosen = std::clamp<std::int64_t>(days, range.first, range.last);
  m_collaborators.tidy.update([chosen](AutoOrganizeSettings& settings) { settings.recentsDays = chosen; });
}

bool SettingsModel::useTopics() const {
  return m_collaborators.tidy.settings().useAITopics;
}

void SettingsModel::setUseTopics(bool useTopics) {
  m_collaborators.tidy.update([useTopics](AutoOrganizeSettings& settings) { settings.useAITopics = useTopics; });
}

QVariantList SettingsModel::autoFolders() const {
  QVariantList result;
  for (const auto& folder : m_collaborators.tidy.settings().folderURLs()) {
    result.append(GrantedFolders::row(folder, m_collaborators.tasks.home));
  }
  return result;
}

void SettingsModel::addAutoFolder(const QString& url) {
  const auto folder = placeFrom(url).value_or(FileUrl());
  if (folder == FileUrl()) return;
  m_collaborators.tidy.update([form = pathOrUrl(folder)](AutoOrganizeSettings& settings) {
    if (std::ranges::find(settings.folderPaths, form) == settings.folderPaths.end()) {
      settings.folderPaths.push_back(form);
    }
  });
}

void SettingsModel::removeAutoFolder(const QString& url) {
  const auto folder = placeFrom(url).value_or(FileUrl());
  m_collaborators.tidy.update([folder](AutoOrganizeSettings& settings) {
    std::erase_if(settings.folderPaths, [&](const std::string& stored) {
      AutoOrganizeSettings only;
      only.folderPaths = {stored};
      const auto meant = only.folderURLs();
      return meant.empty() || meant.front() == folder;
    });
  });
}

}  // namespace orvane
