// What the console reads: words, and the prompt.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Console.h"
#include "platform/PlatformImpl.h"
#include "support/ConsoleState.h"
#include "support/TestAccess.h"
#include "support/TestFiles.h"

namespace {

using test::str;
using enum test::Mode;

using namespace std::string_view_literals;

class Input {
 public:
  explicit Input(std::string_view bytes) {
    test::writeFile(m_dir / "in", bytes);
    EXPECT_NE(nullptr, std::freopen((m_dir / "in").c_str(), "r", stdin));
  }

 private:
  test::TempDir m_dir;
};

struct WordRow {
  const char* name;
  std::string_view input;
  std::vector<std::string> wanted;  // of calls one after the other
};

const WordRow kWordRows[] = {
    {"one word", "/opt/jvm\n", {"/opt/jvm", ""}},
    {"a blank ends the word", "/opt/my jvm\n", {"/opt/my", "jvm", ""}},
    {"leading white space of every kind", " \t\n\v\f\rword\n", {"word"}},
    {"each kind of white space ends it", "a\tb\nc\vd\fe\rf", {"a", "b", "c", "d", "e", "f", ""}},
    {"no newline at the end", "word", {"word", ""}},
    {"no input", "", {"", ""}},
    {"white space alone", " \n\t\n", {""}},
    {"bytes beyond ASCII", "/opt/\xC3\xA9\xA0 x", {"/opt/\xC3\xA9\xA0"}},
    {"a zero byte ends the text, not the word", "/opt\0/jvm x\n"sv, {"/opt", "x", ""}},
    {"a zero byte first", "\0/opt x\n"sv, {"", "x", ""}},
};

TEST(ConsoleInput, GetLineReadsWords) {
  for (const WordRow& row : kWordRows) {
    const Input input(row.input);
    for (const std::string& wanted : row.wanted) {
      EXPECT_EQ(wanted, str(getLine())) << row.name;
    }
  }
}

TEST(ConsoleInput, GetLineIsBounded) {
  const std::string bound(std::size_t{64} * 1024, 'x');
  const Input input(bound + " " + bound + "yz\n");
  EXPECT_EQ(bound, str(getLine()));
  EXPECT_EQ(bound, str(getLine()));
  EXPECT_EQ("yz", str(getLine()));
}

TEST(ConsoleInput, GetLineLeavesWhatFollowsTheWord) {
  const Input input("word\nrest");
  EXPECT_EQ("word", str(getLine()));
  EXPECT_EQ('\n', std::getchar());
}

TEST(ConsoleInput, GetLineEndsAtASignal) {
  int ends[2];
  ASSERT_EQ(0, pipe(ends));
  ASSERT_EQ(2, write(ends[1], "ab", 2));
  ASSERT_EQ(STDIN_FILENO, dup2(ends[0], STDIN_FILENO));
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  ASSERT_EQ(0, sigaction(SIGALRM, &action, nullptr));
  const itimerval timer = {{0, 20000}, {0, 20000}};
  ASSERT_EQ(0, setitimer(ITIMER_REAL, &timer, nullptr));
  EXPECT_EQ("ab", str(getLine()));
  const itimerval off = {};
  ASSERT_EQ(0, setitimer(ITIMER_REAL, &off, nullptr));
}

struct PromptRow {
  const char* name;
  test::Mode mode;
  const char* input;
  const char* wantedOutput;
  const char* wanted;
};

constexpr const char* kQuestion =
    "Supply the destination directory for the Java Virtual Machine:\n";

const PromptRow kPromptRows[] = {
    {"asks", Shown, "/opt/jvm\n", kQuestion, "/opt/jvm"},
    {"a path with a blank cannot be entered", Shown, "/opt/my jvm\n", kQuestion, "/opt/my"},
    {"empty lines are passed over", Shown, "\n\n/opt\n", kQuestion, "/opt"},
    {"hidden, asks unseen", Hidden, "/opt\n", "", "/opt"},
    {"silent", Silent, "/opt\n", "", ""},
    {"end of input", Shown, "", kQuestion, ""},
};

TEST(ConsoleInput, Prompt) {
  for (const PromptRow& row : kPromptRows) {
    const Input input(row.input);
    test::setMode(row.mode);
    SString answer;
    const auto output =
        test::captureStdout([&] { answer = PlatformImpl::promptJVMDestinationDirectory(); });
    EXPECT_EQ(row.wantedOutput, output) << row.name;
    EXPECT_EQ(row.wanted, str(answer)) << row.name;
  }
}

struct UnreadRow {
  const char* name;
  test::Mode mode;
  bool canceled;
  const char* wantedOutput;
};

const UnreadRow kUnreadRows[] = {
    {"silent", Silent, false, ""},
    {"canceled before", Shown, true, kQuestion},
    {"silent and canceled", Silent, true, ""},
};

TEST(ConsoleInput, PromptThatReadsNothing) {
  for (const UnreadRow& row : kUnreadRows) {
    const Input input("/opt\n");
    test::setMode(row.mode);
    PlatformTestAccess::setCanceled(row.canceled);
    const auto output = test::captureStdout(
        [] { EXPECT_EQ("", str(PlatformImpl::promptJVMDestinationDirectory())); });
    EXPECT_EQ(row.wantedOutput, output) << row.name;
    EXPECT_EQ("/opt", str(getLine())) << row.name;
  }
}

TEST(ConsoleInput, QuestionIsSeenBeforeTheAnswerIsRead) {
  const Input input("/opt\n");
  test::captureStdout([] {
    PlatformImpl::promptJVMDestinationDirectory();
    EXPECT_EQ(static_cast<off_t>(std::strlen(kQuestion)), test::writtenSoFar());
  });
}

}  // namespace
