// The launcher's start as a process, and its signals. INT, TERM and HUP cancel the run; the child
// hears of those that were meant for the launcher alone.
#include "platform/PlatformSignals.h"

#include <fcntl.h>
#include <sys/select.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <ctime>

#include "platform/CleanupState.h"
#include "platform/PlatformImpl.h"
#include "util/LauncherException.h"

namespace {

// The first three cancel the run.
constexpr int kSignals[SignalHold::kSignalCount] = {SIGINT,  SIGTERM, SIGHUP,
                                                    SIGPIPE, SIGXFSZ, SIGCHLD};
constexpr int kCancelingCount = 3;

void openStandardDescriptors() {
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    if (fcntl(fd, F_GETFD) == -1 && errno == EBADF) {
      // The lowest free number is the one that is missing. Children inherit it.
      static_cast<void>(open("/dev/null", O_RDWR));
    }
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
  std::for_each(kSignals, kSignals + kCancelingCount, [&](int signal) { sigaddset(&set, signal); });
}

// True for what another process sent with kill(2) and its like. The terminal's signals come from
// the kernel, and to the whole group: the child has had them already.
bool isSentByProcess(const siginfo_t& info) {
#ifdef SI_TKILL
  if (info.si_code == SI_TKILL) {
    return true;
  }
#endif
  return info.si_code == SI_USER || info.si_code == SI_QUEUE;
}

// One wish can arrive twice: timeout(1) and its like send a signal to their child and, in the next
// moment, to its whole group. Without this the second would end us before the clean-up.
constexpr std::int64_t kEchoNanoseconds = 20'000'000;

std::int64_t monotonicNanoseconds() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

// True when the same process sent the same signal a moment ago. Else the signal is what later ones
// are compared with.
bool isEcho(int signal, const siginfo_t& info) {
  if (!isSentByProcess(info)) {
    return false;
  }
  const CancelWish wish = {signal, info.si_pid, monotonicNanoseconds()};
  if (wish.signal == g_cleanup.m_lastWish.signal && wish.sender == g_cleanup.m_lastWish.sender &&
      wish.time - g_cleanup.m_lastWish.time < kEchoNanoseconds) {
    return true;
  }
  g_cleanup.m_lastWish = wish;
  return false;
}

char* appendText(char* end, const char* text) {
  while (*text != '\0') {
    *end++ = *text++;
  }
  *end = '\0';
  return end;
}

char* appendNumber(char* end, pid_t number) {
  if (number >= 10) {
    end = appendNumber(end, number / 10);
  }
  const char digit[] = {static_cast<char>('0' + number % 10), '\0'};
  return appendText(end, digit);
}

// `list`: process numbers, each with a blank behind it.
void sendToEach(const char* list, ssize_t size, int signal) {
  pid_t process = 0;
  for (ssize_t i = 0; i < size; ++i) {
    if (list[i] >= '0' && list[i] <= '9') {
      process = process * 10 + (list[i] - '0');
    } else if (process > 0) {
      kill(process, signal);
      process = 0;
    }
  }
}

// Ends the process as if the signal had never been handled, so that our parent learns of it.
void endBySignal(int signal) {
  setHandler(signal, SIG_DFL);
  raise(signal);
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, signal);
  sigprocmask(SIG_UNBLOCK, &set, nullptr);
}

// Only there so that the end of a child interrupts a wait.
void noteChildEnd(int) {}

#ifdef __APPLE__
// No ppoll there: the same wait by pselect, for descriptor numbers below FD_SETSIZE.
int waitWithMask(pollfd* entries, nfds_t count, const sigset_t* mask) {
  fd_set readable;
  FD_ZERO(&readable);
  int highest = -1;
  for (nfds_t i = 0; i < count; ++i) {
    FD_SET(entries[i].fd, &readable);
    highest = std::max(highest, entries[i].fd);
  }
  const int result = pselect(highest + 1, &readable, nullptr, nullptr, nullptr, mask);
  for (nfds_t i = 0; i < count; ++i) {
    entries[i].revents = result > 0 && FD_ISSET(entries[i].fd, &readable) ? POLLIN : 0;
  }
  return result;
}
#else
int waitWithMask(pollfd* entries, nfds_t count, const sigset_t* mask) {
  return ppoll(entries, count, nullptr, mask);
}
#endif

}  // namespace

