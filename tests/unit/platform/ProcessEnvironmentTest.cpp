// Child processes: working directory, what the child inherits, and the launcher becoming another
// program.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/PlatformImpl.h"
#include "support/Commands.h"
#include "support/OwnProcess.h"
#include "support/Restrictions.h"
#include "support/TestFiles.h"
#include "util/LauncherException.h"

namespace {

using test::outputOf;

// --- Working directory ---

struct DirectoryRow {
  const char* name;
  const char* workingDir;  // below the scratch folder, which is the current one; "/": as it is
  const char* output;      // of pwd, the scratch folder written as "."; or what was thrown
};

const DirectoryRow kDirectoryRows[] = {
    {"none", "", "./here\n"},
    {"absolute", "/", "/\n"},
    {"relative", "sub", "./here/sub\n"},
    {"above", "..", ".\n"},
    {"with blanks and quotes", "a \"b\" 'c'", "./here/a \"b\" 'c'\n"},
    {"separator at its end", "sub/", "./here/sub\n"},
    {"missing", "/nowhere", "Error setting working directory: /nowhere No such file or directory"},
    {"missing, relative", "no", "Error setting working directory: no No such file or directory"},
    {"a file", "file", "Error setting working directory: file Not a directory"},
};

std::string runIn(const char* command, const char* workingDir) {
  ProcessRequest request = test::requestOf(command, true);
  request.workingDir = workingDir;
  try {
    return PlatformImpl::executeProcess(request).output.text().c_str();
  } catch (const LauncherException& problem) {
    return problem.what();
  }
}

std::string currentDirectory() {
  char path[4096];
  return getcwd(path, sizeof path) == nullptr ? "?" : path;
}

TEST(ProcessEnvironmentTest, TheCommandRunsInItsWorkingDirectory) {
  PlatformImpl::setSilent(true);
  const test::TempDir folder;
  test::writeFile(folder / "here/sub/x", "");
  test::writeFile(folder / "here/a \"b\" 'c'/x", "");
  test::writeFile(folder / "here/file", "");
  const test::ScopedCurrentDir inside(folder / "here");
  for (const DirectoryRow& row : kDirectoryRows) {
    SCOPED_TRACE(row.name);
    std::string output = runIn("pwd -P", row.workingDir);
    if (output.starts_with(folder.path())) {
      output.replace(0, folder.path().size(), ".");
    }
    EXPECT_EQ(row.output, output);
    EXPECT_EQ(folder / "here", currentDirectory());
  }
}

TEST(ProcessEnvironmentTest, ABadWorkingDirectoryStartsNoChild) {
  const test::TempDir folder;
  const std::string command = "touch '" + (folder / "started") + "'";
  EXPECT_EQ("Error setting working directory: /nowhere No such file or directory",
            runIn(command.c_str(), "/nowhere"));
  EXPECT_EQ(std::vector<std::string>(), test::listTree(folder.path()));
}

// The way back must not need the old directory's name, nor the right to list it.
TEST(ProcessEnvironmentTest, TheWayBackFromTheWorkingDirectory) {
  const test::TempDir folder;
  test::writeFile(folder / "removed/x", "");
  test::writeFile(folder / "shut/sub/x", "");
  chmod(folder.path().c_str(), 0755);
  chmod((folder / "shut").c_str(), 0711);
  EXPECT_EQ("/\nback", outputOf([&] {
              PlatformImpl::setSilent(true);
              struct stat before = {};
              struct stat after = {};
              if (chdir((folder / "removed").c_str()) == 0 && stat(".", &before) == 0) {
                unlink("x");
                rmdir((folder / "removed").c_str());
                std::printf("%s", runIn("pwd", "/").c_str());
                stat(".", &after);
                std::printf(before.st_ino == after.st_ino ? "back" : "elsewhere");
              }
            }));
  EXPECT_EQ("/\n" + (folder / "shut"), outputOf([&] {
              PlatformImpl::setSilent(true);
              test::becomeOrdinaryUser();
              if (chdir((folder / "shut").c_str()) == 0) {
                std::printf("%s", runIn("pwd", "/").c_str());
                std::printf("%s", currentDirectory().c_str());
              }
            }));
}

// --- What the child inherits ---

TEST(ProcessEnvironmentTest, TheChildHasTheStandardDescriptorsOnly) {
  for (const bool captures : {true, false}) {
    EXPECT_EQ("0 1 2 ", outputOf([captures] {
                PlatformImpl::setSilent(true);
                test::closeAllDescriptorsButStandardOnes();
                const ProcessResult result = PlatformImpl::executeProcess(test::requestOf(
                    "for f in 0 1 2 3 4 5 6 7 8 9 10 11 12; do test -e /dev/fd/$f && printf \"$f "
                    "\"; done",
                    captures));
                std::printf("%s", result.output.text().c_str());
              }));
  }
}

TEST(ProcessEnvironmentTest, ManyRunsLeaveNothingBehind) {
  EXPECT_EQ("3 -1", outputOf([] {
              PlatformImpl::setSilent(true);
              test::closeAllDescriptorsButStandardOnes();
              for (int i = 0; i < 40; ++i) {
                runIn("true", i % 2 == 0 ? "/" : "/nowhere");
              }
              std::printf("%d ", open("/dev/null", O_RDONLY));
              std::printf("%d", static_cast<int>(waitpid(-1, nullptr, WNOHANG)));
            }));
}

TEST(ProcessEnvironmentTest, TheChildReadsOurStandardInput) {
  int ends[2];
  ASSERT_EQ(0, pipe(ends));
  ASSERT_EQ(6, write(ends[1], "input\n", 6));
  close(ends[1]);
  EXPECT_EQ("<input>", outputOf([&] {
              dup2(ends[0], STDIN_FILENO);
              close(ends[0]);
              test::runCommand("read x; printf \"<$x>\"");
            }));
  close(ends[0]);
}

// --- Becoming the program ---

struct ReplaceRow {
  const char* name;
  std::vector<const char*> words;
  const char* output;
};

const ReplaceRow kReplaceRows[] = {
    {"words", {"printf", "<%s>", "a", "b"}, "before <a><b>"},
    {"absolute path", {"/bin/sh", "-c", "exit 7"}, "before [exit 7]"},
    {"any byte",
     {"printf", "<%s>", "a  b", "\"'\\", "\xff\n", ""},
     "before <a  b><\"'\\><\xff\n><>"},
    {"no shell is asked", {"printf", "<%s>", "$HOME", ";", "*"}, "before <$HOME><;><*>"},
    {"found on PATH", {"stand-in", "x"}, "before stand-in: x\n"},
    {"any name", {"a \"b\" $c", "x"}, "before stand-in: x\n"},
    {"environment stays", {"stand-in", "env"}, "before stand-in: env set\n"},
    {"in the current directory", {"pwd"}, "before /\n"},
    {"not found", {"no-such-program", "x"}, "before after"},
    {"not found by its path", {"/nowhere/program"}, "before after"},
    {"a directory", {"/tmp"}, "before after"},
    {"nothing", {}, "before after"},
    {"empty", {""}, "before after"},
};

TEST(ProcessEnvironmentTest, TheProcessBecomesTheProgram) {
  const test::TempDir folder;
  for (const char* name : {"stand-in", "a \"b\" $c"}) {
    test::writeScript(folder / name,
                      "#!/bin/sh\n[ \"$1\" = env ] && set -- env $CORVANE_TEST\n"
                      "echo \"stand-in: $*\"\n");
  }
  const std::string path = folder.path() + ":/usr/bin:/bin";
  const test::ScopedEnvironment search("PATH", path.c_str());
  const test::ScopedEnvironment variable("CORVANE_TEST", "set");
  const test::ScopedCurrentDir inside("/");
  for (const ReplaceRow& row : kReplaceRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.output, outputOf([&row] {
                std::printf("before ");
                PlatformImpl::replaceProcess(test::wordsOf(row.words));
                std::printf("after");
              }));
  }
}

}  // namespace
