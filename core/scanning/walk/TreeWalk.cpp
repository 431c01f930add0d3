#include "core/scanning/walk/TreeWalk.h"

namespace orvane {

void TreeWalk::run(WorkStack::Tasks tasks, std::size_t foldersAlone, const std::stop_token& token) {
  const std::stop_callback onStop(token, [this] { stop(); });
  work.push(tasks);
  work.work(foldersAlone);
  if (work.isEmpty()) return;
  work.start(WorkStack::processorCount() - 1);
  work.work();
  work.join();
}

void TreeWalk::stop() noexcept {
  m_isStopped = true;
  work.stop();
}

}  // namespace orvane
