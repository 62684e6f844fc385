// Child processes: exit codes, captured output, failures of the system. Their surroundings are in
// ProcessEnvironmentTest.cpp, signals in SignalsTest.cpp.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "platform/PlatformImpl.h"
#include "support/Commands.h"
#include "support/OwnProcess.h"
#include "support/Restrictions.h"
#include "support/TestAccess.h"
#include "support/TestFiles.h"
#include "support/Valgrind.h"
#include "util/LauncherException.h"

namespace {

using test::outputOf;

// --- Commands and what comes of them ---

std::string repeat(const std::string& text, std::size_t count) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) {
    all += text;
  }
  return all;
}

struct CommandRow {
  const char* name;
  const char* command;
  int code;
  std::string output;
  std::string errors;
};

const CommandRow kCommandRows[] = {
    {"empty command", "", 0, "", ""},
    {"blank command", "  ", 0, "", ""},
    {"no output", "true", 0, "", ""},
    {"status 1", "false", 1, "", ""},
    {"status 3", "exit 3", 3, "", ""},
    {"status 127", "exit 127", 127, "", ""},
    {"status 128", "exit 128", 128, "", ""},
    {"status 232", "exit 232", 232, "", ""},
    {"status 255", "exit 255", 255, "", ""},
    {"status 256 keeps the low byte", "sh -c 'exit 256'", 0, "", ""},
    {"status of the last command", "false; true", 0, "", ""},
    {"not found", "/nowhere/program 2>/dev/null", 127, "", ""},
    {"not executable", "/dev/null 2>/dev/null", 126, "", ""},
    {"syntax error", "sh -c '(' 2>/dev/null", 2, "", ""},
    {"begins with a minus", "-x 2>/dev/null", 127, "", ""},
    {"shell killed by a signal", "kill -KILL $$", 137, "", ""},
    {"shell ended by a signal", "echo out; trap - TERM; kill -TERM $$", 143, "out\n", ""},
    {"killed, what it became", "exec sh -c 'kill -KILL $$'", 137, "", ""},
    {"ended, what it became", "exec sh -c 'echo out; kill -TERM $$'", 143, "out\n", ""},
    {"program below killed", "{ sh -c 'kill -KILL $$'; } 2>/dev/null; exit $?", 137, "", ""},
    {"standard output", "echo out", 0, "out\n", ""},
    {"standard error", "echo err >&2", 0, "", "err\n"},
    {"both", "echo err >&2; echo out; exit 5", 5, "out\n", "err\n"},
    {"no final newline", "printf out; printf err >&2", 0, "out", "err"},
    {"redirected by the command", "{ echo a >&2; } 2>&1; { echo b; } >&2", 0, "a\n", "b\n"},
    {"carriage returns stay", R"(printf 'a\r\nb\r')", 0, "a\r\nb\r", ""},
    {"bytes stay", R"(printf '\001\200\377\303\244')", 0, "\001\200\377\303\244", ""},
    {"double quotes", R"(printf '<%s>' "a b" "" c)", 0, "<a b><><c>", ""},
    {"single quotes", R"(printf '<%s>' 'a "b"' '$HOME')", 0, "<a \"b\"><$HOME>", ""},
    {"backslashes", R"(printf '<%s>' a\ b \\ \")", 0, "<a b><\\><\">", ""},
    {"variables", "X=1; echo $X", 0, "1\n", ""},
    {"several lines", "echo a\necho b", 0, "a\nb\n", ""},
    {"pipeline", "echo abc | tr a-c x-z", 0, "xyz\n", ""},
    {"name of the shell", "echo $0", 0, "sh\n", ""},
    {"one chunk less one", "printf '%4095s' x", 0, std::string(4094, ' ') + "x", ""},
    {"one chunk", "printf '%4096s' x", 0, std::string(4095, ' ') + "x", ""},
    {"one chunk and one", "printf '%4097s' x", 0, std::string(4096, ' ') + "x", ""},
    {"a pipe full", "printf '%65536s' x", 0, std::string(65535, ' ') + "x", ""},
    {"a pipe full and one", "printf '%65537s' x", 0, std::string(65536, ' ') + "x", ""},
    {"more than a pipe holds", "yes 0123456789abcde | head -c 1048576", 0,
     repeat("0123456789abcde\n", 65536), ""},
    {"errors first, more than a pipe holds", "yes 1234567 | head -c 262144 >&2; echo out", 0,
     "out\n", repeat("1234567\n", 32768)},
    {"alternating", "i=0; while [ $i -lt 500 ]; do echo o; echo e >&2; i=$((i+1)); done; exit 4", 4,
     repeat("o\n", 500), repeat("e\n", 500)},
    {"output closed, then more to do", "exec >&- 2>&-; sleep 0.02; exit 6", 6, "", ""},
    {"one output closed", "exec 2>&-; echo out", 0, "out\n", ""},
    {"who stays behind is heard",
     "(while kill -0 $$ 2>/dev/null; do sleep 0.01; done; echo late; echo e >&2) & echo early; "
     "exit 7",
     7, "early\nlate\n", "e\n"},
};

