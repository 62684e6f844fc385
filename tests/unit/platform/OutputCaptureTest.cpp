// One captured stream: what a read keeps, and what counts as a chunk for the progress.
#include "platform/OutputCapture.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "platform/PlatformImpl.h"
#include "support/Commands.h"
#include "support/TestFiles.h"

namespace {

// The dots that `body` writes; where a row of them ends is the console's affair.
template <class Body>
std::string progressOf(Body body) {
  PlatformImpl::setSilent(false);
  std::string progress = test::captureStdout(body);
  std::erase(progress, '\n');
  return progress;
}

struct Row {
  const char* name;
  std::vector<std::string> writes;  // each is read before the next
  std::string text;
  const char* progress;
};

const std::string kChunk(4096, 'a');

const Row kRows[] = {
    {"nothing", {}, "", ""},
    {"one byte", {"a"}, "a", "."},
    {"one less than a chunk", {kChunk.substr(1)}, kChunk.substr(1), "."},
    {"a chunk", {kChunk}, kChunk, "."},
    {"one more", {kChunk + "b"}, kChunk + "b", ".."},
    {"drops make one chunk", {"a", "b", "c", "d"}, "abcd", "."},
    {"drops that fill a chunk", {kChunk.substr(2), "b", "c", "d"}, kChunk.substr(2) + "bcd", ".."},
    {"a chunk after a drop", {"b", kChunk}, "b" + kChunk, ".."},
    {"a drop that makes two chunks",
     {"b", kChunk.substr(1), kChunk},
     "b" + kChunk.substr(1) + kChunk,
     ".."},
    {"a pipe full", {std::string(65536, 'x')}, std::string(65536, 'x'), "................"},
    // QUIRK(chunk-ends-at-zero-byte)
    {"zero byte inside", {std::string("ab\0cd", 5)}, "ab", "."},
    {"zero byte first", {std::string("\0cd", 3)}, "", "."},
    {"zero byte last", {std::string("ab\0", 3)}, "ab", "."},
    {"zero byte alone", {std::string("\0", 1)}, "", "."},
    {"the next read is heard again", {std::string("a\0b", 3), "c"}, "ac", "."},
    {"a read is a whole chunk, whatever came before",
     {"a", "b" + std::string(1, '\0') + kChunk.substr(2)},
     "ab",
     ".."},
};

TEST(OutputCaptureTest, WhatIsReadAndCounted) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    KeptText text;
    EXPECT_EQ(row.progress, progressOf([&] {
                OutputCapture capture;
                ASSERT_TRUE(capture.open());
                const int writeEnd = dup(capture.writeEnd());
                capture.beginReading();
                for (const std::string& bytes : row.writes) {
                  ASSERT_EQ(static_cast<ssize_t>(bytes.size()),
                            write(writeEnd, bytes.data(), bytes.size()));
                  capture.readSome(text);
                  EXPECT_TRUE(capture.isOpen());
                }
                close(writeEnd);
                capture.readSome(text);
                EXPECT_FALSE(capture.isOpen());
                capture.readSome(text);
                EXPECT_EQ(kNever, capture.dueAt());
              }));
    EXPECT_EQ(row.text, std::string(text.text()));
  }
}

// A command can enlarge its pipe, and somebody may go on writing when it has ended.
TEST(OutputCaptureTest, TheRestIsAllThatIsThere) {
  OutputCapture capture;
  ASSERT_TRUE(capture.open());
  const int writeEnd = dup(capture.writeEnd());
  std::size_t size = 65536;
#ifdef F_SETPIPE_SZ
  size = static_cast<std::size_t>(std::max(fcntl(writeEnd, F_SETPIPE_SZ, 1 << 20), 65536));
#endif
  capture.beginReading();
  const std::string bytes(size, 'x');
  ASSERT_EQ(static_cast<ssize_t>(size), write(writeEnd, bytes.data(), size));
  KeptText text;
  progressOf([&] { capture.readRest(text); });
  EXPECT_EQ(size, text.text().size());
  EXPECT_TRUE(capture.isOpen());
  capture.readRest(text);
  close(writeEnd);
  capture.readRest(text);
  EXPECT_EQ(size, text.text().size());
}

TEST(OutputCaptureTest, DropsCountTenMillisecondsAfterTheFirst) {
  OutputCapture capture;
  ASSERT_TRUE(capture.open());
  const int writeEnd = dup(capture.writeEnd());
  capture.beginReading();
  KeptText text;
  EXPECT_EQ("..", progressOf([&] {
              ASSERT_EQ(1, write(writeEnd, "a", 1));
              const Clock::time_point before = Clock::now();
              capture.readSome(text);
              const Clock::time_point due = capture.dueAt();
              EXPECT_LE(before + milliseconds(10), due);
              EXPECT_GE(Clock::now() + milliseconds(10), due);
              ASSERT_EQ(1, write(writeEnd, "b", 1));
              capture.readSome(text);
              EXPECT_EQ(due, capture.dueAt());
              capture.countDrops(due - milliseconds(1));
              EXPECT_EQ(due, capture.dueAt());
              capture.countDrops(due);
              EXPECT_EQ(kNever, capture.dueAt());
              ASSERT_EQ(1, write(writeEnd, "c", 1));
              capture.readSome(text);
              capture.countRest();
            }));
  close(writeEnd);
  EXPECT_EQ("abc", std::string(text.text()));
}

struct ProgressRow {
  const char* name;
  const char* command;
  std::size_t least;
  std::size_t most;
};

// How many dots a command's output is depends on how fast it comes; between two bounds.
const ProgressRow kProgressRows[] = {
    {"nothing", "true", 0, 0},
    {"one word", "printf x", 1, 1},
    {"two streams", "printf x; printf y >&2", 2, 2},
    {"words apart", "printf x; sleep 0.05; printf y; sleep 0.05; printf z", 3, 3},
    {"a full pipe", "head -c 65536 /dev/zero", 16, 17},
    {"many lines", "i=0; while [ $i -lt 5000 ]; do echo 'creating some file xyz'; i=$((i+1)); done",
     28, 90},
};

TEST(OutputCaptureTest, ProgressOfCommands) {
  for (const ProgressRow& row : kProgressRows) {
    SCOPED_TRACE(row.name);
    const std::size_t dots = progressOf([&row] { test::runCaptured(row.command); }).size();
    EXPECT_LE(row.least, dots);
    EXPECT_GE(row.most, dots);
  }
}

}  // namespace
