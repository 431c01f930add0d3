#include "app/common/RunModel.h"

#include "app/common/Format.h"
#include "app/common/ProgressPace.h"
#include "app/common/Text.h"
#include "core/base/text/ByteCount.h"
#include "core/tasks/CarryOut.h"
#include "core/tasks/KeepTask.h"
#include "core/tasks/LargeRun.h"
#include "core/tasks/RestoreTask.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

namespace orvane {
namespace {

constexpr std::size_t maxMessages = 300;
// Of what came back under another name, those that a result names.
constexpr qsizetype renamedNamed = 3;
constexpr std::chrono::milliseconds lookInterval{100};

}  // namespace

RunModel::RunModel(WindowServices services, QObject* parent)
    : QAbstractListModel(parent), m_services(std::move(services)) {
  m_lookTimer.setInterval(lookInterval);
  connect(&m_lookTimer, &QTimer::timeout, this, &RunModel::progressChanged);
}

RunModel::~RunModel() {
  m_stop.request_stop();
}

RunProgress RunModel::progressFor() {
  // Called for every file; the main thread is told now and then.
  return [this, pace = ProgressPace()](std::size_t done, std::size_t total) mutable {
    if (!pace.isDue(done, total)) return;
    callOn(this, [this, done, total] {
      m_done = static_cast<std::int64_t>(done);
      m_total = static_cast<std::int64_t>(total);
      Q_EMIT progressChanged();
    });
  };
}

// Called between groups of items, when each of them has arrived and is recorded: the place to wait.
RunProgress RunModel::progressFor(const Approval& approval, const std::stop_token& stop) {
  const auto counter = std::make_shared<PaceCounter>(approval);
  callOn(this, [this, pace = counter->at(0)] { showPace(pace); });
  return [this, counter, stop, pause = m_pause, tell = progressFor()](std::size_t done, std::size_t total) {
    tell(done, total);
    callOn(this, [this, pace = counter->at(done)] { showPace(pace); });
    if (done == total) return;
    const auto before = PaceCounter::Clock::now();
    pause->wait(stop, [this] { callOn(this, [this] { Q_EMIT workChanged(); }); });
    counter->leaveOut(PaceCounter::Clock::now() - before);
  };
}

void RunModel::showPace(const RunPace& pace) {
  m_pace = pace;
  Q_EMIT progressChanged();
}

void RunModel::begin(Work work, std::int64_t total) {
  m_work = work;
  m_stop = {};
  m_done = 0;
  m_total = total;
  m_pace = {};
  m_pause->want(false);
  forgetResult();
  Q_EMIT progressChanged();
}

void RunModel::forgetResult() {
  if (m_work == Work::none) m_total = 0;
  m_result = Result::none;
  m_report = {};
  m_restored = {};
  m_warnings.clear();
  Q_EMIT workChanged();
}

void RunModel::startRun(std::int64_t total, Approve approve, Finished finished) {
  if (isWorking()) return;
  begin(Work::moving, total);
  m_workQueue.post([this, approve = std::move(approve), finished = std::move(finished), tasks = m_services.tasks,
                    stop = m_stop.get_token()](const std::stop_token&) {
    const auto report = std::make_shared<RunReport>();
    try {
      const auto approval = approve();
      *report = carryOut(tasks, approval, progressFor(approval, stop), stop);
    } catch (const std::exception& error) {
      report->note({{}, MoveResult::failed, {}, 0, error.what()}, 0, true);
    }
    callOn(this, [this, report, finished] {
      m_work = Work::none;
      m_pause->want(false);
      if (m_looked) stopLooking();
      m_result = Result::moved;
      if (report->runId) m_lastRun = report->runId;
      if (finished) finished(*report);
      report->forgetMoved();
      m_report = std::move(*report);
      Q_EMIT workChanged();
      Q_EMIT cleaned();
    });
  });
}

void RunModel::startRun(Approval approval, Finished finished) {
  const auto total = static_cast<std::int64_t>(approval.rows().size());
  startRun(
      total, [approval = std::move(approval)] { return approval; }, std::move(finished));
}

RunModel::LookedCount RunModel::startLooking() {
  m_looked = std::make_shared<std::atomic<std::size_t>>(0);
  m_lookTimer.start();
  Q_EMIT progressChanged();
  return m_looked;
}

void RunModel::stopLooking() {
  m_lookTimer.stop();
  m_looked.reset();
  Q_EMIT progressChanged();
}

QString RunModel::placeAt(int /*row*/) const {
  return {};
}

bool RunModel::isLarge(double count, double bytes) {
  return isLargeRun({static_cast<std::int64_t>(count), static_cast<std::int64_t>(bytes)});
}

void RunModel::cancel() {
  m_stop.request_stop();
}

void RunModel::pause() {
  if (!isMoving()) return;
  m_pause->want(true);
  Q_EMIT workChanged();
}

void RunModel::resume() {
  m_pause->want(false);
  Q_EMIT workChanged();
}

void RunModel::dismissResult() {
  if (!isWorking()) forgetResult();
}

void RunModel::followHistory(const History& history) {
  if (!m_lastRun || isWorking()) return;
  const auto run =
      std::ranges::find(history.runs, *m_lastRun, [](const RecordedRun& one) { return one.summary.runId; });
  if (run == history.runs.end() || run->canBeRestored()) return;
  m_lastRun.reset();
  forgetResult();
}

void RunModel::undo() {
  if (canUndo()) startRestore({*m_lastRun}, m_report.moved());
}

void RunModel::startRestore(RestoreOptions options, std::int64_t total) {
  startRestore(total, [tasks = m_services.tasks, options = std::move(options)](const RunProgress& progress,
                                                                               const std::stop_token& stop) {
    return std::optional(restoreNow(tasks, options, progress, stop));
  });
}

void RunModel::startRestore(std::int64_t total, Restore restore, std::function<void()> finished) {
  if (isWorking()) return;
  begin(Work::restoring, total);
  m_workQueue.post([this, restore = std::move(restore), finished = std::move(finished), look = m_lookAfterUndo,
                    progress = progressFor(), stop = m_stop.get_token()](const std::stop_token&) {
    const auto restored = restore(progress, stop);
    const auto after = look ? look() : std::function<void()>();
    callOn(this, [this, restored, finished, after, isComplete = !stop.stop_requested()] {
      if (after) after();
      m_work = Work::none;
      if (restored) {
        m_result = Result::restored;
        m_restored = *restored;
        m_warnings = restored->warnings;
        // One that was stopped can be taken up again.
        if (isComplete) m_lastRun.reset();
      }
      if (finished) finished();
      Q_EMIT workChanged();
      Q_EMIT undone();
    });
  });
}

void RunModel::addWarnings(const std::vector<std::string>& warnings) {
  m_warnings.insert(m_warnings.end(), warnings.begin(), warnings.end());
  Q_EMIT workChanged();
}

QStringList RunModel::messages() const {
  QStringList result;
  for (std::size_t at = 0; at < m_report.outcomes.size(); ++at) {
    const auto& outcome = m_report.outcomes[at];
    if (outcome.result == MoveResult::moved || outcome.result == MoveResult::cancelled) continue;
    if (static_cast<std::size_t>(result.size()) == maxMessages) break;
    const bool isNamed = !outcome.source.path().empty();
    result += m_report.areToTrash[at] || !isNamed
                  ? failureText(outcome)
                  : localizedText("cleanup.failed_move")
                        .arg(shownName(outcome.source.lastPathComponent()), failureReason(outcome));
  }
  for (const auto& warning : m_warnings) {
    if (static_cast<std::size_t>(result.size()) == maxMessages) break;
    result += textFrom(warning);
  }
  const auto all = static_cast<std::size_t>(m_report.failed) + m_warnings.size();
  if (all > maxMessages) {
    const auto more = static_cast<std::int64_t>(all - maxMessages);
    result += localizedText("cleanup.more_failures").arg(textFrom(formatCount(more)));
  }
  return result;
}

QString RunModel::resultText() const {
  switch (m_result) {
    case Result::none:
      return {};
    case Result::moved: {
      auto text = movedText(m_report.moved(), m_report.movedBytes());
      if (m_report.left == 0) return text;
      return text + u' ' + countedText("cleanup.cancelled", m_report.left);
    }
    case Result::restored:
      return restoredText();
  }
  return {};
}

QString RunModel::restoredText() const {
  const auto renamed = renamedItems();
  const auto inPlace = m_restored.count - renamed.size();
  QStringList parts;
  if (inPlace > 0 || renamed.empty()) parts += countedText("cleanup.restored", inPlace);
  parts += renamed.first(std::min(renamed.size(), renamedNamed));
  if (renamed.size() > renamedNamed) parts += countedText("history.more_renamed", renamed.size() - renamedNamed);
  if (m_restored.replaced.count > 0) parts += countedText("history.replaced", m_restored.replaced.count);
  return parts.join(u' ');
}

QStringList RunModel::renamedItems() const {
  QStringList result;
  for (const auto& [wanted, place] : m_restored.renamed) {
    result += localizedText("history.came_back_as")
                  .arg(shownName(wanted.lastPathComponent()), shownName(place.lastPathComponent()));
  }
  return result;
}

QString RunModel::resultNote() const {
  const bool freesSpace = m_result == Result::moved && m_report.toTrash.count > 0;
  return freesSpace ? localizedText("cleanup.space_note") : QString();
}

QString RunModel::movedText(std::int64_t count, std::int64_t bytes) const {
  return countedText("cleanup.result", count).arg(Format::bytes(static_cast<double>(bytes)));
}

QString RunModel::failureText(const MoveOutcome& failure) const {
  const auto name = failure.source.lastPathComponent();
  const auto reason = failureReason(failure);
  return name.empty() ? reason : localizedText("cleanup.failed_item").arg(shownName(name), reason);
}

QString RunModel::failureReason(const MoveOutcome& failure) {
  if (failure.result == MoveResult::changed) return localizedText("cleanup.changed_since_scan");
  if (failure.result == MoveResult::missing) return localizedText("cleanup.gone_since_scan");
  return textFrom(failure.error);
}

QString RunModel::progressText() const {
  if (m_looked && m_total == 0) {
    const auto count = static_cast<std::int64_t>(m_looked->load());
    return count == 0 ? QString() : countedText("count.files", count);
  }
  if (m_work == Work::none) return {};
  const auto key = m_work == Work::moving ? "cleanup.moving_progress" : "cleanup.restoring_progress";
  return localizedText(key).arg(textFrom(formatCount(m_done)), textFrom(formatCount(m_total)));
}

QString RunModel::paceText() const {
  return isMoving() ? m_pace.text() : QString();
}

void RunModel::languageChanged() {
  Q_EMIT progressChanged();
  Q_EMIT workChanged();
}

void RunModel::keepInBackground(const FileUrl& place, std::function<void()> kept) {
  postWork([this, services = m_services, place, kept = std::move(kept)](const std::stop_token&) {
    const bool isKept = tried([&] {
      keepPlace(services.tasks, place);
      return true;
    });
    if (isKept) callOn(this, kept);
  });
}

}  // namespace orvane
