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
#include "support/OwnProcess.h"
#include "support/Restrictions.h"
#include "support/TestFiles.h"
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
    {"shell killed by a signal", "kill -KILL $$", 0, "", ""},
    {"shell ended by a signal", "echo out; kill -TERM $$", 0, "out\n", ""},
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
    SString output;
    SString errors;
    EXPECT_EQ(row.code, PlatformImpl::executeProcess(row.command, "", true, true, true, &output,
                                                     &errors, false));
    EXPECT_EQ(row.output, output.c_str());
    EXPECT_EQ(row.errors, errors.c_str());
  }
}

TEST(ProcessTest, ExitCodesAreTheSameWithoutCapture) {
  for (const CommandRow& row : kCommandRows) {
    SCOPED_TRACE(row.name);
    std::string quiet = std::string("exec >/dev/null 2>&1\n") + row.command;
    EXPECT_EQ(row.code, PlatformImpl::executeProcess(quiet.c_str(), "", false, false, true, nullptr,
                                                     nullptr, false));
  }
}

struct CollectRow {
  const char* name;
  bool collectsOutput;
  bool collectsErrors;
  const char* output;
  const char* errors;
};

constexpr char kChatty[] = "yes | head -c 200000; yes | head -c 200000 >&2; printf O; printf E >&2";

const CollectRow kCollectRows[] = {
    {"both", true, true, "before O", "before E"},
    {"no output wanted", false, true, "before ", "before E"},
    {"no errors wanted", true, false, "before O", "before "},
    {"neither wanted", false, false, "before ", "before "},
};

TEST(ProcessTest, CapturedOutputIsAppendedAndMayBeUnwanted) {
  PlatformImpl::setSilent(true);
  for (const CollectRow& row : kCollectRows) {
    SCOPED_TRACE(row.name);
    SString output = "before ";
    SString errors = "before ";
    const SString shared = output;
    EXPECT_EQ(0, PlatformImpl::executeProcess(kChatty, "", true, true, true,
                                              row.collectsOutput ? &output : nullptr,
                                              row.collectsErrors ? &errors : nullptr, false));
    for (SString* text : {&output, &errors}) {
      for (std::size_t at = 0; (at = text->find("y\n")) != SString::npos;) {
        text->erase(at, text->find_first_not_of("y\n", at) - at);
      }
    }
    EXPECT_EQ(row.output, std::string(output.c_str()));
    EXPECT_EQ(row.errors, std::string(errors.c_str()));
    EXPECT_EQ("before ", std::string(shared.c_str()));
  }
}

TEST(ProcessTest, WhoStaysBehindWithoutOurOutputIsNotWaitedFor) {
  const test::TempDir folder;
  const std::string fifo = folder / "go";
  ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
  const std::string command = "cat '" + fifo + "' >/dev/null 2>&1 & exit 3";
  for (const bool captures : {true, false}) {
    EXPECT_EQ(3, PlatformImpl::executeProcess(command.c_str(), "", true, captures, true, nullptr,
                                              nullptr, false));
    close(open(fifo.c_str(), O_WRONLY));
  }
}

// --- The launcher's own output and the child's ---

struct OrderRow {
  const char* name;
  bool capture;
  bool redirectInChild;
  const char* output;    // through one pipe
  const char* captured;  // standard output, "|", standard error
};

const OrderRow kOrderRows[] = {
    {"no capture", false, false, "before child after", "|"},
    {"no capture though redirected", false, true, "before child after", "|"},
    {"capture without redirection", true, false, "before child after", "|"},
    {"captured", true, true, "before after", "child |err"},
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
                SString output;
                SString errors;
                (void)PlatformImpl::executeProcess("printf 'child '; printf err >&2", "", true,
                                                   row.capture, row.redirectInChild, &output,
                                                   &errors, false);
                std::printf("after");
                test::writeFile(log, std::string(output.c_str()) + "|" + errors.c_str());
              }));
    EXPECT_EQ(row.captured, test::readFile(log));
  }
}

// The dots that `body` writes; where a row of them ends is the console's affair.
template <class Body>
std::string progressOf(Body body) {
  PlatformImpl::setSilent(false);
  std::string progress = test::captureStdout(body);
  std::erase(progress, '\n');
  return progress;
}

