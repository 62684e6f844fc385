// Child processes: PlatformImpl's operations that run a command or become it.
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

#include "launcher/CmdLine.h"
#include "platform/CleanupState.h"
#include "platform/PlatformImpl.h"
#include "platform/PlatformSignals.h"
#include "util/LauncherException.h"

namespace {

constexpr char kWorkingDirError[] = "Error setting working directory: ";
constexpr char kPipeError[] = "Couldn't create either stdout or stderr pipe: ";
constexpr char kForkError[] = "Error forking new process: ";
constexpr char kWaitError[] = "Error waiting for child process: ";

constexpr int kChunkSize = 4096;
// What is read from one stream before the other has its turn: as much as a pipe holds.
constexpr int kChunksPerTurn = 16;
// What the shell answers, too, when it cannot start a program.
constexpr int kCannotStart = 127;

#if defined(O_PATH)
constexpr int kDirectoryToReturnTo = O_PATH | O_DIRECTORY | O_CLOEXEC;
#elif defined(O_SEARCH)
constexpr int kDirectoryToReturnTo = O_SEARCH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int kDirectoryToReturnTo = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

LauncherException systemError(const SString& text, int errorNumber) {
  return LauncherException(text + std::strerror(errorNumber));
}

// Makes a directory the current one until the end of the scope; an empty name changes nothing.
// The way back is a descriptor, which holds when the path is too long or was renamed meanwhile.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const SString& path);
  ~WorkingDirectory();
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  void remember();

  int m_old = -1;
  SString m_oldPath;  // used when the old directory cannot be opened
};

WorkingDirectory::WorkingDirectory(const SString& path) {
  if (path.empty()) {
    return;
  }
  remember();
  if (chdir(path.c_str()) == -1) {
    const int error = errno;
    if (m_old != -1) {
      close(m_old);
    }
    throw systemError(kWorkingDirError + path + " ", error);
  }
}

void WorkingDirectory::remember() {
  m_old = open(".", kDirectoryToReturnTo);
  if (m_old == -1) {
    char* path = getcwd(nullptr, 0);
    m_oldPath = path;
    std::free(path);
  }
}

WorkingDirectory::~WorkingDirectory() {
  if (m_old != -1) {
    static_cast<void>(fchdir(m_old) == 0);
    close(m_old);
  } else if (!m_oldPath.empty()) {
    static_cast<void>(chdir(m_oldPath.c_str()) == 0);
  }
}

// One output stream of a child: a pipe, and the text that collects what comes through it.
class Output {
 public:
  Output() = default;
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  bool open(SString* text);
  bool isOpen() const { return m_readEnd != -1; }
  int readEnd() const { return m_readEnd; }
  // For the child: makes `fd` the stream's beginning.
  bool redirect(int fd) const { return dup2(m_writeEnd, fd) != -1; }
  // For the launcher, once the child has its own copy.
  void beginReading();
  // Reads what is there, at most as much as a pipe holds.
  void readSome();

 private:
  static void closeEnd(int& end);

  int m_readEnd = -1;
  int m_writeEnd = -1;
  SString* m_text = nullptr;
};

Output::~Output() {
  closeEnd(m_readEnd);
  closeEnd(m_writeEnd);
}

void Output::closeEnd(int& end) {
  if (end != -1) {
    close(end);
    end = -1;
  }
}

bool Output::open(SString* text) {
  m_text = text;
  int ends[2];
#ifdef __APPLE__
  if (pipe(ends) == -1) {
    return false;
  }
  fcntl(ends[0], F_SETFD, FD_CLOEXEC);
  fcntl(ends[1], F_SETFD, FD_CLOEXEC);
#else
  if (pipe2(ends, O_CLOEXEC) == -1) {
    return false;
  }
#endif
  m_readEnd = ends[0];
  m_writeEnd = ends[1];
  return true;
}

void Output::beginReading() {
  closeEnd(m_writeEnd);
  fcntl(m_readEnd, F_SETFL, fcntl(m_readEnd, F_GETFL) | O_NONBLOCK);
}

void Output::readSome() {
  for (int chunk = 0; chunk < kChunksPerTurn; ++chunk) {
    const int count = PlatformImpl::readFromFile(m_readEnd, m_text);
    if (count == -1 && errno == EAGAIN) {
      return;
    }
    if (count <= 0) {
      closeEnd(m_readEnd);
      return;
    }
  }
}

// In front of each command, for HUP, INT and TERM: a shell that waits for its command survives a
// signal, then starts nothing more and tells how the command ended, which is what our caller wants
// to know. The command itself is not protected. Only where it hears of the signal, too.
#ifdef __linux__
constexpr char kSurviveSignals[] = "trap 'exit' 1 2 15; ";
#else
constexpr char kSurviveSignals[] = "";
#endif

// The system takes no longer argument; a command that fills it goes without the words in front.
constexpr std::size_t kLongestArgument = 128 * 1024 - 1;

SString shellLine(const SString& command) {
  const bool fits = command.size() + sizeof kSurviveSignals - 1 <= kLongestArgument;
  return fits ? kSurviveSignals + command : command;
}