TEST(ProcessTest, CapturesWhatACommandWrites) {
  PlatformImpl::setSilent(true);
  for (const CommandRow& row : kCommandRows) {
    SCOPED_TRACE(row.name);
    const ProcessResult result = test::runCaptured(row.command);
    EXPECT_EQ(row.code, result.status);
    EXPECT_EQ(row.output, result.output.text().c_str());
    EXPECT_EQ(row.errors, result.errors.text().c_str());
  }
}

TEST(ProcessTest, TheFirstAndTheLastEightMebibytesOfEachStreamAreKept) {
  PlatformImpl::setSilent(true);
  const ProcessResult result =
      test::runCaptured("yes 1234567 | head -c 20000000; yes 7654321 | head -c 16777216 >&2");
  const std::string eight = repeat("1234567\n", std::size_t{1} << 20);
  EXPECT_TRUE(eight + "[3222784 bytes left out]\n" + eight == std::string(result.output.text()));
  EXPECT_EQ(0U, result.errors.leftOut());
  EXPECT_EQ(std::size_t{16} << 20, result.errors.text().size());
}

TEST(ProcessTest, ExitCodesAreTheSameWithoutCapture) {
  for (const CommandRow& row : kCommandRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.code, test::runCommand(std::string("exec >/dev/null 2>&1\n") + row.command));
  }
}

TEST(ProcessTest, WhoStaysBehindWithoutOurOutputIsNotWaitedFor) {
  const test::TempDir folder;
  const std::string fifo = folder / "go";
  ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
  const std::string command = "cat '" + fifo + "' >/dev/null 2>&1 & exit 3";
  for (const bool captures : {true, false}) {
    EXPECT_EQ(3, test::runCommand(command, captures));
    close(open(fifo.c_str(), O_WRONLY));
  }
}

// --- The launcher's own output and the child's ---

struct OrderRow {
  const char* name;
  bool captures;
  const char* output;    // through one pipe
  const char* captured;  // standard output, "|", standard error
};

const OrderRow kOrderRows[] = {
    {"no capture", false, "before child after", "|"},
    {"captured", true, "before after", "child |err"},
};

TEST(ProcessTest, OutputComesOnceAndInOrder) {
  for (const OrderRow& row : kOrderRows) {
    SCOPED_TRACE(row.name);
    const test::TempDir folder;
    const std::string log = folder / "captured";
    EXPECT_EQ(row.output, outputOf([&] {
                PlatformImpl::setSilent(true);
                dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
                std::printf("before ");
                const ProcessResult result = PlatformImpl::executeProcess(
                    test::requestOf("printf 'child '; printf err >&2", row.captures));
                std::printf("after");
                test::writeFile(
                    log, std::string(result.output.text()) + "|" + result.errors.text().c_str());
              }));
    EXPECT_EQ(row.captured, test::readFile(log));
  }
}

// --- Arguments ---

TEST(ProcessTest, ArgumentsArriveByteForByte) {
  ProcessRequest request = test::requestOf("printf '<%s>' \"$@\"", true);
  for (const char* argument : {"a b", "", "$HOME `id` \\", "'\"", "-n", "\xff\n"}) {
    request.arguments.push_back(argument);
  }
  EXPECT_EQ("<a b><><$HOME `id` \\><'\"><-n><\xff\n>",
            std::string(PlatformImpl::executeProcess(request).output.text()));
}

