// Ctrl-C at each stage of a run: what the launcher says, and that nothing is left behind.
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "e2e/LauncherTest.h"
#include "support/OwnProcess.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

// Says that it has begun, then waits for the signal.
constexpr const char* kWait = ": >\"$BEGUN\"; while :; do /bin/sleep 0.05; done\n";

class Cancel : public LauncherTest {
 protected:
  void SetUp() override {
    setEnv("PATH", "/nowhere");  // no JVM of the machine's own
    setEnv("BEGUN", begun());
    setEnv("RECORD", dir("record.txt"));
    fs::create_directories(mine());
  }

  std::string begun() const { return dir("begun"); }
  // A folder of the user's own, where a JVM may be installed.
  std::string mine() const { return dir("mine"); }

  // A JVM that never answers to its verification, and one behind it that would do.
  void embedWaitingJVM() {
    test::writeScript(dir("jvms/slow/bin/java"), std::string("#!/bin/sh\n") + kWait);
    setEnv("HINT", dir("jvms/slow") + ":" + makeJVM("good", "17.0.1"));
    embedJVM("PLATFORM_HINT: HINT\n");
    embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "PK");
  }

  // Runs until the stand-in has begun, and cancels.
  Result runAndCancel(std::vector<std::string> args = {}) {
    fs::remove(begun());
    fs::remove(logFile());
    args.insert(args.begin(), {"-cv:tempdir", tempDir(), "-cv:log", logFile()});
    const pid_t pid = start(args);
    EXPECT_TRUE(waitForFile(begun()));
    kill(pid, SIGINT);
    return finish(pid);
  }
};

