// Trials: programs of strangers, run for their answer. However they behave they end in time, and
// nobody of them stays. The limits are those of HastyTrialLimits.cpp.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string>

#include "platform/TrialLimits.h"
#include "support/Commands.h"
#include "support/OwnProcess.h"
#include "support/TestAccess.h"
#include "support/TestFiles.h"
#include "support/Valgrind.h"

namespace {

const std::string kStandIn = CORVANE_STAND_IN;

ProcessRequest trialOf(const std::string& command) {
  ProcessRequest request = test::requestOf(command, true);
  request.isTrial = true;
  return request;
}

struct Row {
  const char* name;
  std::string command;  // behind it the file for the process numbers
  std::string output;
  bool isTimedOut;
  milliseconds atLeast;
  milliseconds atMost;
};

constexpr milliseconds kAtOnce{350};  // sooner than any limit, on a busy machine, too
constexpr milliseconds kGrace{900};

const Row kRows[] = {
    {.name = "nothing is to be read",
     .command = kStandIn + " reader",
     .output = "0",
     .isTimedOut = false,
     .atLeast = milliseconds(0),
     .atMost = kAtOnce},
    {.name = "a process group of its own",
     .command = kStandIn + " group",
     .output = "own",
     .isTimedOut = false,
     .atLeast = milliseconds(0),
     .atMost = kAtOnce},
    {.name = "one that ends when asked",
     .command = "exec " + kStandIn + " slow",
     .output = "readybye",
     .isTimedOut = true,
     .atLeast = kTrialLimits.duration,
     .atMost = kTrialLimits.duration + kGrace},
    {.name = "one that ignores signals",
     .command = "exec " + kStandIn + " deaf",
     .output = "ready",
     .isTimedOut = true,
     .atLeast = kTrialLimits.duration + kTrialLimits.untilKilled,
     .atMost = kTrialLimits.duration + kTrialLimits.untilKilled + kGrace},
    {.name = "the same below a shell",
     .command = kStandIn + " deaf",
     .output = "ready",
     .isTimedOut = true,
     .atLeast = kTrialLimits.duration,
     .atMost = kTrialLimits.duration + kTrialLimits.untilKilled + kGrace},
    {.name = "one that has stopped itself",
     .command = "exec " + kStandIn + " stopped",
     .output = "ready",
     .isTimedOut = true,
     .atLeast = kTrialLimits.duration,
     .atMost = kTrialLimits.duration + kTrialLimits.untilKilled + kGrace},
    {.name = "one that left the group",
     .command = "exec " + kStandIn + " escaped",
     .output = "ready",
     .isTimedOut = true,
     .atLeast = kTrialLimits.duration,
     .atMost = kTrialLimits.duration + kTrialLimits.untilKilled + kGrace},
    {.name = "one that leaves somebody behind with the pipe",
     .command = "exec " + kStandIn + " straggler",
     .output = "answer",
     .isTimedOut = false,
     .atLeast = kTrialLimits.forStragglers,
     .atMost = kTrialLimits.forStragglers + kGrace},
};

TEST(TrialTest, EndsInTimeAndLeavesNobody) {
  PlatformImpl::setSilent(true);
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    const test::TempDir folder;
    const std::string processes = folder / "processes";
    const auto begin = Clock::now();
    const ProcessResult result =
        PlatformImpl::executeProcess(trialOf(row.command + " '" + processes + "'"));
    const auto took = std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
    EXPECT_EQ(row.output, std::string(result.output.beginning()));
    EXPECT_EQ(row.isTimedOut, result.isTimedOut);
    EXPECT_LE(row.atLeast, took);
    EXPECT_GE(row.atMost, took);
    EXPECT_EQ(0, test::countLeft(processes));
  }
}

TEST(TrialTest, TheFirstMebibyteOfEachStreamIsKept) {
  PlatformImpl::setSilent(true);
  const ProcessResult result = PlatformImpl::executeProcess(
      trialOf("yes 1234567 | head -c 3000000; yes 7654321 | head -c 2000000 >&2"));
  EXPECT_EQ(std::size_t{1} << 20, result.output.beginning().size());
  EXPECT_EQ(3000000U - (1U << 20), result.output.leftOut());
  EXPECT_EQ(2000000U - (1U << 20), result.errors.leftOut());
  EXPECT_TRUE(result.output.text().endsWith("1234567\n[1951424 bytes left out]\n"));
}

TEST(TrialTest, EndlessOutputEndsInTime) {
  PlatformImpl::setSilent(true);
  const ProcessResult result = PlatformImpl::executeProcess(trialOf("exec yes"));
  EXPECT_TRUE(result.isTimedOut);
  EXPECT_EQ(std::size_t{1} << 20, result.output.beginning().size());
}

TEST(TrialTest, AShellThatDoesNotStartIsAResult) {
  if (test::isUnderValgrind()) {
    GTEST_SKIP() << test::kNoFailingExec;
  }
  const ProcessResult result = PlatformImpl::executeProcess(trialOf(std::string(200000, 'x')));
  EXPECT_EQ("Error starting /bin/sh: Argument list too long", std::string(result.startError));
  EXPECT_EQ("", std::string(result.output.beginning()));
}

// The first signal asks the trial to end, the second does not wait for that.
TEST(TrialTest, ACancelEndsItsGroup) {
  for (const char* way : {"deaf", "stopped", "slow", "escaped", "straggler"}) {
    for (const int count : {1, 2}) {
      SCOPED_TRACE(std::string(way) + " " + std::to_string(count));
      const test::TempDir folder;
      const std::string processes = folder / "processes";
      test::OwnProcess launcher([&] {
        PlatformImpl::prepareProcess();
        PlatformImpl::setSilent(true);
        const ProcessResult result = PlatformImpl::executeProcess(
            trialOf(kStandIn + " " + way + " '" + processes + "'; sleep 20"));
        std::printf("timed out %d canceled %d", result.isTimedOut, PlatformImpl::isCanceled());
      });
      for (int i = 0; i < 1000 && access(processes.c_str(), F_OK) != 0; ++i) {
        usleep(1000);
      }
      kill(launcher.pid(), SIGINT);
      if (count == 2) {
        kill(launcher.pid(), SIGTERM);
      }
      EXPECT_EQ("exit 0", launcher.end());
      EXPECT_EQ("timed out 0 canceled 1", launcher.output());
      EXPECT_EQ(0, test::countLeft(processes));
    }
  }
}

}  // namespace
