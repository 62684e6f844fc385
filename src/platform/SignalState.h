// SignalState: the signals that have come since the process began.
//
// Written by the signal handler and read by PlatformImpl's own files; while a SignalHold lives the
// handler runs only inside its wait.
#ifndef CORVANE_PLATFORM_SIGNALSTATE_H
#define CORVANE_PLATFORM_SIGNALSTATE_H

#include <sys/types.h>

#include <csignal>
#include <cstdint>

// A signal that the command may not have had.
enum class Unheard : std::sig_atomic_t {
  None,
  ToUsAlone,    // another process sent it to the launcher: the command has not had it
  ToOurGroup,   // the system sent it to the whole group: all that was there then has had it
  ToNewcomers,  // the same, but the command was about to start
};

struct SignalState {
  // INT, TERM, HUP, QUIT; then those that the launcher only keeps off: PIPE, XFSZ, CHLD.
  static constexpr int kCancelingCount = 4;
  static constexpr int kSignalCount = 7;
  static constexpr int kSignals[kSignalCount] = {SIGINT,  SIGTERM, SIGHUP, SIGQUIT,
                                                 SIGPIPE, SIGXFSZ, SIGCHLD};

  volatile std::sig_atomic_t m_canceledBy = 0;  // the first signal that canceled the run; 0: none
  volatile std::sig_atomic_t m_isUrgent = 0;    // another one came after it
  volatile Unheard m_unheard[kCancelingCount] = {};
  volatile std::sig_atomic_t m_childRuns = 0;  // ChildProcess writes it

  // The last request to cancel, with which the next one is compared.
  int m_requestSignal = 0;
  pid_t m_requestSender = 0;
  std::int64_t m_requestTime = 0;  // nanoseconds, monotonic

  // The dispositions that the launcher was started with; prepareProcess writes them.
  bool m_isPrepared = false;
  struct sigaction m_inherited[kSignalCount] = {};
};

#endif
