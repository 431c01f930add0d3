#pragma once

#include "app/common/BackgroundQueue.h"
#include "app/common/JournalFeed.h"
#include "app/shell/WindowServices.h"
#include "core/tasks/History.h"

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QVariantList>

#include <stop_token>

namespace orvane {

// The sums over the history: in bytes, everything that was moved, what came back, what is still in the Trash, and what
// was moved in each of the last weeks. They are added up in the background, and only while somebody looks: the disk is
// asked for every item.
class HistoryFigures : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(bool isShown READ isShown WRITE setShown NOTIFY isShownChanged)
  Q_PROPERTY(bool isKnown READ isKnown NOTIFY changed)
  Q_PROPERTY(double movedBytes READ movedBytes NOTIFY changed)
  Q_PROPERTY(double restoredBytes READ restoredBytes NOTIFY changed)
  Q_PROPERTY(double inTrashBytes READ inTrashBytes NOTIFY changed)
  Q_PROPERTY(QVariantList weeks READ weeks NOTIFY changed)

 public:
  // `feed` must outlive it.
  HistoryFigures(WindowServices services, const JournalFeed& feed);
  ~HistoryFigures() override;

  [[nodiscard]] bool isShown() const noexcept { return m_isShown; }
  void setShown(bool isShown);
  // False until the first sums are there.
  [[nodiscard]] bool isKnown() const noexcept { return !m_totals.weeks.empty(); }
  [[nodiscard]] double movedBytes() const noexcept { return static_cast<double>(m_totals.moved.bytes); }
  [[nodiscard]] double restoredBytes() const noexcept { return static_cast<double>(m_totals.restored.bytes); }
  [[nodiscard]] double inTrashBytes() const noexcept { return static_cast<double>(m_totals.inTrash.bytes); }
  // {start, bytes} of each, the oldest first; `start` in milliseconds since 1970.
  [[nodiscard]] QVariantList weeks() const;

  // Adds them up anew, where they are shown.
  void reload();

 Q_SIGNALS:
  void isShownChanged();
  void changed();

 private:
  WindowServices m_services;
  bool m_isShown = false;
  HistoryTotals m_totals;
  std::stop_source m_stop;
  BackgroundQueue m_queue;
};

}  // namespace orvane