TEST(ProcessTest, ProgressAdvancesOnceForEachChunk) {
  EXPECT_EQ("", progressOf([] {
              (void)PlatformImpl::executeProcess("true", "", true, true, true, nullptr, nullptr,
                                                 false);
            }));
  EXPECT_EQ(".", progressOf([] {
              (void)PlatformImpl::executeProcess("printf x", "", true, true, true, nullptr, nullptr,
                                                 false);
            }));
}

// --- readFromFile ---

struct ReadRow {
  const char* name;
  std::string bytes;  // written at once
  std::vector<int> results;
  std::string text;
  const char* progress;
};

const std::string kChunk(4096, 'a');

const ReadRow kReadRows[] = {
    {"nothing", "", {-1}, "", ""},
    {"one byte", "a", {1, -1}, "a", "."},
    {"one less than a chunk", kChunk.substr(1), {4095, -1}, kChunk.substr(1), "."},
    {"a chunk", kChunk, {4096, -1}, kChunk, "."},
    {"one more", kChunk + "b", {4096, 1, -1}, kChunk + "b", ".."},
    // QUIRK(chunk-ends-at-zero-byte)
    {"zero byte inside", std::string("ab\0cd", 5), {5, -1}, "ab", "."},
    {"zero byte first", std::string("\0cd", 3), {3, -1}, "", "."},
    {"zero byte last", std::string("ab\0", 3), {3, -1}, "ab", "."},
    {"zero byte alone", std::string("\0", 1), {1, -1}, "", "."},
    {"the next chunk is heard again", std::string("\0", 1) + kChunk, {4096, 1, -1}, "a", ".."},
    {"zero byte ends a full chunk",
     kChunk.substr(1) + std::string("\0b", 2),
     {4096, 1, -1},
     kChunk.substr(1) + "b",
     ".."},
};

TEST(ProcessTest, ReadFromFileReadsOneChunk) {
  for (const ReadRow& row : kReadRows) {
    SCOPED_TRACE(row.name);
    int ends[2];
    ASSERT_EQ(0, pipe(ends));
    ASSERT_EQ(0, fcntl(ends[0], F_SETFL, O_NONBLOCK));
    const auto size = static_cast<ssize_t>(row.bytes.size());
    ASSERT_EQ(size, write(ends[1], row.bytes.data(), row.bytes.size()));
    SString text;
    const std::string progress = progressOf([&] {
      for (const int result : row.results) {
        EXPECT_EQ(result, PlatformImpl::readFromFile(ends[0], &text));
      }
      close(ends[1]);
      EXPECT_EQ(0, PlatformImpl::readFromFile(ends[0], &text));
    });
    close(ends[0]);
    EXPECT_EQ(row.text, text.c_str());
    EXPECT_EQ(row.progress, progress);
  }
}

TEST(ProcessTest, ReadFromFileWithoutTextDiscards) {
  int ends[2];
  ASSERT_EQ(0, pipe(ends));
  ASSERT_EQ(3, write(ends[1], "abc", 3));
  EXPECT_EQ(".", progressOf([&] { EXPECT_EQ(3, PlatformImpl::readFromFile(ends[0], nullptr)); }));
  close(ends[0]);
  close(ends[1]);
  EXPECT_EQ("", progressOf([&] { EXPECT_EQ(-1, PlatformImpl::readFromFile(ends[0], nullptr)); }));
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
    {"child cannot redirect its output", test::forbidRedirection, true, "code 127 "},
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
      SString output;
      try {
        const int code = PlatformImpl::executeProcess(row.capture ? "echo out" : "true", "/", true,
                                                      row.capture, true, &output, nullptr, false);
        std::printf("code %d %s", code, output.c_str());
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
  for (const auto& [size, wanted] :
       {std::pair{131051, 5}, {131052, 5}, {131071, 5}, {131072, 127}}) {
    SCOPED_TRACE(size);
    SString command("exit 5 #");
    command.append(static_cast<std::size_t>(size) - command.size(), 'x');
    EXPECT_EQ(wanted, PlatformImpl::executeProcess(command, "", false, true, true, nullptr, nullptr,
                                                   false));
  }
}

}  // namespace
