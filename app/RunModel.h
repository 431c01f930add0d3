#pragma once

#include "app/BackgroundQueue.h"
#include "app/CleanupWork.h"
#include "app/WindowServices.h"
#include "core/base/Uuid.h"
#include "core/safety/CleanupRun.h"

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>
#include <QStringList>
#include <QTimer>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

// What a run that moves files came to, kept as data so that its texts follow the language.
struct RunReport {
  std::optional<Uuid> runId;  // absent when nothing was moved
  std::int64_t moved = 0;
  std::int64_t bytes = 0;
  std::int64_t left = 0;  // not tried, as the run was stopped
  std::vector<CleanupFailure> failures;

  // Of the outcomes of a run. What was in its place already is no failure.
  [[nodiscard]] static RunReport of(const Uuid& runId, std::span<const MoveOutcome> outcomes);
};

// A list that the user moves files from: one run at a time in the background, with progress, Cancel, its result in
// words, and Undo of the last one.
class RunModel : public QAbstractListModel {
  Q_OBJECT
  QML_ANONYMOUS
  Q_PROPERTY(bool isWorking READ isWorking NOTIFY workChanged)
  Q_PROPERTY(bool canUndo READ canUndo NOTIFY workChanged)
  Q_PROPERTY(QStringList messages READ messages NOTIFY workChanged)
  Q_PROPERTY(QString resultText READ resultText NOTIFY workChanged)
  Q_PROPERTY(double progressDone READ progressDone NOTIFY progressChanged)
  Q_PROPERTY(double progressTotal READ progressTotal NOTIFY progressChanged)
  Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged)

 public:
  ~RunModel() override;

  [[nodiscard]] bool isWorking() const noexcept { return m_work != Work::none; }
  [[nodiscard]] bool isMoving() const noexcept { return m_work == Work::moving; }
  [[nodiscard]] bool isRestoring() const noexcept { return m_work == Work::restoring; }
  // Whether the last run can be undone from here.
  [[nodiscard]] bool canUndo() const noexcept { return m_lastRun.has_value() && m_work == Work::none; }
  // What went wrong in the last run or its undoing; the first few hundred, and how many more there are.
  [[nodiscard]] QStringList messages() const;
  [[nodiscard]] QString resultText() const;
  [[nodiscard]] double progressDone() const noexcept { return static_cast<double>(m_done); }
  [[nodiscard]] double progressTotal() const noexcept { return static_cast<double>(m_total); }
  [[nodiscard]] virtual QString progressText() const;

  Q_INVOKABLE void undo();
  Q_INVOKABLE virtual void cancel();

  // Texts are new.
  virtual void languageChanged();

 Q_SIGNALS:
  void workChanged();
  void progressChanged();
  void cleaned();
  void undone();

 protected:
  explicit RunModel(WindowServices services, QObject* parent);

  [[nodiscard]] const WindowServices& services() const noexcept { return m_services; }

  // Has `carryOut` called in the background; what it throws becomes a failure. It may use the services and what it
  // holds itself, nothing else of the model. `finished` is then called on the main thread.
  using CarryOut = std::function<RunReport(const CleanupRun::Progress& progress, const std::stop_token& stop)>;
  void startRun(std::int64_t total, CarryOut carryOut, std::function<void(const RunReport&)> finished = {});
  // For a search in the background: progressText() tells how many files it has counted here, until stopLooking().
  using LookedCount = std::shared_ptr<std::atomic<std::size_t>>;
  [[nodiscard]] LookedCount startLooking();
  void stopLooking();
  // After an undo, on the background thread and then on the main thread.
  using LookAfterUndo = std::function<std::function<void()>()>;
  void setLookAfterUndo(LookAfterUndo look) { m_lookAfterUndo = std::move(look); }
  // Has a task carried out between runs.
  void postWork(BackgroundQueue::Task task) { m_workQueue.post(std::move(task)); }
  void forgetResult();

  [[nodiscard]] virtual QString movedText(std::int64_t count, std::int64_t bytes) const;
  [[nodiscard]] virtual QString failureText(const CleanupFailure& failure) const;

 private:
  enum class Work : std::uint8_t { none, moving, restoring };
  enum class Result : std::uint8_t { none, moved, restored };

  void begin(Work work, std::int64_t total);
  [[nodiscard]] CleanupRun::Progress progressFor();
  void finishUndo(std::int64_t count, std::vector<std::string> warnings, bool isComplete);

  WindowServices m_services;
  Work m_work = Work::none;
  std::stop_source m_stop;
  std::int64_t m_done = 0;
  std::int64_t m_total = 0;
  std::optional<Uuid> m_lastRun;
  LookAfterUndo m_lookAfterUndo;
  LookedCount m_looked;
  QTimer m_lookTimer;
  Result m_result = Result::none;
  RunReport m_report;
  std::int64_t m_restoredCount = 0;
  std::vector<std::string> m_warnings;
  BackgroundQueue m_workQueue;
};

}  // namespace orvane
