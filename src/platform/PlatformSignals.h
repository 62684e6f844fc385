// SignalHold: the signals that the launcher handles, held back while a child is started and
// waited for.
//
// Between its construction and its end INT, TERM, HUP and CHLD are delivered only inside
// `waitForInput`. So a signal can neither fall between the fork and the note of the child's number,
// nor reach a process that took the number over, nor be missed by a wait that is about to begin.
// Used by PlatformProcess only. Objects must not be nested.
#ifndef CORVANE_PLATFORM_PLATFORMSIGNALS_H
#define CORVANE_PLATFORM_PLATFORMSIGNALS_H

#include <poll.h>
#include <sys/types.h>

#include <csignal>

#include "platform/CleanupState.h"

// Sends one signal to what the shell runs, and another to the shell itself, which waits for its
// command and passes nothing on. False where the system does not list the children of a process:
// there the command hears of what the terminal sends alone.
bool signalCommand(pid_t shell, int commandSignal, int shellSignal);

class SignalHold {
 public:
  SignalHold();
  ~SignalHold();  // puts back the dispositions and the mask that the constructor found
  SignalHold(const SignalHold&) = delete;
  SignalHold& operator=(const SignalHold&) = delete;

  // All dispositions and the mask as the launcher inherited them: for a process that is about to
  // become another program.
  void giveBack() const;
  // Waits, at no cost, until a descriptor has input (or is at its end) or a signal has been
  // handled; the end of a child is such a signal. `revents` of each entry is set.
  void waitForInput(pollfd* entries, nfds_t count) const;

  static constexpr int kSignalCount = CleanupState::kSignalCount;

 private:
  struct sigaction m_actions[kSignalCount];
  sigset_t m_mask;      // as it was found
  sigset_t m_waitMask;  // the same, with CHLD let through
  sigset_t m_heldMask;
};

#endif
