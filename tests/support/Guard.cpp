#include "support/Guard.h"

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>

#ifdef __linux__
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#endif

extern char** environ;

namespace test {

namespace {

// A background job of a shell ignores INT and QUIT, what runs below nohup ignores HUP.
void heedSignalsAgain() {
  for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE, SIGCHLD}) {
    std::signal(number, SIG_DFL);
  }
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

}  // namespace

void fixSurroundings() {
  umask(022);
  heedSignalsAgain();
  std::string names;  // one a line; unsetenv moves the entries after it
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view name(*entry, std::string_view(*entry).find('='));
    if (name == "LANG" || name == "LANGUAGE" || name.starts_with("LC_")) {
      names += std::string(name) + "\n";
    }
  }
  for (std::size_t end; (end = names.find('\n')) != std::string::npos; names.erase(0, end + 1)) {
    unsetenv(names.substr(0, end).c_str());
  }
  // A program that measures coverage complains where it may not write its figures, as another user
  // or on a full disk. Its words are not ours.
  setenv("GCOV_ERROR_FILE", "/dev/null", 1);
}

#ifndef __linux__

int runGuarded(const std::function<int()>& body) {
  return body();
}

#else

namespace {

namespace fs = std::filesystem;

struct Pipe {
  Pipe() {
    if (pipe(ends) != 0) {
      throw std::runtime_error("cannot make a pipe for the guard");
    }
  }
  void keep(int end) { close(ends[1 - end]); }
  int ends[2];
};

bool isTraced() {
  std::ifstream file("/proc/self/status");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("TracerPid:")) {
      return line.find_first_of("123456789") != std::string::npos;
    }
  }
  return false;
}

// The parent of a process: the second field behind its name, which ends with the last ")".
pid_t parentOf(const fs::path& process) {
  std::ifstream file(process / "stat");
  std::string line;
  std::getline(file, line);
  int parent = 0;
  const std::size_t end = line.rfind(')');
  return end != std::string::npos && std::sscanf(line.c_str() + end, ") %*c %d", &parent) == 1
             ? parent
             : 0;
}

void killChildren() {
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator("/proc", error)) {
    const int pid = std::atoi(entry.path().filename().c_str());
    if (pid > 0 && parentOf(entry.path()) == getpid()) {
      kill(pid, SIGKILL);
    }
  }
}

// The children of a killed child become ours, so this repeats until there is none.
void killDescendants() {
  constexpr int kRounds = 2000;
  constexpr useconds_t kPause = 2000;
  for (int round = 0; round < kRounds; ++round) {
    pid_t pid = 0;
    while ((pid = waitpid(-1, nullptr, WNOHANG)) > 0) {
    }
    if (pid == -1) {
      return;
    }
    killChildren();
    usleep(kPause);
  }
}

// Sets TMPDIR to a new folder, open to everybody: some tests run as another user.
void makeScratchFolder() {
  std::string folder = (fs::temp_directory_path() / "corvane-test-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) {
    throw std::runtime_error("cannot make a scratch folder " + folder);
  }
  chmod(folder.c_str(), 0755);
  setenv("TMPDIR", folder.c_str(), 1);
}

// Killed tests may leave anything, even folders without permissions or with too long paths. rm can
// remove them.
void removeScratchFolder() {
  if (rmdir(std::getenv("TMPDIR")) != 0 &&
      std::system("chmod -R u+rwx \"$TMPDIR\"; rm -rf \"$TMPDIR\"") != 0) {
    std::fprintf(stderr, "cannot remove %s\n", std::getenv("TMPDIR"));
  }
}

[[noreturn]] void runTests(const std::function<int()>& body, pid_t guard) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != guard) {
    _exit(1);
  }
  setsid();
  std::exit(body());
}

// Waits for the end of the tests or of the process that wants their result. Returns the wait
// status.
int waitForTests(pid_t tests, int life, const sigset_t& whileWaiting) {
  int status = SIGKILL;
  pollfd lifeEnds = {life, 0, 0};
  while (ppoll(&lifeEnds, 1, nullptr, &whileWaiting) == -1) {
    int ended = 0;
    for (pid_t pid; (pid = waitpid(-1, &ended, WNOHANG)) > 0;) {
      if (pid == tests) {
        return ended;
      }
    }
  }
  return status;
}

// `life` is closed when the process that was started ends; `result` takes the wait status of the
// tests.
[[noreturn]] void guard(const std::function<int()>& body, Pipe life, Pipe result) {
  setsid();
  life.keep(0);
  result.keep(1);
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  makeScratchFolder();
  sigset_t blocked, before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGCHLD);
  sigprocmask(SIG_BLOCK, &blocked, &before);
  sigset_t whileWaiting = before;
  sigdelset(&whileWaiting, SIGCHLD);
  const pid_t self = getpid();
  const pid_t tests = fork();
  if (tests == 0) {
    close(life.ends[0]);
    close(result.ends[1]);
    sigprocmask(SIG_SETMASK, &before, nullptr);
    runTests(body, self);
  }
  std::signal(SIGCHLD, [](int) {});
  const int status = waitForTests(tests, life.ends[0], whileWaiting);
  killDescendants();
  removeScratchFolder();
  if (write(result.ends[1], &status, sizeof status) != sizeof status) {
    _exit(1);  // nobody is there to read it
  }
  _exit(0);
}

int endLike(int status) {
  if (WIFSIGNALED(status)) {
    const rlimit noSecondCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noSecondCore);
    std::signal(WTERMSIG(status), SIG_DFL);
    std::raise(WTERMSIG(status));
  }
  return WEXITSTATUS(status);
}

}  // namespace

int runGuarded(const std::function<int()>& body) {
  if (isTraced()) {
    return body();
  }
  std::fflush(nullptr);
  Pipe life, result;
  const pid_t between = fork();  // it ends at once, so that the guard is no child of ours
  if (between == 0) {
    if (fork() == 0) {
      guard(body, life, result);
    }
    _exit(0);
  }
  life.keep(1);
  result.keep(0);
  waitpid(between, nullptr, 0);
  int status = 0;
  if (read(result.ends[0], &status, sizeof status) != sizeof status) {
    std::fprintf(stderr, "the guard of the tests was killed\n");
    return EXIT_FAILURE;
  }
  return endLike(status);
}

#endif

}  // namespace test
