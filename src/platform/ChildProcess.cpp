// ChildProcess, from the pipes to the end of an ordinary command. Signals and trials are in
// ChildProcessSignals.cpp.
#include "platform/ChildProcess.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <utility>
#include <vector>

#include "platform/CleanupState.h"
#include "platform/PlatformImpl.h"
#include "platform/TrialLimits.h"
#include "util/LauncherException.h"

namespace {

constexpr char kPipeError[] = "Couldn't create either stdout or stderr pipe: ";
constexpr char kForkError[] = "Error forking new process: ";
constexpr char kRedirectError[] = "Error capturing stdout or stderr in new process: ";
constexpr char kStartError[] = "Error starting /bin/sh: ";
constexpr char kWaitError[] = "Error waiting for child process: ";

// What the shell answers, too, when it cannot start a program.
constexpr int kCannotStart = 127;

constexpr std::size_t kKeptAtEachEnd = std::size_t{8} << 20;

LauncherException systemError(const SString& text, int errorNumber) {
  return LauncherException(text + std::strerror(errorNumber));
}

// Precedes each command. A shell that waits for its command survives HUP, INT and TERM, then starts
// nothing more and reports how the command ended. A signal that comes before the command gives
// 128 + n, also while the traps are exchanged: a shell heeds it between two of them. QUIT is for
// the command alone. The command itself is not protected. Only where we can send it the signal.
#ifdef __linux__
constexpr char kSurviveSignals[] =
    "trap 'exit 129' 1; trap 'exit 130' 2; trap 'exit 143' 15; trap : 3; "
    "trap 'exit' 1; trap 'exit' 2; trap 'exit' 15; ";
#else
constexpr char kSurviveSignals[] = "";
#endif

// The system takes no longer argument; a command that needs all of it goes without the trap.
constexpr std::size_t kLongestArgument = 128 * 1024 - 1;

SString shellLine(const SString& command) {
  const bool fits = command.size() + sizeof kSurviveSignals - 1 <= kLongestArgument;
  return fits ? kSurviveSignals + command : command;
}

KeptText::Limits limitsFor(const ProcessRequest& request) {
  return request.isTrial ? KeptText::Limits{kTrialLimits.outputSize, 0}
                         : KeptText::Limits{kKeptAtEachEnd, kKeptAtEachEnd};
}

}  // namespace

ChildProcess::ChildProcess(const ProcessRequest& request) : m_request(request) {
  m_result.output = KeptText(limitsFor(request));
  m_result.errors = KeptText(limitsFor(request));
}

// A child that still runs was left by an exception: nobody reads its output any more.
ChildProcess::~ChildProcess() {
  if (m_child != 0) {
    endNow();
    while (waitpid(m_child, nullptr, 0) == -1 && errno == EINTR) {
    }
  }
  g_signals.m_childRuns = 0;
}

void ChildProcess::start() {
  PlatformImpl::throwIfCanceled();
  for (OutputCapture& capture : m_captures) {
    if (m_request.captures && !capture.open()) {
      const int error = errno;
      throw systemError(kPipeError, error);
    }
  }
  if (!m_startFailure.open()) {
    const int error = errno;
    throw systemError(kForkError, error);
  }
  // Before the fork, since in the child nothing may fail for want of memory.
  const SString line = shellLine(m_request.command);
  std::vector<const char*> arguments{"sh", "-c", "--", line.c_str(), "sh"};
  for (long i = 0; i < m_request.arguments.size(); ++i) {
    arguments.push_back(m_request.arguments[i].c_str());
  }
  arguments.push_back(nullptr);
  fork(arguments.data());
  for (OutputCapture& capture : m_captures) {
    capture.beginReading();
  }
}

// Not vfork, though it would spare 0.3 ms: a child that is stopped, or whose shell lies on a dead
// disk, would hold us with it, deaf to every signal.
void ChildProcess::fork(const char* const* arguments) {
  const pid_t child = ::fork();
  if (child == -1) {
    const int error = errno;
    throw systemError(kForkError, error);
  }
  if (child == 0) {
    becomeShell(arguments);
  }
  m_child = child;
  m_startedAt = Clock::now();
  std::fill(std::begin(g_signals.m_unheard), std::end(g_signals.m_unheard), Unheard::None);
  g_signals.m_childRuns = 1;
  if (m_request.isTrial) {
    setpgid(child, child);  // as the child does: the group is there before either goes on
    m_date = m_startedAt + kTrialLimits.duration;
  }
}