// The shell comes first, so that it starts nothing behind our back. Uses nothing that a signal
// handler may not.
bool signalCommand(pid_t shell, int commandSignal, int shellSignal) {
  kill(shell, shellSignal);
  char path[64];
  char* end = appendNumber(appendText(path, "/proc/"), shell);
  end = appendNumber(appendText(end, "/task/"), shell);
  appendText(end, "/children");
  const int list = open(path, O_RDONLY | O_CLOEXEC);
  if (list != -1) {
    char children[512];
    sendToEach(children, read(list, children, sizeof children), commandSignal);
    close(list);
  }
  return list != -1;
}

SignalHold::SignalHold() {
  for (int i = 0; i < kSignalCount; ++i) {
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
  for (int i = 0; i < kSignalCount; ++i) {
    sigaction(kSignals[i], &m_actions[i], nullptr);
  }
  sigprocmask(SIG_SETMASK, &m_mask, nullptr);
}

void SignalHold::giveBack() const {
  for (int i = 0; i < kSignalCount; ++i) {
    sigaction(kSignals[i], g_cleanup.m_isPrepared ? &g_cleanup.m_inherited[i] : &m_actions[i],
              nullptr);
  }
  sigprocmask(SIG_SETMASK, &m_mask, nullptr);
}

void SignalHold::waitForInput(pollfd* entries, nfds_t count) const {
  if (waitWithMask(entries, count, &m_waitMask) > 0) {
    // Input was there at once, so nothing was delivered: without endless output could shut out a
    // signal for ever.
    sigprocmask(SIG_SETMASK, &m_waitMask, nullptr);
    sigprocmask(SIG_SETMASK, &m_heldMask, nullptr);
    return;
  }
  std::for_each(entries, entries + count, [](pollfd& entry) { entry.revents = 0; });
}

void PlatformImpl::prepareProcess() {
  openStandardDescriptors();
  for (int i = 0; i < SignalHold::kSignalCount; ++i) {
    sigaction(kSignals[i], nullptr, &g_cleanup.m_inherited[i]);
  }
  g_cleanup.m_isPrepared = true;
  struct sigaction canceling = {};
  canceling.sa_sigaction = handleSignal;
  canceling.sa_flags = SA_SIGINFO;
  sigemptyset(&canceling.sa_mask);
  addCancelingSignals(canceling.sa_mask);
  for (int i = 0; i < kCancelingCount; ++i) {
    if (g_cleanup.m_inherited[i].sa_handler != SIG_IGN) {
      sigaction(kSignals[i], &canceling, nullptr);
    }
  }
  setHandler(SIGPIPE, SIG_IGN);
  setHandler(SIGXFSZ, SIG_IGN);  // a file at its limit is a write that fails, as on a full disk
  setHandler(SIGCHLD, SIG_DFL);  // inherited as ignored, it would leave no child to wait for
}

void PlatformImpl::handleSignal(int signal, siginfo_t* info, void*) {
  const int savedErrno = errno;
  if (isEcho(signal, *info)) {
    return;
  }
  if (g_cleanup.m_child != 0 && isSentByProcess(*info)) {
    signalCommand(g_cleanup.m_child, signal, signal);
  }
  if (g_cleanup.m_canceled != 0) {
    endBySignal(signal);
  }
  g_cleanup.m_canceled = 1;
  errno = savedErrno;
}

void PlatformImpl::throwIfCanceled() {
  if (isCanceled()) {
    throw LauncherException(getMessageText(MSG_CANCELED));
  }
}
