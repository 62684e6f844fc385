// SignalHold: the signals that the launcher handles, held back while a child is started and
// waited for.
//
// Between its construction and its end INT, TERM, HUP, QUIT and CHLD are delivered only inside
// `waitForInput` and `deliverHeld`. So a signal can neither fall between the fork and the note of
// the child's number, nor be missed by a wait that is about to begin. Objects must not be nested.
#ifndef CORVANE_PLATFORM_PLATFORMSIGNALS_H
#define CORVANE_PLATFORM_PLATFORMSIGNALS_H

#include <poll.h>

#include <csignal>

#include "platform/Clock.h"
#include "platform/SignalState.h"

class SignalHold {
 public:
  SignalHold();
  ~SignalHold();  // puts back the dispositions and the mask that the constructor found
  SignalHold(const SignalHold&) = delete;
  SignalHold& operator=(const SignalHold&) = delete;

  // All dispositions, the mask and the umask as the launcher inherited them: for a process that is
  // about to become another program.
  void restoreInherited() const;
  // Waits, at no cost, until a descriptor has input (or is at its end), a signal has been handled
  // (the end of a child is such a signal) or the time has come.
  void waitForInput(pollfd* entries, nfds_t count, Clock::time_point until = kNever) const;
  // Delivers what has come.
  void deliverHeld() const;
  // Drops what has come. For a child that is about to restore the dispositions.
  static void forgetHeld();

 private:
  struct sigaction m_actions[SignalState::kSignalCount];
  sigset_t m_mask;      // as it was found
  sigset_t m_waitMask;  // the same, with CHLD let through
  sigset_t m_heldMask;
};

#endif
