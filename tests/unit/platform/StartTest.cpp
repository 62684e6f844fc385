// The launcher's start as a process: standard descriptors, signal dispositions, and what children
// inherit of them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <string>

#include "platform/PlatformImpl.h"
#include "support/Commands.h"
#include "support/OwnProcess.h"
#include "support/TestFiles.h"

namespace {

using test::outputOf;
using test::OwnProcess;

// --- Standard descriptors ---

TEST(StartTest, MissingStandardDescriptorsAreOpened) {
  for (unsigned missing = 0; missing < 8; ++missing) {
    SCOPED_TRACE(missing);
    // The answer is a file, since there may be no standard output.
    const test::TempDir folder;
    const std::string answer = folder / "answer";
    EXPECT_EQ("", outputOf([&] {
                struct stat before[3];
                for (int fd = 0; fd <= 2; ++fd) {
                  fstat(fd, &before[fd]);
                  if ((missing >> fd & 1) != 0) {
                    close(fd);
                  }
                }
                PlatformImpl::prepareProcess();
                struct stat null = {};
                stat("/dev/null", &null);
                std::string found;
                for (int fd = 0; fd <= 2; ++fd) {
                  struct stat now = {};
                  fstat(fd, &now);
                  const struct stat& wanted = (missing >> fd & 1) != 0 ? null : before[fd];
                  found += now.st_ino == wanted.st_ino && now.st_rdev == wanted.st_rdev ? "+" : "-";
                  found += (fcntl(fd, F_GETFD) & FD_CLOEXEC) != 0 ? "closed on exec" : "";
                }
                test::writeFile(answer, found);
              }));
    EXPECT_EQ("+++", test::readFile(answer));
  }
}

TEST(StartTest, AChildCanBeCapturedWhenAllDescriptorsWereMissing) {
  const test::TempDir folder;
  const std::string answer = folder / "answer";
  OwnProcess process([&] {
    for (int fd = 0; fd <= 2; ++fd) {
      close(fd);
    }
    PlatformImpl::prepareProcess();
    const ProcessResult result = test::runCaptured("cat; echo out; echo err >&2");
    test::writeFile(answer, std::string(result.output.text()) + result.errors.text().c_str());
  });
  EXPECT_EQ("exit 0", process.end());
  EXPECT_EQ("out\nerr\n", test::readFile(answer));
}

// --- What a child inherits ---

struct InheritedRow {
  const char* name;
  int signal;
  bool isIgnored;
  bool isBlocked;
  const char* child;  // whether the child outlives the signal
};

const InheritedRow kInheritedRows[] = {
    {"PIPE", SIGPIPE, false, false, ""},
    {"PIPE, ignored", SIGPIPE, true, false, "alive"},
    {"PIPE, blocked", SIGPIPE, false, true, "alive"},
    {"INT", SIGINT, false, false, ""},
    {"INT, ignored", SIGINT, true, false, "alive"},
    {"TERM", SIGTERM, false, false, ""},
    {"TERM, ignored", SIGTERM, true, false, "alive"},
    {"TERM, blocked", SIGTERM, false, true, "alive"},
    {"HUP", SIGHUP, false, false, ""},
    {"HUP, ignored", SIGHUP, true, false, "alive"},
    {"QUIT", SIGQUIT, false, false, ""},
    {"QUIT, ignored", SIGQUIT, true, false, "alive"},
    {"USR1, not ours", SIGUSR1, false, false, ""},
    {"USR1, not ours, ignored", SIGUSR1, true, false, "alive"},
};

void inherit(const InheritedRow& row) {
  signal(row.signal, row.isIgnored ? SIG_IGN : SIG_DFL);
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, row.signal);
  sigprocmask(row.isBlocked ? SIG_BLOCK : SIG_UNBLOCK, &set, nullptr);
}

std::string commandThatSignalsItself(const InheritedRow& row) {
  return "kill -" + std::to_string(row.signal) + " $$; printf alive";
}

TEST(StartTest, AChildHasTheDispositionsThatWeInherited) {
  for (const InheritedRow& row : kInheritedRows) {
    SCOPED_TRACE(row.name);
    const int wanted = row.child[0] == '\0' ? 128 + row.signal : 0;
    EXPECT_EQ(row.child + (" code " + std::to_string(wanted)), outputOf([&row] {
                inherit(row);
                PlatformImpl::prepareProcess();
                const std::string command = commandThatSignalsItself(row);
                // Below a shell of ours, which survives signals; a shell forgets what is blocked.
                std::printf(" code %d", test::runCommand(row.isBlocked ? command
                                                                       : "exec 2>&-; ulimit -c 0; "
                                                                         "sh -c '" +
                                                                             command + "'"));
              }));
  }
}

TEST(StartTest, TheEndOfAChildIsNoticedAlsoWhereItsSignalIsBlocked) {
  for (const bool capture : {false, true}) {
    for (const char* command : {"sleep 0.05; exit 5", "exec >&- 2>&-; sleep 0.05; exit 5"}) {
      SCOPED_TRACE(std::string(command) + (capture ? ", captured" : ""));
      EXPECT_EQ("5", outputOf([&] {
                  inherit({"CHLD, blocked", SIGCHLD, false, true, ""});
                  PlatformImpl::prepareProcess();
                  std::printf("%d", test::runCommand(command, capture));
                }));
    }
  }
}

TEST(StartTest, AProgramThatWeBecomeHasThemToo) {
  for (const InheritedRow& row : kInheritedRows) {
    SCOPED_TRACE(row.name);
    const std::string end =
        row.child[0] == '\0' ? "[signal " + std::to_string(row.signal) + "]" : row.child;
    EXPECT_EQ(end, outputOf([&row] {
                inherit(row);
                PlatformImpl::prepareProcess();
                const std::string command = "ulimit -c 0; " + commandThatSignalsItself(row);
                PlatformImpl::replaceProcess(test::wordsOf({"/bin/sh", "-c", command.c_str()}));
              }));
  }
}

TEST(StartTest, AfterAFailedReplacementTheSignalsAreOursAgain) {
  EXPECT_EQ("canceled 1 pipe 1", outputOf([] {
              PlatformImpl::prepareProcess();
              PlatformImpl::replaceProcess(test::wordsOf({"/nowhere/program"}));
              raise(SIGPIPE);
              kill(getpid(), SIGTERM);
              std::printf("canceled %d pipe 1", PlatformImpl::isCanceled() ? 1 : 0);
            }));
}

TEST(StartTest, ChildrenCanBeWaitedForThoughTheirEndWasIgnored) {
  for (const bool isPrepared : {true, false}) {
    for (const bool captures : {true, false}) {
      EXPECT_EQ("code 5", outputOf([=] {
                  signal(SIGCHLD, SIG_IGN);
                  if (isPrepared) {
                    PlatformImpl::prepareProcess();
                  }
                  std::printf("code %d", test::runCommand("exit 5", captures));
                }));
    }
  }
}

TEST(StartTest, AClosedPipeDoesNotEndUs) {
  EXPECT_EQ("broken 1", outputOf([] {
              PlatformImpl::prepareProcess();
              int ends[2];
              if (pipe(ends) == 0) {
                close(ends[0]);
                const bool isBroken = write(ends[1], "x", 1) == -1 && errno == EPIPE;
                std::printf("broken %d", isBroken ? 1 : 0);
              }
            }));
}

}  // namespace
