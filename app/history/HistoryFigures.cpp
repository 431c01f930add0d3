#include "app/history/HistoryFigures.h"

#include "app/common/Text.h"

#include <utility>

namespace orvane {

HistoryFigures::HistoryFigures(WindowServices services, const JournalFeed& feed) : m_services(std::move(services)) {
  connect(&feed, &JournalFeed::loaded, this, &HistoryFigures::reload);
}

HistoryFigures::~HistoryFigures() {
  m_stop.request_stop();
}

void HistoryFigures::setShown(bool isShown) {
  if (isShown == m_isShown) return;
  m_isShown = isShown;
  if (!isShown) m_stop.request_stop();
  reload();
  Q_EMIT isShownChanged();
}

void HistoryFigures::reload() {
  if (!m_isShown) return;
  m_stop.request_stop();
  m_stop = {};
  m_queue.post([this, stop = m_stop.get_token()](const std::stop_token&) {
    auto totals = historyTotals(m_services.tasks, ReferenceClock::now(), stop);
    callOn(this, [this, stop, totals = std::move(totals)] {
      if (stop.stop_requested()) return;
      m_totals = totals;
      Q_EMIT changed();
    });
  });
}

QVariantList HistoryFigures::weeks() const {
  QVariantList weeks;
  for (const auto& week : m_totals.weeks) {
    weeks.append(QVariantMap{{"start", milliseconds(week.start)}, {"bytes", static_cast<double>(week.moved.bytes)}});
  }
  return weeks;
}

}  // namespace orvane
