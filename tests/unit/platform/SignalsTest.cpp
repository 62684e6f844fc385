// Signals: cancellation, and who hears of them while a child runs. What a child inherits is in
// StartTest.cpp.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "platform/PlatformImpl.h"
#include "platform/PlatformSignals.h"
#include "platform/ResultLines.h"
#include "support/Commands.h"
#include "support/OwnProcess.h"
#include "support/Restrictions.h"
#include "support/TestAccess.h"
#include "support/TestFiles.h"
#include "support/Texts.h"
#include "util/LauncherException.h"

namespace {

using test::outputOf;
using test::OwnProcess;

// --- Cancellation without a child ---

struct CancelRow {
  const char* name;
  std::vector<int> ignored;
  std::vector<int> signals;
  const char* output;
};

const CancelRow kCancelRows[] = {
    {"none", {}, {}, "0"},
    {"INT", {}, {SIGINT}, "1"},
    {"TERM", {}, {SIGTERM}, "1"},
    {"HUP", {}, {SIGHUP}, "1"},
    {"INT ignored", {SIGINT}, {SIGINT, SIGINT}, "0"},
    {"TERM ignored", {SIGTERM}, {SIGTERM}, "0"},
    {"HUP ignored", {SIGHUP}, {SIGHUP}, "0"},
    {"HUP ignored, TERM counts", {SIGHUP}, {SIGHUP, SIGTERM}, "1"},
    {"QUIT", {}, {SIGQUIT}, "1"},
    {"QUIT ignored", {SIGQUIT}, {SIGQUIT}, "0"},
    {"further ones do not end us", {}, {SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGTERM, SIGINT}, "1"},
    {"PIPE cancels nothing", {}, {SIGPIPE, SIGPIPE}, "0"},
};

TEST(SignalsTest, SignalsCancelTheRun) {
  for (const CancelRow& row : kCancelRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.output, outputOf([&row] {
                for (const int number : row.ignored) {
                  signal(number, SIG_IGN);
                }
                PlatformImpl::prepareProcess();
                for (const int number : row.signals) {
                  kill(getpid(), number);
                }
                std::printf("%d", PlatformImpl::isCanceled() ? 1 : 0);
              }));
  }
}

TEST(SignalsTest, TheEndByTheSignalThatCanceledFirst) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    EXPECT_EQ("said" + std::to_string(128 + number) + "[signal " + std::to_string(number) + "]",
              outputOf([number] {
                PlatformImpl::prepareProcess();
                kill(getpid(), number);
                kill(getpid(), SIGINT);
                std::printf("said%d", PlatformImpl::getCancelStatus());
                PlatformImpl::endByCancelingSignal();
              }));
  }
}

TEST(SignalsTest, ThrowIfCanceled) {
  const test::ScopedEnvironment language("LANG", "C");
  EXPECT_NO_THROW(PlatformImpl::throwIfCanceled());
  PlatformTestAccess::setCanceled(true);
  try {
    PlatformImpl::throwIfCanceled();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const Canceled& problem) {
    EXPECT_STREQ("Canceled by the user.", problem.what());
  }
  PlatformTestAccess::setCanceled(false);
}

// --- Signals held back ---

TEST(SignalsTest, HeldSignalsAreDeliveredInTheWait) {
  for (const bool hasInput : {false, true}) {
    EXPECT_EQ("0 1 after", outputOf([hasInput] {
                PlatformImpl::prepareProcess();
                int ends[2];
                const bool isReady = pipe(ends) == 0 && (!hasInput || write(ends[1], "x", 1) == 1);
                {
                  const SignalHold hold;
                  kill(getpid(), SIGTERM);
                  std::printf("%d ", PlatformImpl::isCanceled() ? 1 : 0);
                  pollfd entry = {ends[0], POLLIN, 0};
                  hold.waitForInput(&entry, isReady ? 1 : 0);
                  std::printf("%d ", PlatformImpl::isCanceled() ? 1 : 0);
                }
                std::printf("after");
              }));
  }
}

TEST(SignalsTest, TheWaitEndsWhenTheTimeHasCome) {
  const SignalHold hold;
  for (const int wanted : {0, 30}) {
    const auto begin = Clock::now();
    hold.waitForInput(nullptr, 0, begin + milliseconds(wanted));
    EXPECT_LE(milliseconds(wanted), Clock::now() - begin);
  }
}

