#include "app/TidyModel.h"

#include "app/Text.h"
#include "core/organizer/AutoOrganizeSettingsStore.h"

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
  m_controller = std::make_unique<AutoOrganizeController>(std::move(collaborators));
  m_controller->start();
  publish();
}

void TidyModel::publish() {
  const auto settings = m_controller->settings();
  const auto status = m_controller->statusMessage();
  const bool isRunning = m_controller->isRunning();
  const bool isAvailable = m_controller->isAIAvailable();
  const bool launchAtLogin = m_controller->launchAtLoginEnabled();
  callOn(this, [this, settings, status, isRunning, isAvailable, launchAtLogin] {
    m_launchAtLogin = launchAtLogin;
    m_settings = settings;
    m_statusText = textFrom(status.value_or(""));
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
  Q_EMIT changed();
  m_settingsQueue.post([this, change = std::move(change)](const std::stop_token&) {
    try {
      m_controller->update(change);
    } catch (const std::exception& error) {
      qWarning("The preferences cannot be written: %s", error.what());
      publish();
    }
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
  Q_EMIT changed();
  m_runQueue.post([this, stop = m_runStop.get_token()](const std::stop_token&) {
    try {
      m_controller->runNow({}, stop);
    } catch (const std::exception& error) {
      qWarning("Tidying failed: %s", error.what());
    }
    publish();
  });
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
