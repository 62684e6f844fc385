#include "authoring/DeferredSignals.h"

#include "authoring/AuthoringError.h"

namespace authoring {
namespace {

// Those that end a program and can come from outside.
constexpr int kSignals[] = {SIGHUP,  SIGINT,  SIGQUIT, SIGTERM,   SIGALRM,
                            SIGUSR1, SIGUSR2, SIGXCPU, SIGVTALRM, SIGPROF};

volatile std::sig_atomic_t signalThatCame = 0;

void note(int signal) {
  signalThatCame = signal;
}

}  // namespace

DeferredSignals::DeferredSignals() {
  struct sigaction action = {};
  action.sa_handler = note;
  action.sa_flags = SA_RESTART;
  for (const int signal : kSignals) {
    struct sigaction old;
    if (sigaction(signal, nullptr, &old) == 0 && old.sa_handler != SIG_IGN) {
      sigaction(signal, &action, nullptr);
      m_old.push_back({signal, old});
    }
  }
}

DeferredSignals::~DeferredSignals() {
  for (const Old& old : m_old) {
    sigaction(old.signal, &old.action, nullptr);
  }
  if (signalThatCame != 0) {
    std::raise(signalThatCame);  // to the next holder, or to the system's default
  }
}

void DeferredSignals::throwIfCame() {
  if (signalThatCame != 0) {
    throw AuthoringError("interrupted");
  }
}

}  // namespace authoring
