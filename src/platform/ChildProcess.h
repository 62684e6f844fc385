// ChildProcess: the one command that runs at a time, from its pipes to its end.
//
// While an object lives, signals are delivered only inside `wait` (SignalHold). Whatever happens,
// the destructor leaves no child behind. Objects must not be nested. Used by executeProcess only.
//
// docs/architecture.md, "Child processes", explains how signals, the shell and the command's own
// processes work together.
#ifndef CORVANE_PLATFORM_CHILDPROCESS_H
#define CORVANE_PLATFORM_CHILDPROCESS_H

#include <poll.h>
#include <sys/types.h>

#include "platform/Clock.h"
#include "platform/CommandTree.h"
#include "platform/OutputCapture.h"
#include "platform/PlatformSignals.h"
#include "platform/ProcessRequest.h"
#include "platform/StartFailure.h"

class ChildProcess {
 public:
  explicit ChildProcess(const ProcessRequest& request);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // Starts the command in the current directory. Throws Canceled instead when the user has
  // canceled, and LauncherException when the system gives no pipe or no process.
  void start();
  // Collects the output until the command has ended and all its output has come; background
  // processes may keep that open. Throws what stopped the shell from starting (not of a trial).
  ProcessResult wait();

 private:
  // What we have done to end the command.
  enum class Ending { NotYet, Asked, Killed };

  void fork(const char* const* arguments);
  [[noreturn]] void becomeShell(const char* const* arguments) const;
  static bool readNothing();
  bool prepareDescriptors() const;
  [[noreturn]] void failToStart(StartFailure::Step step) const;

  bool isOver();
  void noteEnd();
  void noteStatus(int code, int status);
  void loseChild(int error);
  void waitForNews() const;
  Clock::time_point nextDate() const;
  bool hasOpenOutput() const { return m_captures[0].isOpen() || m_captures[1].isOpen(); }
  void readOutputs();
  void finish();
  void checkStart();

  void heedSignals();
  bool isStartingUp() const;
  bool hasMissedCommand() const;
  void passOn(int signal, volatile Unheard& unheard);
  void tell(int signal, bool alsoShell) const;
  void keepTrialInTime();
  void endNow();

  const ProcessRequest& m_request;
  const SignalHold m_signals;
  CommandTree m_tree;
  OutputCapture m_captures[2];
  StartFailure m_startFailure;
  ProcessResult m_result;
  pid_t m_child = 0;  // 0: nobody is to be waited for
  bool m_hasEnded = false;
  bool m_isCommandAwaited = false;  // a signal waits for it
  Ending m_ending = Ending::NotYet;
  Clock::time_point m_startedAt;
  Clock::time_point m_date = kNever;  // of a trial: when our patience is at its end
};

#endif