// --- Signals while a child runs ---

// Two named pipes between the child and the test: the child writes to $READY each time that it is
// ready for the next signal; "cat $GO" blocks until the test lets it go.
class Gates {
 public:
  Gates() : m_ready(m_folder / "ready"), m_go(m_folder / "go") {
    EXPECT_EQ(0, mkfifo(m_ready.c_str(), 0600));
    EXPECT_EQ(0, mkfifo(m_go.c_str(), 0600));
    setenv("READY", m_ready.c_str(), 1);
    setenv("GO", m_go.c_str(), 1);
  }
  void awaitReady() const { EXPECT_EQ("ready\n", test::readFile(m_ready)); }
  void open() const { close(::open(m_go.c_str(), O_WRONLY)); }

 private:
  test::TempDir m_folder;
  std::string m_ready;
  std::string m_go;
};

// Starts what holds the gate, deaf to signals, and stays, through trapped ones, until it opens.
const std::string kGate = "trap '' HUP INT TERM; cat $GO & g=$!; trap - HUP INT TERM; ";
const std::string kStay = "echo ready > $READY; while kill -0 $g 2>/dev/null; do wait $g; done; ";

// How the command is run: captured or not; by the launcher's shell, or by one more below that.
enum Way { kPlain = 1, kCaptured = 2, kPlainBelow = 4, kCapturedBelow = 8 };
constexpr int kByOurShell = kPlain | kCaptured;
constexpr int kBelowOurShell = kPlainBelow | kCapturedBelow;
constexpr int kAllWays = kByOurShell | kBelowOurShell;

enum class Gate { Opens, OpensAtTheEnd, None };

struct ChildRow {
  const char* name;
  std::string command;
  std::vector<int> signals;
  int ways;
  Gate gate;
  const char* output;  // the child's, the exit code; how the launcher ended
};

const ChildRow kChildRows[] = {
    {.name = "TERM is passed on",
     .command = kGate + "trap 'exit 9' TERM; " + kStay,
     .signals = {SIGTERM},
     .ways = kAllWays,
     .gate = Gate::OpensAtTheEnd,
     .output = " code 9 canceled 1"},
    {.name = "INT is passed on",
     .command = kGate + "trap 'exit 8' INT; " + kStay,
     .signals = {SIGINT},
     .ways = kAllWays,
     .gate = Gate::OpensAtTheEnd,
     .output = " code 8 canceled 1"},
    {.name = "HUP is passed on",
     .command = kGate + "trap 'exit 7' HUP; " + kStay,
     .signals = {SIGHUP},
     .ways = kAllWays,
     .gate = Gate::OpensAtTheEnd,
     .output = " code 7 canceled 1"},
    {.name = "a shell that knows no better dies",
     .command = kGate + kStay,
     .signals = {SIGTERM},
     .ways = kByOurShell,
     .gate = Gate::OpensAtTheEnd,
     .output = " code 143 canceled 1"},
    {.name = "a command that knows no better dies, our shell tells",
     .command = kGate + kStay,
     .signals = {SIGTERM},
     .ways = kBelowOurShell,
     .gate = Gate::OpensAtTheEnd,
     .output = " code 143 canceled 1"},
    {.name = "the child decides",
     .command = kGate + "trap '' TERM; " + kStay + "exit 4",
     .signals = {SIGTERM},
     .ways = kAllWays,
     .gate = Gate::Opens,
     .output = " code 4 canceled 1"},
    {.name = "its last words are heard",
     .command = kGate + "trap 'printf bye; exit 9' TERM; " + kStay,
     .signals = {SIGTERM},
     .ways = kAllWays,
     .gate = Gate::OpensAtTheEnd,
     .output = "bye code 9 canceled 1"},
    {.name = "its last words are heard though somebody stays behind",
     .command =
         "trap '' TERM; (cat $GO; printf late) & trap 'printf bye; exit 6' TERM; g=$!; " + kStay,
     .signals = {SIGTERM},
     .ways = kCaptured | kCapturedBelow,
     .gate = Gate::OpensAtTheEnd,
     .output = "bye code 6 canceled 1"},
    {.name = "nothing more is started",
     .command = "exec 2>/dev/null; sh -c 'echo ready > $READY; exec sleep 20'; printf more",
     .signals = {SIGTERM},
     .ways = kByOurShell,
     .gate = Gate::None,
     .output = " code 143 canceled 1"},
    {.name = "who stays behind is not waited for",
     .command = "trap '' TERM; printf early; (cat $GO; printf late) & echo ready > $READY; exit 6",
     .signals = {SIGTERM},
     .ways = kCaptured,
     .gate = Gate::OpensAtTheEnd,
     .output = "early code 6 canceled 1"},
    {.name = "who stays behind is not waited for, signal first",
     .command =
         "printf early; trap '' TERM; (cat $GO; printf late) & trap 'exit 6' TERM; g=$!; " + kStay,
     .signals = {SIGTERM},
     .ways = kCaptured | kCapturedBelow,
     .gate = Gate::OpensAtTheEnd,
     .output = "early code 6 canceled 1"},
    {.name = "endless output shuts no signal out",
     .command = "sh -c 'echo ready > $READY; exec yes >&2'",
     .signals = {SIGTERM},
     .ways = kCaptured,
     .gate = Gate::None,
     .output = " code 143 canceled 1"},
    {.name = "the second ends the command, whatever it does",
     .command = kGate + "trap 'echo ready > $READY' TERM; trap '' INT HUP; " + kStay,
     .signals = {SIGTERM, SIGINT},
     .ways = kAllWays,
     .gate = Gate::None,
     .output = " code 137 canceled 1"},
};