TEST_F(Cancel, WhatTheScriptDoesAfterwards) {
  struct Row {
    const char* name;
    std::vector<std::string> lines;  // behind FIND_JVM
  };
  const Row rows[] = {
      {"no message about what was not found", {}},
      {"nothing is installed for now", {"INSTALL_JVM 0"}},
      {"nor where the user says", {"INSTALL_JVM 2"}},
      {"no other launcher", {"EXECUTE_LAUNCHER 4"}},
      {"no wizard", {"LAUNCH @S2@ 0"}},
      {"no way around", {"JMP0 @N1@ end", "LAUNCH @S2@ 0", ":end"}},
      {"nothing that fails", {"NONSENSE"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    forgetFiles();
    embedWaitingJVM();
    embed(FILE_TYPE_JVM_INSTALLER, 5, "install.sh", "#!/bin/sh\n: >\"$RECORD\"\n");
    embed(FILE_TYPE_JVM_MESSAGE, 6, "message", "MESSAGE: Get Java.\n");
    embed(FILE_TYPE_LAUNCHER, 7, "inner", "#!/bin/sh\n: >\"$RECORD\"\n");
    std::vector<std::string> lines{"FIND_JVM 0 1"};
    lines.insert(lines.end(), row.lines.begin(), row.lines.end());
    embedInstructions(lines);
    setStdin(mine() + "\n");
    pack();
    const Result result = runAndCancel();
    EXPECT_EQ(-SIGINT, result.status);
    EXPECT_EQ("Canceled by the user.\n", result.out);
    EXPECT_TRUE(result.log.ends_with("\nERROR: Canceled by the user.\n")) << result.log;
    EXPECT_FALSE(fs::exists(dir("record.txt")));
    EXPECT_TRUE(fs::is_empty(mine()));
  }
}

TEST_F(Cancel, TheResultsOfACallingProgram) {
  struct Row {
    const char* name;
    std::string tags;
    std::string out;
  };
  const std::string jvmFile =
      test::writeFile(dir("java.jvm"), "JVM_EXE: bin/java\nJVM_PROPERTIES: java.version=17\n");
  const std::string verify = "ACTION: VERIFY_JVM\nVERIFY_JVM_FILE: " + jvmFile +
                             "\nVERIFY_JVM_HOME: " + dir("jvms/slow") + "\n";
  const Row rows[] = {
      {"search", "ACTION: SEARCH\n", "0\n"},
      {"search with a message", "ACTION: SEARCH\nSHOW_FAIL_MSG: 1\n", "0\n"},
      {"verify", verify, "0\n"},
      {"verify with a message", verify + "SHOW_FAIL_MSG: 1\n", "..0\n"},
      {"install",
       "ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: \"" + dir("jvms/slow/bin/java") +
           "; echo X: y >jvm\"\nINSTALL_JVM_DEST: " + mine() + "\n",
       ""},
  };
  embedWaitingJVM();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const std::string input = test::writeFile(dir("in.tag"), row.tags);
    const Result result = runAndCancel({"-cv:in", input});
    EXPECT_EQ(-SIGINT, result.status);
    EXPECT_EQ(row.out + "Canceled by the user.\n", result.out);
    EXPECT_TRUE(fs::is_empty(mine()));
  }
}

// Ctrl-C ends all of "setup | reader": the launcher's result reaches nobody, and still it ends by
// the signal.
TEST_F(Cancel, AResultThatNobodyReadsChangesNothing) {
  const std::string jvmFile =
      test::writeFile(dir("java.jvm"), "JVM_EXE: bin/java\nJVM_PROPERTIES: java.version=17\n");
  embedWaitingJVM();
  setPrepareChild([] {
    int ends[2];
    if (pipe(ends) != 0 || dup2(ends[1], STDOUT_FILENO) == -1) {
      _exit(124);
    }
    close(ends[0]);
    close(ends[1]);
  });
  for (const std::string& action :
       {std::string("SEARCH\n"), "VERIFY_JVM\nVERIFY_JVM_FILE: " + jvmFile +
                                     "\nVERIFY_JVM_HOME: " + dir("jvms/slow") + "\n"}) {
    SCOPED_TRACE(action);
    const std::string input =
        test::writeFile(dir("in.tag"), "LOGFILE: " + logFile() + "\nACTION: " + action);
    const Result result = runAndCancel({"-cv:in", input});
    EXPECT_EQ(-SIGINT, result.status);
    EXPECT_TRUE(
        result.log.ends_with("\nERROR: Cannot write to standard output: Broken pipe\n"
                             "ERROR: Canceled by the user.\n"))
        << result.log;
  }
}

TEST_F(Cancel, AnInstallerThatRuns) {
  for (const char* command : {"INSTALL_JVM 0", "INSTALL_JVM 1", "INSTALL_JVM 2"}) {
    SCOPED_TRACE(command);
    forgetFiles();
    embed(FILE_TYPE_JVM_INSTALLER, 5, "install.sh",
          std::string("#!/bin/sh\n: >part\ntrap '/bin/rm part; exit 1' INT\n") + kWait);
    embedInstructions({command});
    setStdin(mine() + "\n");
    pack();
    const Result result = runAndCancel();
    EXPECT_EQ(-SIGINT, result.status);
    EXPECT_EQ("WARNING: The JVM installer ended with status 1.\nERROR: Canceled by the user.\n",
              withoutIndex(result.log));
    EXPECT_TRUE(fs::is_empty(mine()));
  }
}

TEST_F(Cancel, NoOtherWizardIsStarted) {
  embedSetup(std::string("if [ -e \"$BEGUN\" ]; then exit 7; fi\n") + kWait);
  forgetFiles(FILE_TYPE_INSTRUCTIONS);
  embedInstructions({"FIND_JVM 0 1", "LAUNCH @S2@ 0", "LAUNCH @S2@ 0"});
  const Result result = runAndCancel();
  EXPECT_EQ(130, result.status);
  EXPECT_EQ("Sample\nCanceled by the user.\n", result.out);
}

#ifdef F_SETPIPE_SZ
// The command's last words are more than the launcher reads at a time, and come while it sleeps: it
// finds the cancel, the end of the command and the words at once.
TEST_F(Cancel, TheLastOutputIsHeard) {
  setEnv("GO", dir("go"));
  embedSetup(
      "echo $$ >\"$BEGUN.part\"; /bin/mv \"$BEGUN.part\" \"$BEGUN\"\n"
      "while [ ! -e \"$GO\" ]; do /bin/sleep 0.02; done\n"
      "/usr/bin/head -c 100000 /dev/zero | /usr/bin/tr '\\0' x");
  const pid_t pid = start({"-cv:tempdir", tempDir(), "-cv:log", logFile()});
  ASSERT_TRUE(waitForFile(begun()));
  const std::string wizard = "/proc/" + std::to_string(std::stol(test::readFile(begun())));
  const int pipe = open((wizard + "/fd/1").c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_LE(1 << 18, fcntl(pipe, F_SETPIPE_SZ, 1 << 18));
  close(pipe);
  const std::string launcher = "/proc/" + std::to_string(pid);
  const std::string command =
      test::readFile(launcher + "/task/" + std::to_string(pid) + "/children");
  kill(pid, SIGSTOP);
  kill(pid, SIGINT);
  test::writeFile(dir("go"), "");
  EXPECT_TRUE(waitForText("/proc/" + std::to_string(std::stol(command)) + "/stat", ") Z "));
  kill(pid, SIGCONT);
  EXPECT_NE(std::string::npos,
            finish(pid).log.find("\nStdOut:\n" + std::string(100000, 'x') + "\n"));
}
#endif

// The second signal ends a wizard that is deaf, and all that it has started; then the launcher
// cleans up, however many follow.
TEST_F(Cancel, TheSecondSignalEndsTheWizard) {
  for (const char* way : {"deaf", "family"}) {
    for (const char* exec : {"", "exec "}) {
      SCOPED_TRACE(std::string(exec) + way);
      forgetFiles();
      fs::remove(begun());
      embedSetup(std::string(exec) + CORVANE_STAND_IN + " " + way + " \"$BEGUN\"");
      pack();
      const pid_t pid = start({"-cv:tempdir", tempDir()});
      ASSERT_TRUE(waitForFile(begun()));
      usleep(50000);  // also the family is deaf now
      for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGINT, SIGTERM}) {
        kill(pid, number);
        usleep(10000);
      }
      EXPECT_EQ(137, finish(pid).status);
      EXPECT_EQ(0, test::countLeft(begun()));
    }
  }
}

