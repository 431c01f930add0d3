#pragma once

#include <csignal>
#include <stop_token>
#include <thread>

namespace orvane::cli {

// While it lives, the first interrupt, termination or hang-up signal asks the work to stop; the next one ends the
// process. Signals that were ignored at the start stay ignored. Make it before any other thread.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  [[nodiscard]] std::stop_token token() const noexcept { return m_stop.get_token(); }

 private:
  void watch();

  std::stop_source m_stop;
  sigset_t m_signals{};
  sigset_t m_previousMask{};
  std::thread m_watcher;
};

}  // namespace orvane::cli
