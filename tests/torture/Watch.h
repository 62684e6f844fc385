// Watch: runs one launcher to its end, and finds whatever process it leaves behind.
//
// The harness is the reaper of all its descendants, so that each of them is known to it as its own
// child in the end; no other process is ever looked at or touched.
#ifndef CORVANE_TESTS_TORTURE_WATCH_H
#define CORVANE_TESTS_TORTURE_WATCH_H

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "torture/Tracer.h"

namespace torture {

// How to start a launcher. It becomes the leader of a session.
struct Command {
  std::string program;  // as seen behind `prepare`
  std::vector<std::string> arguments;
  std::map<std::string, std::string> environment;
  std::string folder;
  std::string input, output, errors;
  // In the new process, behind the redirections; null: nothing. False: it cannot be started.
  std::function<bool()> prepare;
};

struct Ending {
  int status = 0;  // exit status; -N when signal N ended it
  bool hung = false;
  std::vector<std::string> left;  // names of processes
  std::chrono::microseconds duration{0};
};

class Watch {
 public:
  // Once in a process that watches.
  static void prepareProcess();

  explicit Watch(Tracer* tracer = nullptr) : m_tracer(tracer) {}

  // Something to be done at a time behind the start.
  void at(std::chrono::microseconds time, std::function<void()> act);
  // Something to be looked for about every millisecond, until it returns true.
  void whenever(std::function<bool()> look) { m_look = std::move(look); }

  pid_t start(const Command& command);
  Ending finish(std::chrono::milliseconds limit);
  pid_t pid() const { return m_pid; }

 private:
  void reap(Ending& ending);
  void sleepUntil(std::chrono::steady_clock::time_point time);
  std::chrono::steady_clock::time_point actWhatIsDue();
  void endDescendants(Ending& ending);

  Tracer* m_tracer;
  pid_t m_pid = 0;
  bool m_ended = false;
  bool m_hasChildren = true;
  std::chrono::steady_clock::time_point m_begin;
  std::multimap<std::chrono::microseconds, std::function<void()>> m_acts;
  std::function<bool()> m_look;
};

// The children of a process, from /proc.
std::vector<pid_t> childrenOf(pid_t pid);

}  // namespace torture

#endif
