#include "app/settings/TidyModel.h"

#include "app/common/ProgressPace.h"
#include "app/common/Text.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"

#include <QDebug>

#include <exception>
#include <utility>

namespace orvane {

TidyModel::TidyModel(MakeCollaborators makeCollaborators, QObject* parent)
    : QObject(parent), m_timer([this](std::function<void()> task) {
        m_runQueue.post([task = std::move(task)](const std::stop_token&) { task(); });
      }) {
  m_runQueue.post([this, make = std::move(makeCollaborators)](const std::stop_token&) { makeController(make); });
}

TidyModel::~TidyModel() {
  m_runStop.request_stop();
}

void TidyModel::makeController(const MakeCollaborators& makeCollaborators) {
  auto collaborators = makeCollaborators(m_timer);
  collaborators.whenChanged = [this] { publish(); };
  m_storedSettings = [&store = collaborators.store] { return store.get(); };
  m_controller = std::make_unique<AutoOrganizeController>(collaborators);
  m_controller->start();
  callOn(this, [this, reason = textFrom(m_controller->unavailableReason())] { m_unavailableReason = reason; });
  publish();
}

void TidyModel::publish() {
  const auto settings = m_controller->settings();
  const auto result = m_controller->lastResult();
  const bool isRunning = m_controller->isRunning();
  const bool isAvailable = m_controller->isAIAvailable();
  const bool launchAtLogin = m_controller->launchAtLoginEnabled();
  callOn(this, [this, settings, result, isRunning, isAvailable, launchAtLogin] {
    m_launchAtLogin = launchAtLogin;
    // Else what the user has just changed would jump back for a moment.
    if (m_changesUnderWay == 0) m_settings = settings;
    m_lastResult = result;
    m_isRunning = isRunning;
    m_isAvailable = isAvailable;
    m_isReady = true;
    Q_EMIT changed();
  });
}

void TidyModel::update(std::function<void(AutoOrganizeSettings&)> change) {
  if (!m_isReady) return;
  // Shows at once; storing it may have to wait for a run that is under way.
  change(m_settings);
  ++m_changesUnderWay;
  Q_EMIT changed();
  m_settingsQueue.post([this, change = std::move(change)](const std::stop_token&) {
    try {
      m_controller->update(change);
    } catch (const std::exception& error) {
      qWarning("The preferences cannot be written: %s", error.what());
    }
    callOn(this, [this] { --m_changesUnderWay; });
    publish();
  });
}

void TidyModel::setEnabled(bool isEnabled) {
  if (isEnabled == m_settings.isEnabled) return;
  update([isEnabled](AutoOrganizeSettings& settings) { settings.isEnabled = isEnabled; });
}

void TidyModel::setLaunchAtLogin(bool isEnabled) {
  if (!m_isReady) return;
  m_settingsQueue.post([this, isEnabled](const std::stop_token&) {
    m_controller->setLaunchAtLogin(isEnabled);
    const bool isRefused = m_controller->launchAtLoginEnabled() != isEnabled;
    callOn(this, [this, problem = textFrom(isRefused ? m_controller->statusMessage().value_or("") : "")] {
      m_launchAtLoginError = problem;
      Q_EMIT changed();
    });
    publish();
  });
}

double TidyModel::lastRunDate() const {
  return milliseconds(m_settings.lastRunDate);
}

void TidyModel::runNow() {
  if (!m_isReady || m_isRunning) return;
  m_isRunning = true;
  m_runStop = {};
  m_runError.clear();
  m_done = 0;
  m_total = 0;
  Q_EMIT changed();
  Q_EMIT progressChanged();
  m_runQueue.post([this, stop = m_runStop.get_token()](const std::stop_token&) {
    ProgressPace pace;
    const auto progress = [&](std::size_t done, std::size_t total) {
      if (!pace.isDue(done, total)) return;
      callOn(this, [this, done, total] {
        m_done = done;
        m_total = total;
        Q_EMIT progressChanged();
      });
    };
    try {
      m_controller->runNow({}, stop, progress);
    } catch (const std::exception& error) {
      callOn(this, [this, problem = shownName(error.what())] { m_runError = problem; });
    }
    publish();
  });
}

QString TidyModel::statusText() const {
  if (!m_runError.isEmpty()) return m_runError;
  if (!m_lastResult) return {};
  if (m_lastResult->totalMoved() == 0) return localizedText("tidy.nothing");
  return countedText("tidy.moved", m_lastResult->movedToRecents).arg(countedText("tidy.sorted", m_lastResult->sorted));
}

void TidyModel::languageChanged() {
  Q_EMIT changed();
}

void TidyModel::cancel() {
  m_runStop.request_stop();
}

void TidyModel::reload() {
  if (!m_isReady) return;
  m_settingsQueue.post([this](const std::stop_token&) {
    if (m_storedSettings() == m_controller->settings()) return;
    try {
      m_controller->update([](AutoOrganizeSettings&) {});
    } catch (const std::exception& error) {
      qWarning("The preferences cannot be written: %s", error.what());
    }
  });
}

}  // namespace orvane
