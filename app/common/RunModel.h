#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/common/PausePoint.h"
#include "app/common/RunPace.h"
#include "app/shell/WindowServices.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/Uuid.h"
#include "core/tasks/History.h"
#include "core/tasks/Proposal.h"
#include "core/tasks/RestoreTask.h"
#include "core/tasks/RunReport.h"

#include <QtQml/qqmlregistration.h>
#include <QAbstractListModel>
#include <QStringList>
#include <QTimer>

#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

// A list that the user moves files from: one run at a time in the background, with progress, Cancel, its result in
// words, and Undo of the last one.
class RunModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(bool isWorking READ isWorking NOTIFY workChanged)
  Q_PROPERTY(bool canUndo READ canUndo NOTIFY workChanged)
  Q_PROPERTY(QStringList messages READ messages NOTIFY workChanged)
  Q_PROPERTY(QStringList renamedItems READ renamedItems NOTIFY workChanged)
  Q_PROPERTY(QString resultText READ resultText NOTIFY workChanged)
  Q_PROPERTY(QString resultNote READ resultNote NOTIFY workChanged)
  Q_PROPERTY(double progressDone READ progressDone NOTIFY progressChanged)
  Q_PROPERTY(double progressTotal READ progressTotal NOTIFY progressChanged)
  Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged)
  Q_PROPERTY(QString paceText READ paceText NOTIFY progressChanged)
  Q_PROPERTY(bool canPause READ isMoving NOTIFY workChanged)
  Q_PROPERTY(bool isPaused READ isPaused NOTIFY workChanged)
  Q_PROPERTY(bool isWaiting READ isWaiting NOTIFY workChanged)

 public:
  ~RunModel() override;

  [[nodiscard]] bool isWorking() const noexcept { return m_work != Work::none; }
  [[nodiscard]] bool isMoving() const noexcept { return m_work == Work::moving; }
  [[nodiscard]] bool isRestoring() const noexcept { return m_work == Work::restoring; }
  // Whether the last run can be undone from here.
  [[nodiscard]] bool canUndo() const noexcept { return m_lastRun.has_value() && m_work == Work::none; }
  // The failures of the last run or its undoing; the first few hundred, and how many more there are.
  [[nodiscard]] QStringList messages() const;
  // Of the items that came back under another name, a sentence each.
  [[nodiscard]] QStringList renamedItems() const;
  [[nodiscard]] QString resultText() const;
  // When the space of the last run is free; empty where nothing went to the Trash.
  [[nodiscard]] QString resultNote() const;
  [[nodiscard]] double progressDone() const noexcept { return static_cast<double>(m_done); }
  [[nodiscard]] double progressTotal() const noexcept { return static_cast<double>(m_total); }
  [[nodiscard]] virtual QString progressText() const;
  // Of items that move: the one that is next, the bytes so far, the speed and the time left. Empty in any other work.
  [[nodiscard]] QString paceText() const;
  // Whether the run waits, or is to wait as soon as the items that are on their way have arrived.
  [[nodiscard]] bool isPaused() const { return m_pause->isWanted(); }
  [[nodiscard]] bool isWaiting() const { return m_pause->isWaiting(); }

  // Whether a run of so much is asked for once more.
  Q_INVOKABLE static bool isLarge(double count, double bytes);
  // The item of a row, as a path or a URL; empty for a row that is none.
  [[nodiscard]] Q_INVOKABLE virtual QString placeAt(int row) const;
  Q_INVOKABLE void undo();
  Q_INVOKABLE virtual void cancel();
  // Has a run that moves items wait where nothing is half done, and go on.
  Q_INVOKABLE void pause();
  Q_INVOKABLE void resume();
  // The result was read.
  Q_INVOKABLE void dismissResult();
  // The journal is new: a run that was brought back elsewhere is no longer the last one that could be undone here.
  void followHistory(const History& history);

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

  // Has so many items moved in the background; what is thrown becomes a failure. `approve` is called there too: going
  // through a million rows takes a while. It may use what it holds itself, nothing else of the model. `finished` is
  // then called on the main thread.
  using Approve = std::function<Approval()>;
  using Finished = std::function<void(const RunReport&)>;
  void startRun(std::int64_t total, Approve approve, Finished finished = {});
  void startRun(Approval approval, Finished finished = {});
  // Brings back in the background what the options name, of so many items where that is known; undone() tells the end.
  void startRestore(RestoreOptions options, std::int64_t total = 0);
  // The same by `restore`, which returns nothing where it brought nothing back and there is nothing to tell.
  // `finished` is then called on the main thread, before undone().
  using Restore = std::function<std::optional<Restored>(const RunProgress& progress, const std::stop_token& stop)>;
  void startRestore(std::int64_t total, Restore restore, std::function<void()> finished = {});
  // Adds to what messages() tells.
  void addWarnings(const std::vector<std::string>& warnings);
  // The result of a search in the background; nothing where it throws, and messages() says why.
  template <typename Search>
  auto tried(Search search) -> decltype(search()) {
    try {
      return search();
    } catch (const std::exception& error) {
      callOn(this, [this, problem = escapedForDisplay(error.what())] { addWarnings({problem}); });
      return {};
    }
  }
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
  // Puts a place on the keep list in the background; `kept` is then called on the main thread.
  void keepInBackground(const FileUrl& place, std::function<void()> kept);

  [[nodiscard]] virtual QString movedText(std::int64_t count, std::int64_t bytes) const;
  // Of an item that was bound for the Trash.
  [[nodiscard]] virtual QString failureText(const MoveOutcome& failure) const;
  // Why an item was not moved.
  [[nodiscard]] static QString failureReason(const MoveOutcome& failure);

 private:
  enum class Work : std::uint8_t { none, moving, restoring };
  enum class Result : std::uint8_t { none, moved, restored };

  void begin(Work work, std::int64_t total);
  [[nodiscard]] QString restoredText() const;
  [[nodiscard]] RunProgress progressFor();
  [[nodiscard]] RunProgress progressFor(const Approval& approval, const std::stop_token& stop);
  void showPace(const RunPace& pace);

  WindowServices m_services;
  Work m_work = Work::none;
  std::stop_source m_stop;
  std::int64_t m_done = 0;
  std::int64_t m_total = 0;
  RunPace m_pace;
  std::shared_ptr<PausePoint> m_pause = std::make_shared<PausePoint>();
  std::optional<Uuid> m_lastRun;
  LookAfterUndo m_lookAfterUndo;
  LookedCount m_looked;
  QTimer m_lookTimer;
  Result m_result = Result::none;
  RunReport m_report;
  Restored m_restored;
  std::vector<std::string> m_warnings;
  BackgroundQueue m_workQueue;
};

}  // namespace orvane
