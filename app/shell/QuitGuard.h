#pragma once

#include <QObject>

#include <vector>

namespace orvane {

class RunModel;
class TidyModel;

// Decides when the program ends: at once, or, while items are being moved, as the user answers.
class QuitGuard : public QObject {
  Q_OBJECT

 public:
  // All of them must outlive it.
  QuitGuard(std::vector<RunModel*> models, TidyModel& tidy, QObject* parent = nullptr);

  void quit();
  // Ends once nothing moves any more.
  void finishFirst();
  // The same, with the runs stopped after the item that they are at.
  void stopFirst();

 Q_SIGNALS:
  // Items are being moved: the user is to say how it ends.
  void asked();
  void finished();

 private:
  [[nodiscard]] bool isMoving() const;
  void check();

  std::vector<RunModel*> m_models;
  TidyModel& m_tidy;
  bool m_isWaiting = false;
};

}  // namespace orvane
