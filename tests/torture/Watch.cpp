#include "torture/Watch.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>

namespace torture {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// A process that has been told to end may need a moment on a busy machine.
constexpr milliseconds kGrace(3000);

bool redirect(int target, const std::string& path, int flags) {
  const int fd = open(path.c_str(), flags | O_CLOEXEC, 0666);
  return fd != -1 && dup2(fd, target) != -1;
}

std::vector<char*> pointersTo(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  std::transform(words.begin(), words.end(), std::back_inserter(pointers),
                 [](std::string& word) { return word.data(); });
  pointers.push_back(nullptr);
  return pointers;
}

// What a job in the background, or nohup(1), ignores would be ignored by the launcher, too.
void resetSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) {
    std::signal(signal, SIG_DFL);
  }
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

[[noreturn]] void become(const Command& command, bool traced) {
  std::vector<std::string> words{command.program};
  words.insert(words.end(), command.arguments.begin(), command.arguments.end());
  std::vector<std::string> variables;
  for (const auto& [name, value] : command.environment) {
    variables.push_back(name + "=" + value);
  }
  resetSignals();
  setsid();
  umask(022);
  const rlimit noCore = {0, 0};
  setrlimit(RLIMIT_CORE, &noCore);
  const bool ready = redirect(0, command.input, O_RDONLY) &&
                     redirect(1, command.output, O_WRONLY | O_CREAT | O_APPEND) &&
                     redirect(2, command.errors, O_WRONLY | O_CREAT | O_APPEND) &&
                     chdir(command.folder.c_str()) == 0 &&
                     (!command.prepare || command.prepare()) && (!traced || Tracer::beTraced());
  if (ready) {
    execve(command.program.c_str(), pointersTo(words).data(), pointersTo(variables).data());
  }
  _exit(126);
}

std::string nameOf(pid_t pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
  std::string text;
  std::getline(file, text);
  const std::size_t begin = text.find('(');
  const std::size_t end = text.rfind(')');
  return end == std::string::npos ? "?" : text.substr(begin, end + 3 - begin);
}

}  // namespace

std::vector<pid_t> childrenOf(pid_t pid) {
  const std::string number = std::to_string(pid);
  std::ifstream list("/proc/" + number + "/task/" + number + "/children");
  std::vector<pid_t> children;
  for (pid_t child = 0; list >> child;) {
    children.push_back(child);
  }
  return children;
}

void Watch::prepareProcess() {
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGCHLD);
  sigprocmask(SIG_BLOCK, &set, nullptr);
}

void Watch::at(std::chrono::microseconds time, std::function<void()> act) {
  m_acts.emplace(time, std::move(act));
}

pid_t Watch::start(const Command& command) {
  m_begin = Clock::now();
  m_pid = fork();
  if (m_pid == 0) {
    become(command, m_tracer != nullptr);
  }
  if (m_tracer != nullptr) {
    m_tracer->adopt(m_pid);
  }
  return m_pid;
}

// Notes the end of the launcher, and whether there is anybody left to wait for.
void Watch::reap(Ending& ending) {
  int status = 0;
  pid_t pid = 0;
  while ((pid = waitpid(-1, &status, WNOHANG | __WALL)) > 0) {
    if (m_tracer != nullptr) {
      m_tracer->handle(pid, status);
    }
    if (pid == m_pid && !WIFSTOPPED(status)) {
      ending.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
      ending.duration =
          std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - m_begin);
      m_ended = true;
    }
  }
  m_hasChildren = pid == 0;
}

void Watch::sleepUntil(Clock::time_point time) {
  const auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(time - Clock::now());
  const auto count = std::max<std::int64_t>(left.count(), 0);
  const timespec timeout = {static_cast<time_t>(count / 1'000'000'000),
                            static_cast<long>(count % 1'000'000'000)};
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGCHLD);
  sigtimedwait(&set, nullptr, &timeout);
}

// Returns when something is due again, at the latest.
Clock::time_point Watch::actWhatIsDue() {
  Clock::time_point next = Clock::now() + milliseconds(50);
  while (!m_acts.empty() && m_begin + m_acts.begin()->first <= Clock::now()) {
    m_acts.begin()->second();
    m_acts.erase(m_acts.begin());
  }
  if (!m_acts.empty()) {
    next = std::min(next, m_begin + m_acts.begin()->first);
  }
  if (m_look) {
    if (m_look()) {
      m_look = nullptr;
    } else {
      next = std::min(next, Clock::now() + milliseconds(1));
    }
  }
  return m_tracer == nullptr ? next : std::min(next, m_tracer->releaseHeld());
}

Ending Watch::finish(milliseconds limit) {
  Ending ending;
  const Clock::time_point end = m_begin + limit;
  for (reap(ending); !m_ended && Clock::now() < end; reap(ending)) {
    sleepUntil(actWhatIsDue());
  }
  if (!m_ended) {
    ending.hung = true;
    endDescendants(ending);
    return ending;
  }
  const Clock::time_point grace = Clock::now() + kGrace;
  for (reap(ending); m_hasChildren && Clock::now() < grace; reap(ending)) {
    sleepUntil(std::min(actWhatIsDue(), grace));
  }
  if (m_hasChildren) {
    endDescendants(ending);
  }
  return ending;
}

// Names and ends all that descend from us; orphans become our own children in the end.
void Watch::endDescendants(Ending& ending) {
  if (m_tracer != nullptr) {
    m_tracer->letGo();
  }
  for (reap(ending); m_hasChildren; reap(ending)) {
    for (const pid_t child : childrenOf(getpid())) {
      for (const pid_t grandchild : childrenOf(child)) {
        ending.left.push_back(nameOf(grandchild));
      }
      ending.left.push_back(nameOf(child));
      kill(child, SIGKILL);
    }
    sleepUntil(Clock::now() + milliseconds(20));
  }
  std::sort(ending.left.begin(), ending.left.end());
  ending.left.erase(std::unique(ending.left.begin(), ending.left.end()), ending.left.end());
}

}  // namespace torture
