#pragma once

#include "app/cleanup/CleanupArrangement.h"
#include "app/common/BackgroundQueue.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <stop_token>

namespace orvane {

// Has what the list shows worked out in the background: one arrangement at a time, and once more where something
// changed meanwhile.
class CleanupArranger : public QObject {
  Q_OBJECT

 public:
  struct Question {
    ScannedItems::Snapshot scanned;
    CleanupQuery query;
  };
  // All are called on the main thread.
  struct Asker {
    std::function<Question()> ask;
    std::function<bool()> isGrowing;  // whether items are coming in
    std::function<void(CleanupArrangement)> show;
  };

  explicit CleanupArranger(Asker asker);
  ~CleanupArranger() override;

  void arrange();
  // After a moment that grows with the time which an arrangement takes: items are coming in.
  void arrangeLater();
  // At once: work under way now answers an outdated question.
  void arrangeAnew();
  // The items are those of another scan: work under way is not shown.
  void forget() { ++m_generation; }

 private:
  void startTimer();

  Asker m_asker;
  QTimer m_timer;
  bool m_isArranging = false;
  bool m_isDirty = false;
  int m_generation = 0;
  std::stop_source m_stop;
  std::chrono::milliseconds m_lastTime{0};

  BackgroundQueue m_queue;
};

}  // namespace orvane
