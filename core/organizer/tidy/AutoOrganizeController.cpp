#include "core/organizer/tidy/AutoOrganizeController.h"

#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "core/organizer/topics/TopicCategorizerFactory.h"
#include "core/platform/LoginItems.h"
#include "core/platform/RepeatingTimer.h"

#include <fmt/format.h>

#include <exception>
#include <utility>

namespace orvane {

AutoOrganizeController::AutoOrganizeController(Collaborators collaborators)
    : m_collaborators(std::move(collaborators)),
      m_unavailableReason(m_collaborators.factory.unavailableReason()),
      m_settings(m_collaborators.store.get()),
      m_launchAtLoginEnabled(m_collaborators.loginItems.isEnabled()) {}

AutoOrganizeController::~AutoOrganizeController() {
  m_collaborators.timer.stop();
}

AutoOrganizeSettings AutoOrganizeController::settings() const {
  const std::lock_guard lock(m_mutex);
  return m_settings;
}

bool AutoOrganizeController::isRunning() const {
  const std::lock_guard lock(m_mutex);
  return m_isRunning;
}

std::optional<std::string> AutoOrganizeController::statusMessage() const {
  const std::lock_guard lock(m_mutex);
  return m_statusMessage;
}

std::optional<AutoOrganizeResult> AutoOrganizeController::lastResult() const {
  const std::lock_guard lock(m_mutex);
  return m_lastResult;
}

bool AutoOrganizeController::launchAtLoginEnabled() const {
  const std::lock_guard lock(m_mutex);
  return m_launchAtLoginEnabled;
}

void AutoOrganizeController::start() {
  if (settings().isEnabled) rescheduleTimer();
}

void AutoOrganizeController::rescheduleTimer() {
  m_collaborators.timer.stop();
  if (!settings().isEnabled) return;
  m_collaborators.timer.start(interval, [this] {
    try {
      runNow();
    } catch (const std::exception&) {
      // The next tick tries again; nothing has moved that is not journalled.
    }
  });
}

AutoOrganizeRequest AutoOrganizeController::request() const {
  // Another process may have changed them.
  AutoOrganizeRequest request{.options = TidyOptions::of(m_collaborators.store.get()), .now = m_collaborators.now()};
  if (!isAIAvailable()) request.options.topics = TopicUse::never;
  return request;
}

AutoOrganizeReport AutoOrganizeController::runNow(std::function<bool(std::span<const TidyProposal>)> approve,
                                                  const std::stop_token& stop, const RunProgress& progress,
                                                  ReturnedUse returned) {
  auto wanted = request();
  wanted.options.returned = returned;
  wanted.approve = std::move(approve);
  wanted.progress = progress;
  return run(wanted, stop);
}

TidyLook AutoOrganizeController::look(const std::stop_token& stop, ReturnedUse returned) {
  auto wanted = request();
  wanted.options.returned = returned;
  return m_collaborators.organizer.look(wanted, stop);
}

AutoOrganizeReport AutoOrganizeController::runShown(TidyLook shown, const std::stop_token& stop,
                                                    const RunProgress& progress) {
  auto wanted = request();
  wanted.shown = std::move(shown);
  wanted.progress = progress;
  return run(wanted, stop);
}

Restored AutoOrganizeController::undo(std::span<const Uuid> runs) {
  return m_collaborators.organizer.undo(runs);
}

AutoOrganizeReport AutoOrganizeController::run(const AutoOrganizeRequest& request, const std::stop_token& stop) {
  {
    const std::lock_guard lock(m_mutex);
    if (m_isRunning) {
      AutoOrganizeReport report;
      report.end = AutoOrganizeReport::End::busy;
      return report;
    }
    m_isRunning = true;
  }
  struct Running {
    AutoOrganizeController& controller;
    ~Running() { controller.setRunning(false); }
  };
  const Running running{*this};
  changed();

  auto report = m_collaborators.organizer.run(request, stop);
  if (report.end != AutoOrganizeReport::End::completed) return report;

  {
    const std::lock_guard lock(m_mutex);
    m_statusMessage = statusText(report.result);
    m_lastResult = report.result;
  }
  auto stored = m_collaborators.store.noteRun(request.now, report.result.totalMoved());
  const std::lock_guard lock(m_mutex);
  m_settings = std::move(stored);
  return report;
}

void AutoOrganizeController::update(const std::function<void(AutoOrganizeSettings&)>& change) {
  auto stored = m_collaborators.store.update(change);
  {
    const std::lock_guard lock(m_mutex);
    m_settings = std::move(stored);
  }
  rescheduleTimer();
  changed();
}

void AutoOrganizeController::setLaunchAtLogin(bool isEnabled) {
  std::optional<std::string> problem;
  try {
    m_collaborators.loginItems.setEnabled(isEnabled);
  } catch (const std::exception& error) {
    problem = m_collaborators.profile.inOwnWords(fmt::format(
        "Couldn't change Launch at Login: {}. You can add Orvane in System Settings → General → Login Items.",
        error.what()));
  }
  {
    const std::lock_guard lock(m_mutex);
    if (problem) {
      m_statusMessage = std::move(problem);
    } else {
      m_launchAtLoginEnabled = isEnabled;
    }
  }
  changed();
}

std::string AutoOrganizeController::statusText(const AutoOrganizeResult& result) {
  if (result.totalMoved() == 0) return "Everything is tidy.";
  return fmt::format("Moved {} new item{} to Recents and sorted {}. Undo anytime in History.", result.movedToRecents,
                     result.movedToRecents == 1 ? "" : "s", result.sorted);
}

void AutoOrganizeController::changed() const {
  if (m_collaborators.whenChanged) m_collaborators.whenChanged();
}

void AutoOrganizeController::setRunning(bool isRunning) {
  {
    const std::lock_guard lock(m_mutex);
    m_isRunning = isRunning;
  }
  changed();
}

}  // namespace orvane
