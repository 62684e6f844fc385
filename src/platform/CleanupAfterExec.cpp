#include "platform/CleanupAfterExec.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "platform/PlatformImpl.h"

namespace {

enum End { kOurs, kHelpers };

// True when a byte came; false at the end of the connection.
bool receive(int connection) {
  char byte = 0;
  ssize_t count = 0;
  do {
    count = read(connection, &byte, 1);
  } while (count == -1 && errno == EINTR);
  return count == 1;
}

void blockAllSignals() {
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_SETMASK, &all, nullptr);
}

// Who reads our output to its end need not wait for the helper.
void letGoOfStandardStreams() {
  const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO && null != -1; ++fd) {
    dup2(null, fd);
  }
}

[[noreturn]] void help(int connection, const SString& keptDirectory) {
  blockAllSignals();
  letGoOfStandardStreams();
  try {
    if (!receive(connection)) {
      PlatformImpl::removeDirFromCleanupList(keptDirectory);
      PlatformImpl::hideUI(0);
      PlatformImpl::cleanup();
    }
  } catch (...) {
    // Nobody is left to be told.
  }
  _exit(0);
}

// In a child: the helper becomes nobody's child when this ends.
[[noreturn]] void startHelper(const int (&ends)[2], const SString& keptDirectory) {
  close(ends[kOurs]);
  const pid_t helper = fork();
  if (helper == 0) {
    help(ends[kHelpers], keptDirectory);
  }
  _exit(helper == -1 ? 1 : 0);
}

bool endedWell(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) == -1) {
    if (errno != EINTR) {
      return false;
    }
  }
  return status == 0;
}

}  // namespace

void CleanupAfterExec::start(const SString& keptDirectory) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) {
    return;
  }
  fcntl(ends[kOurs], F_SETFD, FD_CLOEXEC);
  fcntl(ends[kHelpers], F_SETFD, FD_CLOEXEC);
  const pid_t child = fork();
  if (child == 0) {
    startHelper(ends, keptDirectory);
  }
  close(ends[kHelpers]);
  m_connection = ends[kOurs];
  if (child == -1 || !endedWell(child)) {
    disconnect();
  }
}

CleanupAfterExec::~CleanupAfterExec() {
  if (isReady() && write(m_connection, "", 1) == 1) {
    (void)receive(m_connection);  // until the helper has ended
  }
  disconnect();
}

void CleanupAfterExec::disconnect() {
  if (m_connection != -1) {
    close(m_connection);
  }
  m_connection = -1;
}
