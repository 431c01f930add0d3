#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/overview/OverviewAreas.h"
#include "app/shell/WindowServices.h"
#include "core/platform/TrashUsage.h"
#include "core/rules/records/ScheduleSettings.h"

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QTimer>
#include <QVariantList>

#include <memory>
#include <stop_token>
#include <vector>

namespace orvane {

class AppState;
class CleanupModel;
class HistoryModel;
class JournalFeed;

// The content of the first screen beside the figures of AppState: the areas of the last scan, the last runs, the
// schedule.
class OverviewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  // {label, titleKey, category, colorIndex, folder, bytes, count, children}, largest first once the scan is through.
  Q_PROPERTY(QVariantList areas READ areas NOTIFY areasChanged)
  // {id, date, kindKey, stateKey, count, bytes, canUndo}, newest first.
  Q_PROPERTY(QVariantList recentRuns READ recentRuns NOTIFY runsChanged)
  Q_PROPERTY(int runCount READ runCount NOTIFY runsChanged)
  Q_PROPERTY(double firstRunDate READ firstRunDate NOTIFY runsChanged)
  // Content of the Trash; the moment is 0 where nothing tells it.
  Q_PROPERTY(double trashCount READ trashCount NOTIFY trashChanged)
  Q_PROPERTY(double trashBytes READ trashBytes NOTIFY trashChanged)
  Q_PROPERTY(double trashOldest READ trashOldest NOTIFY trashChanged)
  Q_PROPERTY(bool trashIsPartly READ trashIsPartly NOTIFY trashChanged)  // a disk did not answer
  Q_PROPERTY(double nextScheduledRun READ nextScheduledRun NOTIFY scheduleChanged)
  Q_PROPERTY(int enabledRules READ enabledRules NOTIFY scheduleChanged)
  Q_PROPERTY(QString scheduleFrequencyKey READ scheduleFrequencyKey NOTIFY scheduleChanged)
  Q_PROPERTY(int scheduleThresholdGB READ scheduleThresholdGB NOTIFY scheduleChanged)

 public:
  struct Collaborators {  // all must outlive the model
    AppState& state;
    CleanupModel& cleanup;
    HistoryModel& history;
    JournalFeed& feed;
  };
  OverviewModel(WindowServices services, Collaborators collaborators, QObject* parent = nullptr);
  ~OverviewModel() override;

  [[nodiscard]] const QVariantList& areas() const noexcept { return m_areas; }
  [[nodiscard]] QVariantList recentRuns() const;
  [[nodiscard]] int runCount() const;
  [[nodiscard]] double firstRunDate() const;
  [[nodiscard]] double trashCount() const noexcept { return static_cast<double>(m_trash.count); }
  [[nodiscard]] double trashBytes() const noexcept { return static_cast<double>(m_trash.bytes); }
  [[nodiscard]] double trashOldest() const;
  [[nodiscard]] bool trashIsPartly() const noexcept { return m_trash.unansweredDisks > 0; }
  // 0 where no date is set: runs are off, or wait for the disk to fill.
  [[nodiscard]] double nextScheduledRun() const;
  [[nodiscard]] int enabledRules() const noexcept { return m_enabledRules; }
  [[nodiscard]] QString scheduleFrequencyKey() const;
  // Of "frequency.low_space", in units of 2 to the power 30 bytes.
  [[nodiscard]] int scheduleThresholdGB() const;

  // Other programs fill and empty the Trash too.
  Q_INVOKABLE void reloadTrash();
  Q_INVOKABLE void undo(const QString& runId);
  // Goes to the cleanup, which shows that area only.
  Q_INVOKABLE void showArea(const QString& category, const QString& folder);

  // The rules or the schedule may be new.
  void reloadSchedule();

 Q_SIGNALS:
  void areasChanged();
  void runsChanged();
  void trashChanged();
  void scheduleChanged();

 private:
  void forgetSums();
  void summarize();
  void summarizeSoon();

  WindowServices m_services;
  Collaborators m_collaborators;
  QVariantList m_areas;
  QTimer m_timer;
  bool m_isSummarizing = false;
  bool m_isFilling = false;  // a scan runs
  // The queue's own.
  OverviewSums m_sums;
  std::vector<OverviewArea> m_ordered;
  std::stop_source m_stop;
  TrashUsage::Totals m_trash;
  bool m_isReadingTrash = false;
  BackgroundQueue m_trashQueue;
  ScheduleSettings m_schedule;
  int m_enabledRules = 0;
  BackgroundQueue m_queue;
};

}  // namespace orvane
