// A copy of the test process: for what changes, replaces or ends a process.
#ifndef CORVANE_TESTS_SUPPORT_OWNPROCESS_H
#define CORVANE_TESTS_SUPPORT_OWNPROCESS_H

#include <sys/types.h>

#include <functional>
#include <string>

namespace test {

class OwnProcess {
 public:
  // Starts `body` in a copy of this process whose standard output is collected, with the default
  // signal dispositions. When `body` returns the copy ends with status 0; what it throws is written
  // to its output. A copy that hangs is ended by an alarm after 30 seconds.
  explicit OwnProcess(const std::function<void()>& body);
  ~OwnProcess();
  OwnProcess(const OwnProcess&) = delete;
  OwnProcess& operator=(const OwnProcess&) = delete;

  pid_t pid() const { return m_pid; }
  // Waits for the end: "exit 3" or "signal 15".
  std::string end();
  // What was written to its output, until every process that holds it has closed it.
  std::string output();

 private:
  pid_t m_pid;
  int m_output;
};

// The output of such a copy, followed by "[exit 3]" or the like unless it ended with status 0.
std::string outputOf(const std::function<void()>& body);

// How many of the processes whose numbers stand in the file are still there a moment later.
int countLeft(const std::string& file);

// Gives up the rights of the superuser, if this process has them.
void becomeOrdinaryUser();

// Makes `folder` the root and the current directory. An ordinary user may do that in a user
// namespace of his own; false where the system allows neither.
bool changeRoot(const std::string& folder);

}  // namespace test

#endif
