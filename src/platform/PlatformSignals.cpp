// The launcher's start as a process, and its signals. INT, TERM, HUP and QUIT cancel the run. The
// handler only notes what came; ChildProcess acts on it while a child runs.
#include "platform/PlatformSignals.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/select.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <ctime>

#include "platform/CleanupState.h"
#include "platform/Console.h"
#include "platform/PlatformImpl.h"
#include "util/LauncherException.h"

#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace {

constexpr auto& kSignals = SignalState::kSignals;

void openStandardDescriptors() {
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    if (fcntl(fd, F_GETFD) == -1 && errno == EBADF) {
      g_console.m_outputIsClosed = g_console.m_outputIsClosed || fd == STDOUT_FILENO;
      // The lowest free number is the one that is missing. Children inherit it.
      static_cast<void>(open("/dev/null", O_RDWR));
    }
  }
}

constexpr mode_t kOthersMayNotWrite = S_IWGRP | S_IWOTH;

// What we were started with, and `more`.
void useUmask(mode_t more) {
  if (g_cleanup.m_inheritedUmask) {
    umask(*g_cleanup.m_inheritedUmask | more);
  }
}

void setHandler(int signal, void (*handler)(int), int flags = 0) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

void addCancelingSignals(sigset_t& set) {
  std::for_each(kSignals, kSignals + SignalState::kCancelingCount,
                [&](int signal) { sigaddset(&set, signal); });
}

// True for what another process sent with kill(2) and its like.
bool isSentByProcess(const siginfo_t& info) {
#ifdef SI_TKILL
  if (info.si_code == SI_TKILL) {
    return true;
  }
#endif
  return info.si_code == SI_USER || info.si_code == SI_QUEUE;
}

// The terminal's signals come from the system, and to the whole group, with one exception: when it
// is closed, only the leader of its session hears of it.
bool isSentToUsAlone(int signal, const siginfo_t& info) {
  return isSentByProcess(info) || (signal == SIGHUP && getsid(0) == getpid());
}

// One request can arrive twice: timeout(1) and its like send a signal to their child and, in the
// next moment, to its whole group. A shell whose terminal is closed sends HUP to its jobs; then it
// ends, and the system sends HUP to the job in the foreground.
constexpr std::int64_t kEchoNanoseconds = 20'000'000;
constexpr std::int64_t kHangUpNanoseconds = 200'000'000;

std::int64_t monotonicNanoseconds() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

// True when the same signal came a moment ago for the same reason. Else later ones are compared
// with this one.
bool isEcho(int signal, const siginfo_t& info) {
  const pid_t sender = isSentByProcess(info) ? info.si_pid : 0;
  const std::int64_t now = monotonicNanoseconds();
  const std::int64_t age = now - g_signals.m_requestTime;
  if (signal == g_signals.m_requestSignal) {
    if (signal == SIGHUP
            ? age < kHangUpNanoseconds
            : sender != 0 && sender == g_signals.m_requestSender && age < kEchoNanoseconds) {
      return true;
    }
  }
  g_signals.m_requestSignal = signal;
  g_signals.m_requestSender = sender;
  g_signals.m_requestTime = now;
  return false;
}

void noteUnheard(int signal, Unheard unheard) {
  for (int i = 0; i < SignalState::kCancelingCount; ++i) {
    if (kSignals[i] == signal && g_signals.m_unheard[i] != Unheard::ToUsAlone) {
      g_signals.m_unheard[i] = unheard;
    }
  }
}

void noteSignal(int signal, const siginfo_t& info) {
  if (isEcho(signal, info)) {
    return;
  }
  noteUnheard(signal, isSentToUsAlone(signal, info) ? Unheard::ToUsAlone : Unheard::ToOurGroup);
  if (signal == SIGQUIT && g_signals.m_childRuns != 0) {
    return;  // a JVM answers it by printing its threads
  }
  if (g_signals.m_canceledBy == 0) {
    g_signals.m_canceledBy = signal;
  } else {
    g_signals.m_isUrgent = 1;
  }
}

void handleSignal(int signal, siginfo_t* info, void*) {
  const int savedErrno = errno;
  noteSignal(signal, *info);
  errno = savedErrno;
}

// Makes the end of a child interrupt a wait.
void noteChildEnd(int) {}

// Null for kNever.
const timespec* timeUntil(Clock::time_point until, timespec& buffer) {
  if (until == kNever) {
    return nullptr;
  }
  const auto left = std::max(until - Clock::now(), Clock::duration::zero());
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
  buffer.tv_sec = static_cast<time_t>(seconds.count());
  buffer.tv_nsec = static_cast<long>(
      std::chrono::duration_cast<std::chrono::nanoseconds>(left - seconds).count());
  return &buffer;
}

