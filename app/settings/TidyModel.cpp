#include "app/settings/TidyModel.h"

#include "app/common/NoticeTexts.h"
#include "app/common/ProgressPace.h"
#include "app/common/Text.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "core/tasks/CategoryGroups.h"

#include <QDebug>

#include <exception>
#include <utility>

namespace orvane {
namespace {

// Of each folder that something goes to.
constexpr qsizetype namesShown = 4;

}  // namespace

TidyModel::TidyModel(MakeCollaborators makeCollaborators, QObject* parent)
    : QObject(parent), m_timer([this](std::function<void()> task) {
        m_runQueue.post([task = std::move(task)](const std::stop_token&) { task(); });
      }) {
  m_runQueue.post([this, make = std::move(makeCollaborators)](const std::stop_token&) { makeController(make); });
}

TidyModel::~TidyModel() {
  m_runStop.request_stop();
  m_lookStop.request_stop();
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

void TidyModel::look() {
  if (!m_isReady || m_isRunning) return;
  lookFor(ReturnedUse::leave);
  Q_EMIT asked();
}

void TidyModel::takeReturned() {
  if (m_isReady && !m_isRunning) lookFor(ReturnedUse::take);
}

void TidyModel::lookFor(ReturnedUse returned) {
  m_lookStop.request_stop();
  m_lookStop = {};
  show({}, {});
  m_isLooking = true;
  m_runError.clear();
  m_restoredCount.reset();
  Q_EMIT lookChanged();
  m_runQueue.post([this, returned, stop = m_lookStop.get_token()](const std::stop_token&) {
    TidyLook look;
    RowSum sum;
    QString problem;
    try {
      look = m_controller->look(stop, returned);
      for (const auto& [folder, proposal] : look.proposals) {
        const auto wanted = proposal.approve().toFolders();
        sum = {sum.count + wanted.count, checkedAdd(sum.bytes, wanted.bytes)};
      }
    } catch (const std::exception& error) {
      problem = shownName(error.what());
    }
    callOn(this, [this, stop, problem, sum, look = std::move(look)]() mutable {
      if (stop.stop_requested()) return;
      m_isLooking = false;
      m_runError = problem;
      show(std::move(look), sum);
      Q_EMIT changed();
    });
  });
}

void TidyModel::show(TidyLook look, RowSum sum) {
  m_look = std::move(look);
  m_proposedSum = sum;
  Q_EMIT lookChanged();
}

QVariantList TidyModel::proposed() const {
  const FileUrl home(homeFolder());
  QVariantList rows;
  for (const auto& [folder, proposal] : m_look.proposals) {
    const auto lengths = rowsByGroup(proposal);
    for (std::size_t at = 0; at < lengths.size(); ++at) {
      const auto& group = proposal.groups()[at];
      RowSum sum;
      QStringList names;
      for (std::size_t row = lengths[at].first; row < lengths[at].first + lengths[at].count; ++row) {
        const auto proposed = proposal.row(row);
        sum.add(proposed.item.fileSize());
        if (names.size() < namesShown) names.append(shownName(proposed.item.url().lastPathComponent()));
      }
      rows.append(QVariantMap{{QStringLiteral("name"), shownName(group.name)},
                              {QStringLiteral("place"), shownPath(group.destinationFolder->path(), home)},
                              {QStringLiteral("names"), names},
                              {QStringLiteral("count"), static_cast<double>(sum.count)},
                              {QStringLiteral("bytes"), static_cast<double>(sum.bytes)},
                              {QStringLiteral("warning"), textFrom(group.refusal)}});
    }
  }
  return rows;
}

double TidyModel::returnedCount() const {
  std::int64_t count = 0;
  for (const auto& notice : m_look.notices) {
    if (const auto* returned = std::get_if<RowsReturned>(&notice)) count += returned->rows.count;
  }
  return static_cast<double>(count);
}

QStringList TidyModel::remarks() const {
  return noticeTexts(m_look.notices, FileUrl(homeFolder()));
}

void TidyModel::dismiss() {
  m_lookStop.request_stop();
  m_isLooking = false;
  show({}, {});
}

void TidyModel::confirm() {
  if (m_isLooking || m_isRunning || m_proposedSum.count == 0) return;
  m_isRunning = true;
  m_runStop = {};
  m_runError.clear();
  m_done = 0;
  m_total = 0;
  Q_EMIT changed();
  Q_EMIT progressChanged();
  m_runQueue.post([this, look = m_look, stop = m_runStop.get_token()](const std::stop_token&) mutable {
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
      const auto report = m_controller->runShown(std::move(look), stop, progress);
      const bool isBusy = report.end == AutoOrganizeReport::End::busy;
      std::int64_t failed = 0;
      std::vector<Uuid> runs;
      for (const auto& run : report.runs) {
        failed += run.report.failed;
        if (run.report.runId) runs.push_back(*run.report.runId);
      }
      callOn(this, [this, isBusy, failed, runs = std::move(runs)] {
        m_lastRuns = runs;
        if (isBusy) m_runError = localizedText("tidy.busy");
        if (failed > 0) m_runError = countedText("tidy.failed", failed);
      });
    } catch (const std::exception& error) {
      callOn(this, [this, problem = shownName(error.what())] { m_runError = problem; });
    }
    publish();
    callOn(this, [this] { Q_EMIT tidied(); });
  });
  dismiss();
}

void TidyModel::undo() {
  if (!canUndo()) return;
  m_isRunning = true;
  m_runError.clear();
  m_done = 0;
  m_total = 0;
  Q_EMIT changed();
  Q_EMIT progressChanged();
  m_runQueue.post([this, runs = std::exchange(m_lastRuns, {})](const std::stop_token&) {
    const auto restored = m_controller->undo(runs);
    callOn(this, [this, count = restored.count, warnings = restored.warnings] {
      m_restoredCount = count;
      if (!warnings.empty()) m_runError = shownName(warnings.front());
    });
    publish();
  });
}

QString TidyModel::statusText() const {
  if (!m_runError.isEmpty()) return m_runError;
  if (m_restoredCount) return countedText("cleanup.restored", *m_restoredCount);
  if (!m_lastResult) return {};
  if (m_lastResult->totalMoved() == 0) return localizedText("tidy.nothing");
  return countedText("tidy.moved", m_lastResult->movedToRecents).arg(countedText("tidy.sorted", m_lastResult->sorted));
}

void TidyModel::languageChanged() {
  Q_EMIT changed();
  Q_EMIT lookChanged();
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