void runLauncher(const std::string& command, bool captures) {
  PlatformImpl::prepareProcess();
  PlatformImpl::setSilent(true);
  const ProcessResult result = PlatformImpl::executeProcess(test::requestOf(command, captures));
  std::printf("%s code %d canceled %d", result.output.text().c_str(), result.status,
              PlatformImpl::isCanceled() ? 1 : 0);
}

std::string signalLauncher(const ChildRow& row, Way way, bool (*prepare)() = nullptr) {
  const Gates gates;
  const bool isBelow = (way & kBelowOurShell) != 0;
  const test::ScopedEnvironment inner("INNER", row.command.c_str());
  OwnProcess launcher([&] {
    static_cast<void>(prepare == nullptr || prepare());
    runLauncher(isBelow ? "exec 2>/dev/null; sh -c \"$INNER\"" : row.command,
                (way & (kCaptured | kCapturedBelow)) != 0);
  });
  for (const int number : row.signals) {
    gates.awaitReady();
    kill(launcher.pid(), number);
  }
  if (row.gate == Gate::Opens) {
    gates.open();
  }
  const std::string end = launcher.end();
  if (row.gate == Gate::OpensAtTheEnd) {
    gates.open();
  }
  return launcher.output() + (end == "exit 0" ? "" : "[" + end + "]");
}

TEST(SignalsTest, SignalsWhileAChildRuns) {
#ifdef CORVANE_CROSS_BUILD
  GTEST_SKIP() << "an emulated child hears signals late";
#endif
  for (const ChildRow& row : kChildRows) {
    SCOPED_TRACE(row.name);
    for (const Way way : {kPlain, kCaptured, kPlainBelow, kCapturedBelow}) {
      if ((row.ways & way) != 0) {
        EXPECT_EQ(row.output, signalLauncher(row, way)) << "way " << way;
      }
    }
  }
}

// Without /proc the launcher knows the shell alone, and not what the shell has started.
const ChildRow kUnknownChildRows[] = {
    {.name = "the shell hears of it",
     .command = kGate + "trap 'exit 9' TERM; " + kStay,
     .signals = {SIGTERM},
     .ways = kByOurShell,
     .gate = Gate::OpensAtTheEnd,
     .output = " code 9 canceled 1"},
    {.name = "the shell waits for a command that does not",
     .command = kGate + "trap 'exit 9' TERM; " + kStay + "exit 4",
     .signals = {SIGTERM},
     .ways = kBelowOurShell,
     .gate = Gate::Opens,
     .output = " code 4 canceled 1"},
    {.name = "the second ends the shell",
     .command = kGate + "trap 'echo ready > $READY' TERM; trap '' INT; " + kStay,
     .signals = {SIGTERM, SIGINT},
     .ways = kByOurShell,
     .gate = Gate::OpensAtTheEnd,
     .output = " code 137 canceled 1"},
};