// Becomes the shell; what fails shows in the status, since no message can reach anybody.
[[noreturn]] void becomeShell(const char* command) {
  execl("/bin/sh", "sh", "-c", "--", command, static_cast<char*>(nullptr));
  _exit(kCannotStart);
}

// Becomes the program that the command names; returns only when that fails.
void becomeProgram(const SString& command) {
  CmdLine words;
  words.parse(command);
  std::vector<char*> arguments;
  arguments.reserve(static_cast<std::size_t>(words.getOptionCount()) + 1);
  for (int i = 0; i < words.getOptionCount(); ++i) {
    arguments.push_back(const_cast<char*>(words.getOption(i)));
  }
  arguments.push_back(nullptr);
  if (arguments[0] != nullptr) {
    const SignalHold signals;
    signals.giveBack();
    execvp(arguments[0], arguments.data());
  }
}

}  // namespace

// The one child that runs at a time, from its pipes to its end.
class PlatformImpl::Child {
 public:
  Child() = default;
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  void capture(SString* stdOut, SString* stdErr);
  void start(const SString& command, bool redirect);
  // Collects the output until the child has ended and all its output has come. Returns its status.
  int wait();

 private:
  bool reap();
  bool hasOpenOutput() const { return m_outputs[0].isOpen() || m_outputs[1].isOpen(); }
  void readOutputs();

  const SignalHold m_signals;
  bool m_captures = false;
  Output m_outputs[2];
  int m_status = 0;
};

// A child that is still there was left by an exception: nobody will look at its output any more.
PlatformImpl::Child::~Child() {
  if (g_cleanup.m_child != 0) {
    if (!signalCommand(g_cleanup.m_child, SIGKILL, SIGTERM)) {
      kill(g_cleanup.m_child, SIGKILL);
    }
    while (waitpid(g_cleanup.m_child, nullptr, 0) == -1 && errno == EINTR) {
    }
    g_cleanup.m_child = 0;
  }
}

void PlatformImpl::Child::capture(SString* stdOut, SString* stdErr) {
  m_captures = true;
  if (!m_outputs[0].open(stdOut) || !m_outputs[1].open(stdErr)) {
    const int error = errno;
    throw systemError(kPipeError, error);
  }
}

void PlatformImpl::Child::start(const SString& command, bool redirect) {
  const SString line = shellLine(command);  // in the child nothing may fail for want of memory
  const pid_t child = fork();
  if (child == -1) {
    const int error = errno;
    throw systemError(kForkError, error);
  }
  if (child == 0) {
    m_signals.giveBack();
    if (redirect && m_captures &&
        !(m_outputs[0].redirect(STDOUT_FILENO) && m_outputs[1].redirect(STDERR_FILENO))) {
      _exit(kCannotStart);
    }
    becomeShell(line.c_str());
  }
  g_cleanup.m_child = child;
  if (m_captures) {
    m_outputs[0].beginReading();
    m_outputs[1].beginReading();
  }
}

// True when there is no child to wait for any more.
bool PlatformImpl::Child::reap() {
  if (g_cleanup.m_child == 0) {
    return true;
  }
  const pid_t ended = waitpid(g_cleanup.m_child, &m_status, WNOHANG);
  const int error = errno;
  if (ended == 0) {
    return false;
  }
  g_cleanup.m_child = 0;
  if (ended == -1 && !m_captures) {
    throw systemError(kWaitError, error);
  }
  return true;
}

void PlatformImpl::Child::readOutputs() {
  for (Output& output : m_outputs) {
    if (output.isOpen()) {
      output.readSome();
    }
  }
}

int PlatformImpl::Child::wait() {
  // Who the child left behind may hold its output open; the user need not wait for those.
  while (!reap() || (hasOpenOutput() && !isCanceled())) {
    pollfd entries[2];
    nfds_t count = 0;
    for (const Output& output : m_outputs) {
      if (output.isOpen()) {
        entries[count++] = {output.readEnd(), POLLIN, 0};
      }
    }
    m_signals.waitForInput(entries, count);
    readOutputs();
  }
  readOutputs();
  return m_status >> 8;
}

int PlatformImpl::executeProcess(const SString& command, const SString& workingDir, bool,
                                 bool capture, bool redirectInChild, SString* stdOut,
                                 SString* stdErr, bool replaceProcess) {
  std::fflush(stdout);
  if (replaceProcess) {
    becomeProgram(command);
    return 0;
  }
  Child child;
  {
    const WorkingDirectory during(workingDir);
    if (capture) {
      child.capture(stdOut, stdErr);
    }
    child.start(command, redirectInChild);
  }
  return child.wait();
}

int PlatformImpl::readFromFile(int fd, SString* out) {
  char chunk[kChunkSize];
  ssize_t count = 0;
  do {
    count = read(fd, chunk, sizeof chunk);
  } while (count == -1 && errno == EINTR);
  if (count > 0) {
    if (out != nullptr) {
      // QUIRK(chunk-ends-at-zero-byte): the rest of a chunk behind a zero byte is dropped, as of
      // any C text; output is compared and logged as text, where no zero byte may stand.
      out->append(std::string_view(chunk, strnlen(chunk, static_cast<std::size_t>(count))));
    }
    advanceUIProgress(1);
  }
  return static_cast<int>(count);
}