// --- A run that was canceled starts nothing ---

TEST(ProcessTest, NothingIsStartedAfterACancel) {
  const test::TempDir folder;
  PlatformTestAccess::setCanceled(true);
  const std::string file = folder / "started";
  EXPECT_THROW(test::runCommand("touch '" + file + "'"), Canceled);
  EXPECT_THROW(PlatformImpl::replaceProcess(test::wordsOf({"touch", file.c_str()})), Canceled);
  PlatformTestAccess::setCanceled(false);
  EXPECT_EQ(std::vector<std::string>(), test::listTree(folder.path()));
}

// --- Failures of the system ---

std::string currentDirectory() {
  char path[4096];
  return getcwd(path, sizeof path) == nullptr ? "?" : path;
}

struct FailureRow {
  const char* name;
  bool (*restrict)();
  bool capture;
  const char* message;
};

const FailureRow kFailureRows[] = {
    {"no descriptor left", [] { return test::limit(RLIMIT_NOFILE, 4); }, true,
     "Couldn't create either stdout or stderr pipe: Too many open files"},
    {"one pipe, but not two", [] { return test::limit(RLIMIT_NOFILE, 6); }, true,
     "Couldn't create either stdout or stderr pipe: Too many open files"},
    {"no process left", test::forbidProcesses, true,
     "Error forking new process: Resource temporarily unavailable"},
    {"no process left, no capture", test::forbidProcesses, false,
     "Error forking new process: Resource temporarily unavailable"},
    {"child cannot be waited for", test::forbidWaiting, false,
     "Error waiting for child process: No child processes"},
    {"child cannot redirect its output", test::forbidRedirection, true,
     "Error capturing stdout or stderr in new process: Device or resource busy"},
    {"the same without a descriptor left",
     [] { return test::limit(RLIMIT_NOFILE, 8) && test::forbidRedirection(); }, true,
     "Error capturing stdout or stderr in new process: Device or resource busy"},
    {"capture ends without the child's status", test::forbidWaiting, true, "code 0 out\n"},
};

TEST(ProcessTest, FailuresOfTheSystemAreThrown) {
  for (const FailureRow& row : kFailureRows) {
    SCOPED_TRACE(row.name);
    const std::string printed = outputOf([&row] {
      PlatformImpl::setSilent(true);
      test::closeAllDescriptorsButStandardOnes();
      test::ScopedCurrentDir inside("/tmp");
      if (!row.restrict()) {
        std::printf("restriction not possible here");
        return;
      }
      try {
        const ProcessResult result = PlatformImpl::executeProcess(
            test::requestOf(row.capture ? "echo out" : "true", row.capture));
        std::printf("code %d %s", result.status, result.output.text().c_str());
      } catch (const LauncherException& problem) {
        test::limit(RLIMIT_NOFILE, 64);  // the sanitizers need some
        std::printf("%s", problem.what());
      }
      std::printf("|%s", currentDirectory().c_str());
    });
    if (printed != "restriction not possible here") {
      EXPECT_EQ(std::string(row.message) + "|/tmp", printed);
    }
  }
}

TEST(ProcessTest, CommandsUpToTheSystemsLimit) {
  if (test::isUnderValgrind()) {
    GTEST_SKIP() << test::kNoFailingExec;
  }
  const std::string tooLong = "Error starting /bin/sh: Argument list too long";
  for (const auto& [size, wanted] : {std::pair<std::size_t, std::string>{131000, "5"},
                                     {130963, "5"},
                                     {130964, "5"},
                                     {131071, "5"},
                                     {131072, tooLong},
                                     {500000, tooLong}}) {
    SCOPED_TRACE(size);
    std::string command("exit 5 #");
    command.append(size - command.size(), 'x');
    for (const bool captures : {true, false}) {
      std::string end;
      try {
        end = std::to_string(test::runCommand(command, captures));
      } catch (const LauncherException& problem) {
        end = problem.what();
      }
      EXPECT_EQ(wanted, end);
    }
  }
}

}  // namespace
