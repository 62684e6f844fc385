// The driver's own state: variables, log, file names, purpose byte.
#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <string>

#include "launcher/LauncherFacts.h"
#include "launcher/Log.h"
#include "support/TestAccess.h"
#include "support/TestFiles.h"
#include "support/Texts.h"

namespace {

using namespace std::string_literals;
using test::errorOf;

// First of all, with nothing reset before: the values are those of a process that starts.
TEST(LauncherFirstState, VariablesAreEmptyAndZero) {
  for (std::int32_t n = 1; n <= 10; ++n) {
    EXPECT_EQ("", std::string(LauncherFacts::getStringVariable(n).view())) << n;
  }
  for (std::int32_t n = 1; n <= 5; ++n) {
    EXPECT_EQ(0, LauncherFacts::getLongVariable(n)) << n;
  }
}

class LauncherState : public testing::Test {
 protected:
  void SetUp() override { LauncherTestAccess::resetState(); }
};

class LauncherVariables : public LauncherState {};
class LauncherFileNames : public LauncherState {};
class LauncherPurpose : public LauncherState {};
class LauncherLog : public LauncherState {};

// --- Variables ---

struct VariableRow {
  const char* name;
  std::int32_t number;
  bool isString;
  bool isNumeric;
};

const VariableRow kVariableRows[] = {
    {"lowest number", INT_MIN, false, false},
    {"minus one", -1, false, false},
    {"zero", 0, false, false},
    {"first", 1, true, true},
    {"second", 2, true, true},
    {"last numeric", 5, true, true},
    {"past the last numeric", 6, true, false},
    {"last string", 10, true, false},
    {"past the last string", 11, false, false},
    {"as many as a byte holds", 256, false, false},
    {"highest number", INT_MAX, false, false},
};

TEST_F(LauncherVariables, StringsAreOneToTen) {
  for (const VariableRow& row : kVariableRows) {
    SCOPED_TRACE(row.name);
    const std::string error =
        row.isString ? "" : "Invalid string variable number: " + std::to_string(row.number);
    EXPECT_EQ(row.isString, LauncherFacts::isValidStringVariable(row.number));
    EXPECT_EQ(error, errorOf([&] { LauncherFacts::getStringVariable(row.number); }));
    EXPECT_EQ(error, errorOf([&] { LauncherFacts::setStringVariable(row.number, "v"); }));
  }
}

TEST_F(LauncherVariables, NumbersAreOneToFive) {
  for (const VariableRow& row : kVariableRows) {
    SCOPED_TRACE(row.name);
    const std::string error =
        row.isNumeric ? "" : "Invalid numeric variable number: " + std::to_string(row.number);
    EXPECT_EQ(row.isNumeric, LauncherFacts::isValidLongVariable(row.number));
    EXPECT_EQ(error, errorOf([&] { LauncherFacts::getLongVariable(row.number); }));
    EXPECT_EQ(error, errorOf([&] { LauncherFacts::setLongVariable(row.number, 1); }));
  }
}

TEST_F(LauncherVariables, EachKeepsItsOwnValue) {
  for (std::int32_t n = 1; n <= 10; ++n) {
    LauncherFacts::setStringVariable(n, SString("value ") + SString(std::to_string(n)));
  }
  const std::int32_t numbers[] = {0, 1, -1, INT_MAX, INT_MIN};
  for (std::int32_t n = 1; n <= 5; ++n) {
    LauncherFacts::setLongVariable(n, numbers[n - 1]);
  }
  for (std::int32_t n = 1; n <= 10; ++n) {
    EXPECT_EQ("value " + std::to_string(n), LauncherFacts::getStringVariable(n).c_str());
  }
  for (std::int32_t n = 1; n <= 5; ++n) {
    EXPECT_EQ(numbers[n - 1], LauncherFacts::getLongVariable(n)) << n;
  }
}

TEST_F(LauncherVariables, AReadValueIsACopy) {
  LauncherFacts::setStringVariable(1, "before");
  SString copy = LauncherFacts::getStringVariable(1);
  copy.append(" and after");
  EXPECT_STREQ("before", LauncherFacts::getStringVariable(1).c_str());
}

// --- The original launcher's directory ---

struct DirRow {
  const char* name;
  const char* path;
  const char* wanted;
};

const DirRow kDirRows[] = {
    {"empty", "", ""},
    {"no separator", "setup", ""},
    {"absolute", "/a/b/setup", "/a/b"},
    {"in the root", "/setup", ""},
    {"the root itself", "/", ""},
    {"trailing separator", "/a/b/", "/a/b"},
    {"doubled separator", "/a//setup", "/a/"},
    {"backslash", "a\\b", "a"},
    {"backslash last", "/a/b\\c", "/a/b"},
    {"slash last", "a\\b/c", "a\\b"},
    {"backslash first", "\\setup", ""},
    {"dots stay", "/a/./../setup", "/a/./.."},
};

TEST_F(LauncherFileNames, OriginalDirectoryEndsBeforeTheLastSeparator) {
  for (const DirRow& row : kDirRows) {
    LauncherTestAccess::setOriginalLauncherFileName(row.path);
    EXPECT_STREQ(row.wanted, LauncherFacts::getOriginalLauncherDir().c_str()) << row.name;
  }
}

TEST_F(LauncherFileNames, TheOriginalMayDifferFromTheRunningOne) {
  LauncherTestAccess::setLauncherFileName("/tmp/copy/setup");
  EXPECT_STREQ("/tmp/copy/setup", LauncherFacts::getOriginalLauncherFileName().c_str());
  LauncherTestAccess::setOriginalLauncherFileName("/cd/setup");
  EXPECT_STREQ("/tmp/copy/setup", LauncherFacts::getLauncherFileName().c_str());
  EXPECT_STREQ("/cd/setup", LauncherFacts::getOriginalLauncherFileName().c_str());
  EXPECT_STREQ("/cd", LauncherFacts::getOriginalLauncherDir().c_str());
}

// --- The purpose byte ---

struct PurposeRow {
  const char* name;
  std::string bytes;
  std::int32_t wanted;
  bool isQuiet;
};

const PurposeRow kPurposeRows[] = {
    {"empty file", "", -1, false},
    {"trailer alone", "12345678", -1, false},
    {"purpose 0 and trailer", "\0"s + "12345678", 0, true},
    {"purpose 1", "launcher\1"s + "12345678", 1, false},
    {"purpose 2", "launcher\2"s + "12345678", 2, true},
    {"purpose 3", "launcher\3"s + "12345678", 3, false},
    {"purpose 127", "launcher\x7F"s + "12345678", 127, false},
    {"purpose 128 is not negative", "launcher\x80"s + "12345678", 128, false},
    {"purpose 255 is not the end of the file", "launcher\xFF"s + "12345678", 255, false},
    {"trailer of zero bytes", "x\2"s + std::string(8, '\0'), 2, true},
    {"newlines count as bytes", "\r\n\r\n12345678", 10, false},
};

TEST_F(LauncherPurpose, IsTheNinthByteFromTheEnd) {
  const test::TempDir dir;
  for (const PurposeRow& row : kPurposeRows) {
    SCOPED_TRACE(row.name);
    const std::string path = test::writeFile(dir / "launcher", row.bytes);
    EXPECT_EQ(row.wanted, LauncherFacts::getLauncherPurpose(path.c_str()));
  }
}

TEST_F(LauncherPurpose, ZeroAndTwoOfTheRunningLauncherAreQuiet) {
  const test::TempDir dir;
  for (const PurposeRow& row : kPurposeRows) {
    SCOPED_TRACE(row.name);
    LauncherTestAccess::setPurpose(-1);
    LauncherTestAccess::setLauncherFileName(test::writeFile(dir / "launcher", row.bytes));
    EXPECT_EQ(row.isQuiet, LauncherFacts::isQuietPurpose());
  }
}

TEST_F(LauncherPurpose, IsMinusOneWhenTheFileDoesNotOpen) {
  const test::TempDir dir;
  EXPECT_EQ(-1, LauncherFacts::getLauncherPurpose((dir / "missing").c_str()));
  EXPECT_EQ(-1, LauncherFacts::getLauncherPurpose(dir.path().c_str()));
  EXPECT_EQ(-1, LauncherFacts::getLauncherPurpose(""));
}

TEST_F(LauncherPurpose, OfTheRunningLauncherIsReadOnce) {
  const test::TempDir dir;
  const std::string path = test::writeFile(dir / "launcher",
                                           "\1"
                                           "12345678");
  LauncherTestAccess::setLauncherFileName(path);
  EXPECT_EQ(1, LauncherFacts::getLauncherPurpose(path.c_str()));
  test::writeFile(path,
                  "\2"
                  "12345678");
  EXPECT_EQ(1, LauncherFacts::getLauncherPurpose(path.c_str()));
  // Another spelling of the same file is another file.
  EXPECT_EQ(2, LauncherFacts::getLauncherPurpose((dir / "./launcher").c_str()));
  EXPECT_EQ(1, LauncherFacts::getLauncherPurpose(path.c_str()));
}

TEST_F(LauncherPurpose, AFailureIsTriedAgain) {
  const test::TempDir dir;
  LauncherTestAccess::setLauncherFileName(dir / "launcher");
  EXPECT_EQ(-1, LauncherFacts::getLauncherPurpose((dir / "launcher").c_str()));
  test::writeFile(dir / "launcher",
                  "\2"
                  "12345678");
  EXPECT_EQ(2, LauncherFacts::getLauncherPurpose((dir / "launcher").c_str()));
}

TEST_F(LauncherPurpose, OfAnotherFileIsReadEachTime) {
  const test::TempDir dir;
  LauncherTestAccess::setLauncherFileName(dir / "launcher");
  const std::string other = test::writeFile(dir / "other",
                                            "\1"
                                            "12345678");
  EXPECT_EQ(1, LauncherFacts::getLauncherPurpose(other.c_str()));
  test::writeFile(other,
                  "\3"
                  "12345678");
  EXPECT_EQ(3, LauncherFacts::getLauncherPurpose(other.c_str()));
}

// --- The log ---

struct LogRow {
  const char* name;
  std::string text;
  LogMessageType type;
  std::string wanted;
};

const LogRow kLogRows[] = {
    {"information", "one", LOG_INFO, "one\n"},
    {"warning", "two", LOG_WARNING, "WARNING: two\n"},
    {"error", "three", LOG_ERROR, "ERROR: three\n"},
    {"any other type", "four", static_cast<LogMessageType>(3), "four\n"},
    {"empty", "", LOG_INFO, "\n"},
    {"empty warning", "", LOG_WARNING, "WARNING: \n"},
    {"percent signs are text", "100%s %d%%n", LOG_INFO, "100%s %d%%n\n"},
    {"several lines", "a\nb\n", LOG_ERROR, "ERROR: a\nb\n\n"},
    {"carriage return stays", "a\r", LOG_INFO, "a\r\n"},
    {"ends at the first zero byte", "seen\0hidden"s, LOG_INFO, "seen\n"},
    {"zero byte first", "\0hidden"s, LOG_ERROR, "ERROR: \n"},
    {"any bytes", "\xE4\xFF\x01", LOG_INFO, "\xE4\xFF\x01\n"},
    {"longer than a buffer", std::string(100000, 'x'), LOG_INFO, std::string(100000, 'x') + "\n"},
};

const char* const kSeparator = "------------------\n";

TEST_F(LauncherLog, EachMessageIsALine) {
  const test::TempDir dir;
  setLogFileName((dir / "log").c_str());
  std::string wanted = kSeparator;
  for (const LogRow& row : kLogRows) {
    SCOPED_TRACE(row.name);
    logMessage(SString(row.text), row.type);
    wanted += row.wanted;
    ASSERT_EQ(wanted, test::readFile(dir / "log"));  // complete after each message
  }
}

TEST_F(LauncherLog, AppendsToWhatIsThere) {
  const test::TempDir dir;
  test::writeFile(dir / "log", "of an earlier run");
  setLogFileName((dir / "log").c_str());
  logMessage("one", LOG_INFO);
  EXPECT_EQ("of an earlier run"s + kSeparator + "one\n", test::readFile(dir / "log"));
}

TEST_F(LauncherLog, WithoutANameNothingIsWritten) {
  const test::TempDir dir;
  const test::ScopedCurrentDir inside(dir.path());
  logMessage("nobody hears", LOG_ERROR);
  EXPECT_TRUE(test::listTree(dir.path()).empty());
}

// QUIRK(log-separator-once)
TEST_F(LauncherLog, ASecondLogFileGetsNoSeparator) {
  const test::TempDir dir;
  setLogFileName((dir / "first").c_str());
  logMessage("one", LOG_INFO);
  setLogFileName((dir / "second").c_str());
  logMessage("two", LOG_INFO);
  setLogFileName("");
  logMessage("nowhere", LOG_INFO);
  setLogFileName((dir / "first").c_str());
  logMessage("three", LOG_INFO);
  EXPECT_EQ(kSeparator + "one\nthree\n"s, test::readFile(dir / "first"));
  EXPECT_EQ("two\n", test::readFile(dir / "second"));
}

TEST_F(LauncherLog, AFileThatDoesNotOpenIsNotReported) {
  const test::TempDir dir;
  const std::string output = test::captureStdout([&] {
    setLogFileName((dir / "missing/log").c_str());
    logMessage("lost", LOG_ERROR);
    setLogFileName(dir.path().c_str());  // a directory
    logMessage("lost", LOG_ERROR);
  });
  EXPECT_EQ("", output);
  EXPECT_TRUE(test::listTree(dir.path()).empty());
  // The separator was not written either: the first line that can be written brings it.
  setLogFileName((dir / "log").c_str());
  logMessage("kept", LOG_INFO);
  EXPECT_EQ(kSeparator + "kept\n"s, test::readFile(dir / "log"));
}

TEST_F(LauncherLog, LeavesErrnoAsItWas) {
  const test::TempDir dir;
  const std::string names[] = {"", dir / "log", dir / "missing/log", dir.path(), "/dev/full"};
  for (const std::string& name : names) {
    setLogFileName(name.c_str());
    errno = EXDEV;
    logMessage("text", LOG_INFO);
    EXPECT_EQ(EXDEV, errno) << name;
  }
}

TEST_F(LauncherLog, AFileRemovedInBetweenIsMadeAnew) {
  const test::TempDir dir;
  setLogFileName((dir / "log").c_str());
  logMessage("one", LOG_INFO);
  ASSERT_EQ(0, std::remove((dir / "log").c_str()));
  logMessage("two", LOG_INFO);
  EXPECT_EQ("two\n", test::readFile(dir / "log"));
}

}  // namespace
