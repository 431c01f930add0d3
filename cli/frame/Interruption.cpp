#include "cli/frame/Interruption.h"

#include <pthread.h>

#include <array>

namespace orvane::cli {
namespace {

constexpr std::array stopSignals{SIGINT, SIGTERM, SIGHUP};
// Sent to the watching thread alone, to end it.
constexpr int endSignal = SIGUSR2;

bool isIgnored(int signal) {
  struct sigaction current {};
  return sigaction(signal, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

}  // namespace

Interruption::Interruption() {
  sigemptyset(&m_signals);
  for (const int signal : stopSignals) {
    // A blocked signal waits even where it is ignored, so it is left alone here.
    if (!isIgnored(signal)) sigaddset(&m_signals, signal);
  }
  sigset_t blocked = m_signals;
  sigaddset(&blocked, endSignal);
  // Every thread made from now on inherits this, so that the watcher is the one that receives.
  pthread_sigmask(SIG_BLOCK, &blocked, &m_previousMask);
  m_watcher = std::thread([this] { watch(); });
}

Interruption::~Interruption() {
  pthread_kill(m_watcher.native_handle(), endSignal);
  m_watcher.join();
  pthread_sigmask(SIG_SETMASK, &m_previousMask, nullptr);
}

void Interruption::watch() {
  sigset_t waited = m_signals;
  sigaddset(&waited, endSignal);
  int received = 0;
  sigwait(&waited, &received);
  if (received == endSignal) return;
  m_stop.request_stop();
  // From here on the signals have their usual effect, through this thread.
  pthread_sigmask(SIG_UNBLOCK, &m_signals, nullptr);
  sigemptyset(&waited);
  sigaddset(&waited, endSignal);
  sigwait(&waited, &received);
}

}  // namespace orvane::cli