// In the child.
void ChildProcess::becomeShell(const char* const* arguments) const {
  if (m_request.isTrial) {
    setpgid(0, 0);
    SignalHold::forgetHeld();  // what was sent to the launcher's group
  }
  m_signals.restoreInherited();
  if (!prepareDescriptors()) {
    failToStart(StartFailure::Step::Redirect);
  }
  execv("/bin/sh", const_cast<char* const*>(arguments));
  failToStart(StartFailure::Step::Start);
}

// In the child: makes standard input empty. In a jail without /dev/null it is a pipe at its end.
bool ChildProcess::readNothing() {
  const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (null != -1) {
    return dup2(null, STDIN_FILENO) != -1;
  }
  Pipe empty;
  return empty.open() && dup2(empty.readEnd(), STDIN_FILENO) != -1;
}

bool ChildProcess::prepareDescriptors() const {
  if (m_request.isTrial && !readNothing()) {
    return false;
  }
  return !m_request.captures ||
         (m_captures[0].redirect(STDOUT_FILENO) && m_captures[1].redirect(STDERR_FILENO));
}

void ChildProcess::failToStart(StartFailure::Step step) const {
  m_startFailure.tell(step, errno);
  _exit(kCannotStart);
}

ProcessResult ChildProcess::wait() {
  while (!isOver()) {
    waitForNews();
    readOutputs();
    heedSignals();
    keepTrialInTime();
  }
  finish();
  return std::move(m_result);
}

// A background process may keep the pipe open. After a cancel, do not wait for its end of file.
bool ChildProcess::isOver() {
  noteEnd();
  return m_hasEnded && (!hasOpenOutput() || PlatformImpl::isCanceled());
}

// Finds what has ended: the command, and orphans that became our children. An ended trial is not
// reaped: its number must stay that of its group until the group has been ended.
void ChildProcess::noteEnd() {
  siginfo_t info = {};
  while (!m_hasEnded) {
    info.si_pid = 0;
    if (waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == -1) {
      const int error = errno;
      if (error == EINTR) {
        continue;
      }
      loseChild(error);
    }
    if (info.si_pid == 0) {
      return;
    }
    if (info.si_pid == m_child) {
      noteStatus(info.si_code, info.si_status);
    }
    if (info.si_pid != m_child || !m_request.isTrial) {
      waitpid(info.si_pid, nullptr, 0);
    }
  }
}

void ChildProcess::noteStatus(int code, int status) {
  m_result.status = code == CLD_EXITED ? status : PlatformImpl::kSignalStatus + status;
  if (m_result.status == 0 && hasMissedCommand()) {
    m_result.status = PlatformImpl::getCancelStatus();
  }
  m_hasEnded = true;
  g_signals.m_childRuns = 0;
  if (m_request.isTrial) {
    m_date = std::min(m_date, Clock::now() + kTrialLimits.forStragglers);
  } else {
    m_child = 0;
  }
}

void ChildProcess::loseChild(int error) {
  m_hasEnded = true;
  g_signals.m_childRuns = 0;
  m_child = 0;
  if (!m_request.captures) {
    throw systemError(kWaitError, error);
  }
}

void ChildProcess::waitForNews() const {
  pollfd entries[2];
  nfds_t count = 0;
  for (const OutputCapture& capture : m_captures) {
    if (capture.isOpen()) {
      entries[count++] = {capture.readEnd(), POLLIN, 0};
    }
  }
  m_signals.waitForInput(entries, count, nextDate());
}

void ChildProcess::readOutputs() {
  m_captures[0].readSome(m_result.output);
  m_captures[1].readSome(m_result.errors);
  for (OutputCapture& capture : m_captures) {
    capture.countDrops(Clock::now());
  }
}

void ChildProcess::finish() {
  m_captures[0].readRest(m_result.output);
  m_captures[1].readRest(m_result.errors);
  for (OutputCapture& capture : m_captures) {
    capture.countRest();
    m_result.chunks += capture.chunkCount();
  }
  if (m_child != 0) {
    m_result.endedByItself = m_ending == Ending::NotYet && !hasOpenOutput();
    if (m_ending != Ending::NotYet || hasOpenOutput()) {
      endNow();  // also those of a trial's group that outlive it
    }
    waitpid(m_child, nullptr, WNOHANG);
    m_child = 0;
  }
  while (waitpid(-1, nullptr, WNOHANG) > 0) {
  }
  checkStart();
}

// Throws what stopped the shell from starting; of a trial only records it.
void ChildProcess::checkStart() {
  if (m_startFailure.error() == 0) {
    return;
  }
  const bool isRedirection = m_startFailure.step() == StartFailure::Step::Redirect;
  const LauncherException problem =
      systemError(isRedirection ? kRedirectError : kStartError, m_startFailure.error());
  if (!m_request.isTrial) {
    throw problem;
  }
  m_result.startError = problem.getMessage();
}