// The system tells only the leader of a session that its terminal is gone.
TEST_F(Cancel, AClosedTerminalReachesTheWizard) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (terminal == -1 || grantpt(terminal) != 0 || unlockpt(terminal) != 0) {
    GTEST_SKIP() << "no terminals here";
  }
  const std::string name = ptsname(terminal);
  setPrepareChild([&name] { ioctl(open(name.c_str(), O_RDWR | O_CLOEXEC), TIOCSCTTY, 0); });
  embedSetup(std::string("trap 'exit 7' HUP\n") + kWait);
  const pid_t pid = start({"-cv:tempdir", tempDir()});
  ASSERT_TRUE(waitForFile(begun()));
  close(terminal);
  EXPECT_EQ(7, finish(pid).status);
}

// QUIT is for a JVM that runs: it prints its threads.
TEST_F(Cancel, QuitIsForTheWizard) {
  embedSetup(std::string("trap ': >\"$RECORD\"; exit 6' QUIT\n") + kWait);
  const pid_t pid = start({"-cv:tempdir", tempDir()});
  ASSERT_TRUE(waitForFile(begun()));
  kill(pid, SIGQUIT);
  const Result result = finish(pid);
  EXPECT_EQ(6, result.status);
  EXPECT_EQ("Sample\n", result.out.substr(0, 7));
  EXPECT_EQ(std::string::npos, result.out.find("Canceled"));
}

// A shell's loop around the launcher stops, since the launcher ends by the signal.
TEST_F(Cancel, EachSignalEndsTheLauncherAfterTheCleanUp) {
  embedWaitingJVM();
  embedInstructions({"FIND_JVM 0 1", "JMP0 @N1@ end", ":end"});
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    for (const bool isSilent : {false, true}) {
      SCOPED_TRACE(number);
      fs::remove(begun());
      std::vector<std::string> args{"-cv:tempdir", tempDir()};
      if (isSilent) {
        args.insert(args.begin(), "-cv:silent");
      }
      const pid_t pid = start(args);
      ASSERT_TRUE(waitForFile(begun()));
      kill(pid, number);
      const Result result = finish(pid);
      EXPECT_EQ(-number, result.status);
      EXPECT_EQ(isSilent ? "" : "Canceled by the user.\n", result.out);
    }
  }
}

TEST_F(Cancel, ALauncherThatWasHandedOverTo) {
  embedWaitingJVM();
  embedInstructions({"FIND_JVM 0 1"});
  setLauncherPath(dir("inner"));
  pack();
  const std::string inner = test::readFile(dir("inner"));
  forgetFiles();
  setLauncherPath(dir("app/setup"));
  embed(FILE_TYPE_LAUNCHER, 9, "inner", inner);
  embedInstructions({"EXECUTE_LAUNCHER 0"});
  pack();
  EXPECT_EQ(-SIGINT, runAndCancel().status);
}

}  // namespace
}  // namespace e2e
