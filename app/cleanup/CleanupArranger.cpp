#include "app/cleanup/CleanupArranger.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace orvane {
namespace {

constexpr std::chrono::milliseconds minArrangeDelay{200};

}  // namespace

CleanupArranger::CleanupArranger(Asker asker) : m_asker(std::move(asker)) {
  m_timer.setSingleShot(true);
  connect(&m_timer, &QTimer::timeout, this, &CleanupArranger::arrange);
}

CleanupArranger::~CleanupArranger() {
  m_stop.request_stop();
}

// Arranging takes longer the more there is: it may not take all the time.
void CleanupArranger::startTimer() {
  m_timer.start(std::max(minArrangeDelay, 2 * m_lastTime));
}

void CleanupArranger::arrangeLater() {
  if (!m_isArranging && !m_timer.isActive()) startTimer();
  m_isDirty = true;
}

void CleanupArranger::arrangeAnew() {
  m_stop.request_stop();
  arrange();
}

void CleanupArranger::arrange() {
  m_timer.stop();
  m_isDirty = true;
  if (m_isArranging) return;
  m_isArranging = true;
  m_isDirty = false;
  m_stop = {};
  m_queue.post([this, question = m_asker.ask(), generation = m_generation,
                stop = m_stop.get_token()](const std::stop_token&) {
    const auto started = std::chrono::steady_clock::now();
    auto arrangement = arrangeForCleanup(question.scanned, question.query, stop);
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - started);
    // Functions that Qt queues are copied.
    const auto shared = std::make_shared<std::optional<CleanupArrangement>>(std::move(arrangement));
    callOn(this, [this, shared, took, generation] {
      m_isArranging = false;
      m_lastTime = took;
      if (*shared && generation == m_generation) m_asker.show(*std::move(*shared));
      if (!m_isDirty) return;
      if (*shared && m_asker.isGrowing()) {
        startTimer();
      } else {
        arrange();
      }
    });
  });
}

}  // namespace orvane
