// Tracer: watches the system calls of a launcher, and of its children until they become another
// program, by ptrace(2). It can make a call fail, or hold a process at a call for a moment.
#ifndef CORVANE_TESTS_TORTURE_TRACER_H
#define CORVANE_TESTS_TORTURE_TRACER_H

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>

#include "torture/Calls.h"

namespace torture {

// A call that is about to be done.
struct Call {
  pid_t pid;
  int process;           // 0: the launcher, 1: its first child, ...
  std::uint64_t serial;  // calls of this process before this one
  long number;
  const std::uint64_t* args;
};

struct Answer {
  int error = 0;  // fails the call, in the way that its row of the table says
  std::chrono::milliseconds hold{0};
};

class Tracer {
 public:
  using OnCall = std::function<Answer(const Call&)>;

  // With `followPrograms` the children are watched behind their execve(2), too.
  explicit Tracer(OnCall onCall, bool followPrograms = false)
      : m_onCall(std::move(onCall)), m_followPrograms(followPrograms) {}

  // In the process that is to be traced, before it becomes the launcher. False where that is not
  // permitted.
  static bool beTraced();

  // Every state that waitpid(2) told goes in here; those of strangers are passed over.
  void handle(pid_t pid, int status);
  // Lets the held processes go whose time has come. Returns when to come back at the latest.
  std::chrono::steady_clock::time_point releaseHeld();
  // Nothing more is to be watched: all run on freely from their next stop.
  void letGo() { m_lettingGo = true; }
  // Takes this process as the first one.
  void adopt(pid_t launcher) { m_processes[launcher].ordinal = m_nextOrdinal++; }

 private:
  struct Process {
    int ordinal = -1;
    int programs = 0;  // execve(2) has succeeded so often
    std::uint64_t serial = 0;
    // For the exit of the call; 0: leave it.
    long result = 0;
    long firstArgument = 0;

    bool hasToStop() const { return result != 0 || firstArgument != 0; }
  };

  Process& know(pid_t pid);
  void handleEvent(pid_t pid, Process& process, int event);
  void handleCall(pid_t pid, Process& process);
  void fail(const Call& call, Process& process, int error);
  static void finishCall(pid_t pid, Process& process);
  void resume(pid_t pid, int signal = 0);

  OnCall m_onCall;
  bool m_followPrograms;
  bool m_lettingGo = false;
  int m_nextOrdinal = 0;
  std::map<pid_t, Process> m_processes;
  std::map<pid_t, std::chrono::steady_clock::time_point> m_held;
};

// The text at `address` of another process; empty where it cannot be read.
std::string readText(pid_t pid, std::uint64_t address);
// What a call is about: its name and its path.
std::string describe(const Call& call);

}  // namespace torture

#endif