#ifdef __APPLE__
// No ppoll there: the same wait by pselect, for descriptor numbers below FD_SETSIZE.
int waitWithMask(pollfd* entries, nfds_t count, const timespec* time, const sigset_t* mask) {
  fd_set readable;
  FD_ZERO(&readable);
  int highest = -1;
  for (nfds_t i = 0; i < count; ++i) {
    FD_SET(entries[i].fd, &readable);
    highest = std::max(highest, entries[i].fd);
  }
  return pselect(highest + 1, &readable, nullptr, nullptr, time, mask);
}
#else
int waitWithMask(pollfd* entries, nfds_t count, const timespec* time, const sigset_t* mask) {
  return ppoll(entries, count, time, mask);
}
#endif

// A run that the user ended leaves no core dump.
void forbidCoreDump() {
  const rlimit none = {0, 0};
  setrlimit(RLIMIT_CORE, &none);
#ifdef PR_SET_DUMPABLE
  prctl(PR_SET_DUMPABLE, 0UL, 0UL, 0UL, 0UL);
#endif
}

}  // namespace

SignalHold::SignalHold() {
  for (int i = 0; i < SignalState::kSignalCount; ++i) {
    sigaction(kSignals[i], nullptr, &m_actions[i]);
  }
  setHandler(SIGCHLD, noteChildEnd, SA_RESTART);
  sigset_t held;
  sigemptyset(&held);
  addCancelingSignals(held);
  sigaddset(&held, SIGCHLD);
  sigprocmask(SIG_BLOCK, &held, &m_mask);
  sigprocmask(SIG_BLOCK, nullptr, &m_heldMask);
  m_waitMask = m_mask;
  sigdelset(&m_waitMask, SIGCHLD);  // inherited as blocked, the end of a child would wake nobody
}

SignalHold::~SignalHold() {
  for (int i = 0; i < SignalState::kSignalCount; ++i) {
    sigaction(kSignals[i], &m_actions[i], nullptr);
  }
  useUmask(kOthersMayNotWrite);
  sigprocmask(SIG_SETMASK, &m_mask, nullptr);
}

void SignalHold::restoreInherited() const {
  useUmask(0);
  for (int i = 0; i < SignalState::kSignalCount; ++i) {
    sigaction(kSignals[i], g_signals.m_isPrepared ? &g_signals.m_inherited[i] : &m_actions[i],
              nullptr);
  }
  sigprocmask(SIG_SETMASK, &m_mask, nullptr);
}

void SignalHold::waitForInput(pollfd* entries, nfds_t count, Clock::time_point until) const {
  timespec buffer;
  if (waitWithMask(entries, count, timeUntil(until, buffer), &m_waitMask) > 0) {
    // Input was ready at once, so no signal was delivered: endless output would keep it out for
    // ever.
    deliverHeld();
  }
}

void SignalHold::deliverHeld() const {
  sigprocmask(SIG_SETMASK, &m_waitMask, nullptr);
  sigprocmask(SIG_SETMASK, &m_heldMask, nullptr);
}

void SignalHold::forgetHeld() {
  for (int i = 0; i < SignalState::kCancelingCount; ++i) {
    setHandler(kSignals[i], SIG_IGN);
  }
}

void PlatformImpl::prepareProcess() {
  openStandardDescriptors();
  g_cleanup.m_inheritedUmask = umask(kOthersMayNotWrite);
  useUmask(kOthersMayNotWrite);
  for (int i = 0; i < SignalState::kSignalCount; ++i) {
    sigaction(kSignals[i], nullptr, &g_signals.m_inherited[i]);
  }
  g_signals.m_isPrepared = true;
  struct sigaction canceling = {};
  canceling.sa_sigaction = handleSignal;
  canceling.sa_flags = SA_SIGINFO;
  sigemptyset(&canceling.sa_mask);
  addCancelingSignals(canceling.sa_mask);
  for (int i = 0; i < SignalState::kCancelingCount; ++i) {
    if (g_signals.m_inherited[i].sa_handler != SIG_IGN) {
      sigaction(kSignals[i], &canceling, nullptr);
    }
  }
  setHandler(SIGPIPE, SIG_IGN);
  setHandler(SIGXFSZ, SIG_IGN);  // a file at its limit is a write that fails, as on a full disk
  setHandler(SIGCHLD, SIG_DFL);  // inherited as ignored, it would leave no child to wait for
}

bool PlatformImpl::hasBorrowedRights() {
  return geteuid() != getuid() || getegid() != getgid();
}

void PlatformImpl::throwIfCanceled() {
  if (isCanceled()) {
    throw Canceled(getMessageText(MSG_CANCELED));
  }
}

int PlatformImpl::getCancelStatus() {
  return kSignalStatus + g_signals.m_canceledBy;
}

void PlatformImpl::endByCancelingSignal() {
  const int signal = g_signals.m_canceledBy;
  std::fflush(nullptr);
  forbidCoreDump();
  setHandler(signal, SIG_DFL);
  raise(signal);
}