TEST(SignalsTest, SignalsWhileAChildRunsThatNobodyCanLookAt) {
#ifdef CORVANE_CROSS_BUILD
  GTEST_SKIP() << "an emulated child hears signals late";
#endif
  if (outputOf([] { std::printf("%d", test::hideProc() ? 1 : 0); }) != "1") {
    GTEST_SKIP() << "/proc cannot be hidden here";
  }
  for (const ChildRow& row : kUnknownChildRows) {
    SCOPED_TRACE(row.name);
    for (const Way way : {kPlain, kCaptured, kPlainBelow, kCapturedBelow}) {
      if ((row.ways & way) != 0) {
        EXPECT_EQ(row.output, signalLauncher(row, way, test::hideProc)) << "way " << way;
      }
    }
  }
}

TEST(SignalsTest, AnIgnoredSignalDoesNotDisturbAChild) {
  const Gates gates;
  OwnProcess launcher([] {
    signal(SIGINT, SIG_IGN);
    runLauncher(kGate + kStay + "exit 4", true);
  });
  gates.awaitReady();
  kill(launcher.pid(), SIGINT);
  gates.open();
  EXPECT_EQ("exit 0", launcher.end());
  EXPECT_EQ(" code 4 canceled 0", launcher.output());
}

// The shell itself reads: it has started nothing yet that could be told.
TEST(SignalsTest, QuitBeforeTheFirstCommandChangesNoStatus) {
  const Gates gates;
  OwnProcess launcher([] { runLauncher("echo ready > $READY; read x < $GO; exit 0", true); });
  gates.awaitReady();
  kill(launcher.pid(), SIGQUIT);
  usleep(50'000);
  gates.open();
  EXPECT_EQ("exit 0", launcher.end());
  EXPECT_EQ(" code 0 canceled 0", launcher.output());
}

#if defined(_POSIX_TIMERS) && _POSIX_TIMERS > 0
bool startTimer(int signal, timespec first, timespec every) {
  sigevent event = {};
  event.sigev_notify = SIGEV_SIGNAL;
  event.sigev_signo = signal;
  timer_t timer = {};
  const itimerspec times = {every, first};
  return timer_create(CLOCK_MONOTONIC, &event, &timer) == 0 &&
         timer_settime(timer, 0, &times, nullptr) == 0;
}

// A timer's signal, like the terminal's, is not sent by a process. It comes after the shell's first
// word: before that a cancel may end the shell.
TEST(SignalsTest, WhatNoProcessSentIsNotPassedOn) {
  EXPECT_EQ(" code 4 canceled 1", outputOf([] {
              if (startTimer(SIGTERM, {0, 500'000'000}, {0, 0})) {
                runLauncher("trap 'exit 9' TERM; sleep 1; exit 4", true);
              }
            }));
}

// The result is more than a pipe holds, and nobody reads it.
TEST(SignalsTest, ACancelEndsTheWaitForAReader) {
  const test::ScopedEnvironment language("LANG", "C");
  EXPECT_EQ("Canceled by the user.", outputOf([] {
              const int output = dup(STDOUT_FILENO);
              int ends[2];
              PlatformImpl::prepareProcess();
              if (pipe(ends) == 0 && dup2(ends[1], STDOUT_FILENO) != -1 &&
                  startTimer(SIGTERM, {0, 20'000'000}, {0, 20'000'000})) {
                const std::string end = test::errorOf<Canceled>(
                    [] { printResult({test::sstr(std::string(1 << 20, 'x'))}); });
                dup2(output, STDOUT_FILENO);
                std::printf("%s", end.c_str());
              }
            }));
}
#endif

// The terminal sends to the whole group: the child, which counts, must not have it from us again.
TEST(SignalsTest, WhatTheTerminalSendsIsNotPassedOn) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  if (terminal == -1 || grantpt(terminal) != 0 || unlockpt(terminal) != 0) {
    GTEST_SKIP() << "no terminals here";
  }
  const std::string name = ptsname(terminal);
  const Gates gates;
  OwnProcess launcher([&name] {
    setsid();
    ioctl(open(name.c_str(), O_RDWR), TIOCSCTTY, 0);
    runLauncher(
        "n=0; " + kGate + "trap 'n=$((n+1)); echo ready > $READY' INT; " + kStay + "exit $n", true);
  });
  gates.awaitReady();
  ASSERT_EQ(1, write(terminal, "\x03", 1));
  gates.awaitReady();
  gates.open();
  EXPECT_EQ("exit 0", launcher.end());
  EXPECT_EQ(" code 1 canceled 1", launcher.output());
  close(terminal);
}

}  // namespace
