#include "support/OwnProcess.h"

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <sstream>
#include <stdexcept>

#include "support/TestFiles.h"

namespace test {

namespace {

constexpr unsigned kSecondsUntilHung = 30;
constexpr int kMillisecondsToBeGone = 500;
constexpr uid_t kNobody = 65534;

[[noreturn]] void runCopy(const std::function<void()>& body, const int (&ends)[2]) {
  dup2(ends[1], STDOUT_FILENO);
  close(ends[0]);
  close(ends[1]);
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ, SIGCHLD}) {
    signal(number, SIG_DFL);
  }
  alarm(kSecondsUntilHung);
  try {
    body();
  } catch (const std::exception& problem) {
    std::printf("threw \"%s\"", problem.what());
  }
  std::fflush(stdout);
  _exit(0);
}

}  // namespace

OwnProcess::OwnProcess(const std::function<void()>& body) {
  std::fflush(stdout);
  int ends[2];
  if (pipe(ends) != 0 || (m_pid = fork()) == -1) {
    throw std::runtime_error("cannot start a process");
  }
  if (m_pid == 0) {
    runCopy(body, ends);
  }
  close(ends[1]);
  m_output = ends[0];
}

OwnProcess::~OwnProcess() {
  if (m_pid != 0) {
    kill(m_pid, SIGKILL);
    end();
  }
  close(m_output);
}

std::string OwnProcess::end() {
  int status = 0;
  waitpid(m_pid, &status, 0);
  m_pid = 0;
  return WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                             : "exit " + std::to_string(WEXITSTATUS(status));
}

std::string OwnProcess::output() {
  std::string all;
  char chunk[4096];
  ssize_t count = 0;
  while ((count = read(m_output, chunk, sizeof chunk)) > 0) {
    all.append(chunk, static_cast<std::size_t>(count));
  }
  return all;
}

std::string outputOf(const std::function<void()>& body) {
  OwnProcess process(body);
  const std::string output = process.output();
  const std::string end = process.end();
  return end == "exit 0" ? output : output + "[" + end + "]";
}

int countLeft(const std::string& file) {
  int left = 0;
  std::istringstream numbers(readFile(file));
  for (pid_t process = 0; numbers >> process;) {
    for (int i = 0; i < kMillisecondsToBeGone && kill(process, 0) == 0; ++i) {
      usleep(1000);
    }
    left += kill(process, 0) == 0 ? 1 : 0;
  }
  return left;
}

void becomeOrdinaryUser() {
  if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) {
    _exit(99);
  }
}

bool changeRoot(const std::string& folder) {
  bool changed = chroot(folder.c_str()) == 0;
#ifdef CLONE_NEWUSER
  changed = changed || (unshare(CLONE_NEWUSER) == 0 && chroot(folder.c_str()) == 0);
#endif
  return changed && chdir("/") == 0;
}

}  // namespace test
