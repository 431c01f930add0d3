#include "app/common/BackgroundQueue.h"

#include <QtGlobal>

#include <chrono>
#include <stdexcept>

namespace orvane {
namespace {

// Long enough for the tasks of one click to share a thread.
constexpr std::chrono::milliseconds idleTime{500};

}  // namespace

BackgroundQueue::BackgroundQueue() {
  m_pool.setMaxThreadCount(1);
  m_pool.setExpiryTimeout(static_cast<int>(idleTime.count()));
}

BackgroundQueue::~BackgroundQueue() {
  m_stop.request_stop();
  m_pool.waitForDone();
}

void BackgroundQueue::post(Task task) {
  m_pool.start([task = std::move(task), stop = m_stop.get_token()] {
    if (stop.stop_requested()) return;
    try {
      task(stop);
    } catch (const std::runtime_error& error) {
      qWarning("%s", error.what());
    }
  });
}

}  // namespace orvane
